#include "BinarySDRWriter.h"

#include "sdr/SDRCrc.h"

namespace {

const uint8_t kMagic[4] = {'K', 'M', 'O', 'R'};
const uint32_t kVersionTwoHeaderSize = 21;

void PutWord(std::vector<uint8_t>& vFile, size_t uOffset, uint32_t u32Value)
{
    vFile[uOffset] = static_cast<uint8_t>(u32Value & 0xFF);
    vFile[uOffset + 1] = static_cast<uint8_t>((u32Value >> 8) & 0xFF);
}

// Makes the sum of bytes [u32First, u32Checksum] zero modulo 256.
void PutChecksum(std::vector<uint8_t>& vFile, uint32_t u32First, uint32_t u32Checksum)
{
    uint8_t u8Sum = 0;
    for (uint32_t i = u32First; i < u32Checksum; i++) {
        u8Sum = static_cast<uint8_t>(u8Sum + vFile[i]);
    }
    vFile[u32Checksum] = static_cast<uint8_t>(0x100 - u8Sum);
}

std::vector<uint8_t> BuildHeader(int iVersion, uint32_t u32Count)
{
    if (iVersion == 0) {
        uint8_t u8Count = static_cast<uint8_t>(u32Count);
        return {u8Count, static_cast<uint8_t>(0x100 - u8Count)};
    }
    std::vector<uint8_t> vHeader(iVersion == 1 ? 8 : kVersionTwoHeaderSize, 0);
    for (int i = 0; i < 4; i++) vHeader[i] = kMagic[i];
    vHeader[4] = static_cast<uint8_t>(iVersion);
    PutWord(vHeader, 5, u32Count);
    PutChecksum(vHeader, 0, 7);
    return vHeader;
}

}  // namespace

uint16_t RecordCrc(const TRecord& vRecord)
{
    uint16_t u16Crc = 0;
    for (uint8_t u8Byte : vRecord) {
        u16Crc = GenerateCRC16(u16Crc, u8Byte);
    }
    return u16Crc;
}

std::vector<uint8_t> BuildBinarySDRFile(int iVersion, const std::vector<TRecord>& vRecords, uint32_t u32Padding)
{
    std::vector<uint8_t> vFile = BuildHeader(iVersion, static_cast<uint32_t>(vRecords.size()));
    for (const TRecord& vRecord : vRecords) {
        vFile.insert(vFile.end(), vRecord.begin(), vRecord.end());
        uint16_t u16Crc = RecordCrc(vRecord);
        vFile.push_back(static_cast<uint8_t>(u16Crc & 0xFF));
        vFile.push_back(static_cast<uint8_t>(u16Crc >> 8));
    }
    if (iVersion == 2) {
        vFile.insert(vFile.end(), u32Padding, 0xFF);
        PutWord(vFile, 16, kVersionTwoHeaderSize);
        PutWord(vFile, 18, static_cast<uint32_t>(vFile.size()));
        PutChecksum(vFile, 8, 20);
    }
    return vFile;
}
