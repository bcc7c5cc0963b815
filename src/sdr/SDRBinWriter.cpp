#include "SDRBinWriter.h"

#include <cstring>

#include "SDRCrc.h"

namespace {

const uint8_t kMagic[4] = {'K', 'M', 'O', 'R'};
const size_t kChecksumByte = SDR_BIN_HEADER_SIZE - 1;

bool WriteAll(FILE* pFile, const uint8_t* pu8Data, size_t uLength)
{
    return std::fwrite(pu8Data, 1, uLength, pFile) == uLength;
}

}  // namespace

void SDRBuildBinHeader(uint8_t u8Version, uint16_t u16RecordCount, uint8_t (&au8Header)[SDR_BIN_HEADER_SIZE])
{
    std::memcpy(au8Header, kMagic, sizeof(kMagic));
    au8Header[4] = u8Version;
    au8Header[5] = static_cast<uint8_t>(u16RecordCount & 0xFF);
    au8Header[6] = static_cast<uint8_t>(u16RecordCount >> 8);
    uint8_t u8Sum = 0;
    for (size_t i = 0; i < kChecksumByte; i++) {
        u8Sum = static_cast<uint8_t>(u8Sum + au8Header[i]);
    }
    au8Header[kChecksumByte] = static_cast<uint8_t>(0x100 - u8Sum);
}

uint16_t SDRComputeRecordCRC16(const uint8_t* pu8Record, size_t uLength)
{
    uint16_t u16Crc = 0;
    for (size_t i = 0; i < uLength; i++) {
        u16Crc = GenerateCRC16(u16Crc, pu8Record[i]);
    }
    return u16Crc;
}

size_t SDRBuildBinRecordFrame(const uint8_t* pu8Record, size_t uLength, uint8_t* pu8Frame, size_t uRoom)
{
    if (uRoom < SDR_BIN_CRC_SIZE || uLength > uRoom - SDR_BIN_CRC_SIZE) {
        return 0;
    }
    std::memcpy(pu8Frame, pu8Record, uLength);
    const uint16_t u16Crc = SDRComputeRecordCRC16(pu8Record, uLength);
    pu8Frame[uLength] = static_cast<uint8_t>(u16Crc & 0xFF);
    pu8Frame[uLength + 1] = static_cast<uint8_t>(u16Crc >> 8);
    return uLength + SDR_BIN_CRC_SIZE;
}

int WriteSDRBinFile(FILE* pFile, const SDREntry* psList, uint16_t u16RecordCount)
{
    if (pFile == nullptr || psList == nullptr) {
        return 0;
    }
    uint8_t au8Header[SDR_BIN_HEADER_SIZE];
    SDRBuildBinHeader(SDR_BIN_FORMAT_VERSION_ONE, u16RecordCount, au8Header);
    if (!WriteAll(pFile, au8Header, sizeof(au8Header))) {
        return 0;
    }
    uint8_t au8Frame[SDR_RECORD_DATA_SIZE + SDR_BIN_CRC_SIZE];
    for (uint32_t u32Index = 0; u32Index < u16RecordCount; u32Index++) {
        const SDREntry& sEntry = psList[u32Index];
        // A holder's length counts its header; it can't be shorter than that or longer
        // than the holder.
        if (sEntry.u8RecordLength < SDR_RECORD_HEADER_SIZE || sEntry.u8RecordLength > SDR_RECORD_DATA_SIZE) {
            return 0;
        }
        const size_t uFrame =
            SDRBuildBinRecordFrame(sEntry.au8RecordData, sEntry.u8RecordLength, au8Frame, sizeof(au8Frame));
        if (uFrame == 0 || !WriteAll(pFile, au8Frame, uFrame)) {
            return 0;
        }
    }
    return 1;
}
