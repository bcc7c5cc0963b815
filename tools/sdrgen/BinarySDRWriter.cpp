// The header of format versions 1 and 2 and the framing of the records come from the
// product's own writer; formats 0 and 2 add what only they have around them.
#include "BinarySDRWriter.h"

#include "sdr/SDRBinWriter.h"

namespace {

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
    uint8_t au8Start[SDR_BIN_HEADER_SIZE];
    SDRBuildBinHeader(static_cast<uint8_t>(iVersion), static_cast<uint16_t>(u32Count), au8Start);
    std::vector<uint8_t> vHeader(au8Start, au8Start + SDR_BIN_HEADER_SIZE);
    if (iVersion == 2) {
        vHeader.resize(kVersionTwoHeaderSize, 0);
    }
    return vHeader;
}

}  // namespace

uint16_t RecordCrc(const TRecord& vRecord)
{
    return SDRComputeRecordCRC16(vRecord.data(), vRecord.size());
}

std::vector<uint8_t> BuildBinarySDRFile(int iVersion, const std::vector<TRecord>& vRecords, uint32_t u32Padding)
{
    std::vector<uint8_t> vFile = BuildHeader(iVersion, static_cast<uint32_t>(vRecords.size()));
    for (const TRecord& vRecord : vRecords) {
        const size_t uStart = vFile.size();
        vFile.resize(uStart + vRecord.size() + SDR_BIN_CRC_SIZE);
        SDRBuildBinRecordFrame(vRecord.data(), vRecord.size(), vFile.data() + uStart, vFile.size() - uStart);
    }
    if (iVersion == 2) {
        vFile.insert(vFile.end(), u32Padding, 0xFF);
        PutWord(vFile, 16, kVersionTwoHeaderSize);
        PutWord(vFile, 18, static_cast<uint32_t>(vFile.size()));
        PutChecksum(vFile, 8, 20);
    }
    return vFile;
}
