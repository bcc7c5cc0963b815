// One framed record of a binary SDR file: the record, then its CRC-16, low byte first.
#include <cstdio>
#include <cstring>

#include "SDRBinFile.h"
#include "SDRCrc.h"
#include "common/DebugOutput.h"

namespace {

const uint32_t kCrcSize = 2;

void ReportRecordLines(uint16_t u16ID, uint8_t u8Type, uint32_t u32Length)
{
    fputs("Error SDR record: \n", stderr);
    fprintf(stderr, "              => ID: 0x%02X \n", u16ID);
    fprintf(stderr, "              => Type: 0x%02X \n", u8Type);
    fprintf(stderr, "              => Length: 0x%02X \n", u32Length);
}

void ReportCrcMismatch(uint32_t u32CrcOffset, uint16_t u16Stored, uint16_t u16Computed,
                       const SDREntry* psEntry)
{
    fputs("SDR binary file format error. \n", stderr);
    fprintf(stderr, "Error position: 0x%02X (file offset) \n", u32CrcOffset);
    fputs("Error cause: CRC 16 checking failed! \n", stderr);
    fprintf(stderr, "              => Expected value: 0x%04X \n", u16Stored);
    fprintf(stderr, "              => Obtained value: 0x%04X \n", u16Computed);
    ReportRecordLines(psEntry->au8RecordData[0], psEntry->u8RecordType, psEntry->u8RecordLength);
}

uint16_t ReadLittleEndianWord(const uint8_t* pu8Data)
{
    return static_cast<uint16_t>(pu8Data[0] | (pu8Data[1] << 8));
}

}  // namespace

eSDRFileState SDRReadOneBinRecord(const uint8_t* pu8Data, uint32_t u32FileSize, uint32_t* pu32Offset,
                                  SDREntry* psEntry)
{
    uint32_t u32Offset = *pu32Offset;
    if (u32Offset > u32FileSize || u32FileSize - u32Offset < SDR_RECORD_HEADER_SIZE) {
        // Not even a whole header is left: there is no ID, type or length to show.
        fputs("Adding the following SDR record exceeds the total file size! \n", stderr);
        fputs("Error SDR record: \n", stderr);
        fprintf(stderr, "              => Incomplete record header at file offset 0x%X \n", u32Offset);
        return eSdrBinaryError;
    }
    const uint8_t* pu8Record = pu8Data + u32Offset;
    uint32_t u32Length = pu8Record[4] + static_cast<uint32_t>(SDR_RECORD_HEADER_SIZE);
    psEntry->u8RecordType = pu8Record[3];
    psEntry->u8RecordLength = static_cast<uint8_t>(u32Length);
    psEntry->u8DataOffset = static_cast<uint8_t>(u32Length);

    if (u32Length + kCrcSize > u32FileSize - u32Offset) {
        fputs("Adding the following SDR record exceeds the total file size! \n", stderr);
        ReportRecordLines(ReadLittleEndianWord(pu8Record), pu8Record[3], u32Length);
        return eSdrBinaryError;
    }
    if (u32Length > SDR_RECORD_DATA_SIZE) {
        // The holder has room for SDR_RECORD_DATA_SIZE bytes; such a record is refused whole.
        fprintf(stderr, "The following SDR record exceeds the maximum record size of %d bytes! \n",
                SDR_RECORD_DATA_SIZE);
        ReportRecordLines(ReadLittleEndianWord(pu8Record), pu8Record[3], u32Length);
        return eSdrBinaryError;
    }

    memcpy(psEntry->au8RecordData, pu8Record, u32Length);
    uint16_t u16Computed = 0;
    for (uint32_t i = 0; i < u32Length; i++) {
        u16Computed = GenerateCRC16(u16Computed, pu8Record[i]);
    }
    u32Offset += u32Length;
    *pu32Offset = u32Offset;

    uint16_t u16Stored = ReadLittleEndianWord(pu8Data + u32Offset);
    DebugMessage("CRC 16: Calculated[%04X] vs FromData[%04X] \n", u16Computed, u16Stored);
    if (u16Computed != u16Stored) {
        ReportCrcMismatch(u32Offset, u16Stored, u16Computed, psEntry);
        return eSdrBinaryError;
    }

    *pu32Offset = u32Offset + kCrcSize;
    psEntry->u16RecordID = ReadLittleEndianWord(psEntry->au8RecordData);
    DebugMessage("Record Type = %x \n", psEntry->u8RecordType);
    DebugMessage("Record Length = %x \n", psEntry->u8RecordLength);
    DebugMessage("Record ID = %x \n", psEntry->u16RecordID);
    return eSdrRecordRead;
}

int PaddingBytesEncountered(uint32_t u32Start, uint32_t u32End, const uint8_t* pu8Data)
{
    for (uint32_t i = u32Start; i < u32End; i++) {
        if (pu8Data[i] != 0xFF) {
            return 0;
        }
    }
    return 1;
}
