#include "SDRValidate.h"

#include <cstdarg>
#include <cstdio>

#include "SDRRecordTypes.h"

namespace {

const char kchRecordTypeTag[] = "_SDR_TYPE";
const char kchRecordLengthTag[] = "_REC_LEN";

// The heading of the setting, the cause, and the closing with the position, in one
// report on standard error.
void ReportInvalid(int bRawData, uint16_t u16Position, const char* pchCause, ...)
    __attribute__((format(printf, 3, 4)));

void ReportInvalid(int bRawData, uint16_t u16Position, const char* pchCause, ...)
{
    fputs(bRawData ? "<ERROR> Incorrect SDR data. \n" : "<ERROR> SDR file format error. \n", stderr);
    va_list args;
    va_start(args, pchCause);
    vfprintf(stderr, pchCause, args);
    va_end(args);
    fprintf(stderr, bRawData ? "(record %d) \n" : "(line %d) \n", u16Position);
}

bool IsReservedType(uint8_t u8Type)
{
    return (u8Type >= 0x04 && u8Type <= 0x07) || (u8Type >= 0x0A && u8Type <= 0x0F);
}

bool IsInvalidType(uint8_t u8Type)
{
    return u8Type == 0x00 || (u8Type >= SDR_TYPE_TABLE_SIZE && u8Type != SDR_RECORD_TYPE_OEM);
}

}  // namespace

int SDRValidateRecordType(int bRawData, uint16_t u16Position, uint8_t u8Type)
{
    if (IsInvalidType(u8Type)) {
        ReportInvalid(bRawData, u16Position, "Record type (%02Xh) is invalid. ", u8Type);
        return 0;
    }
    if (IsReservedType(u8Type)) {
        ReportInvalid(bRawData, u16Position, "Record type (%02Xh) is reserved. ", u8Type);
        return 0;
    }
    return 1;
}

int SDRValidateRecordLength(int bRawData, uint16_t u16Position, const SDREntry* psEntry)
{
    if (psEntry == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    const uint8_t u8Type = psEntry->u8RecordType;
    const uint8_t u8Length = psEntry->u8RecordLength;
    uint8_t u8Min = SDR_RECORD_MIN_LEN_TYPE_C0;
    uint8_t u8Max = SDR_RECORD_MAX_LEN_TYPE_C0;
    if (u8Type < SDR_TYPE_TABLE_SIZE) {
        u8Min = SDR_RECORD_MIN_LEN[u8Type];
        u8Max = SDR_RECORD_MAX_LEN[u8Type];
    }
    if (u8Length > u8Max) {
        ReportInvalid(bRawData, u16Position, "Record length (%02Xh) is greater than the maximum length of type %02Xh. ",
                      u8Length, u8Type);
        return 0;
    }
    if (u8Length == 0) {
        ReportInvalid(bRawData, u16Position, "Record length is zero. ");
        return 0;
    }
    if (u8Length < u8Min) {
        ReportInvalid(bRawData, u16Position, "Record length (%02Xh) is less than the less length of type %02Xh. ",
                      u8Length, u8Type);
        return 0;
    }
    return 1;
}

int SDRValidateRecordHeader(int bRawData, uint16_t u16Position, const SDREntry* psEntry, uint8_t u8Value)
{
    if (psEntry == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    switch (psEntry->u8DataOffset) {
    case 2:
        if (u8Value != SDR_REQUIRED_VERSION) {
            ReportInvalid(bRawData, u16Position, "SDR version (%02Xh) != %02Xh in record type %02Xh. ", u8Value,
                          SDR_REQUIRED_VERSION, psEntry->u8RecordType);
            return 0;
        }
        return 1;
    case 3:
        if (u8Value != psEntry->u8RecordType) {
            ReportInvalid(bRawData, u16Position, "Record type (%02Xh) is not the same as that from '%s %02X'. ",
                          u8Value, kchRecordTypeTag, psEntry->u8RecordType);
            return 0;
        }
        return 1;
    case 4:
        if (u8Value + SDR_RECORD_HEADER_SIZE != psEntry->u8RecordLength) {
            ReportInvalid(bRawData, u16Position, "Record length (%02Xh) is inconsistent with that from '%s %02X'. ",
                          u8Value, kchRecordLengthTag, psEntry->u8RecordLength);
            return 0;
        }
        return 1;
    default:
        return 1;
    }
}

int SDRValidateRawData(SDREntry* psList)
{
    if (psList == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    uint16_t u16Position = 0;
    for (uint32_t i = 0; i < SDR_RECORD_LIMIT; i++) {
        SDREntry* psEntry = &psList[i];
        if (!SDRIsOccupied(*psEntry)) {
            continue;
        }
        u16Position++;
        if (!SDRValidateRecordType(1, u16Position, psEntry->u8RecordType) ||
            !SDRValidateRecordLength(1, u16Position, psEntry)) {
            return 0;
        }
        for (uint8_t u8Index = 0; u8Index <= 3; u8Index++) {
            psEntry->u8DataOffset = u8Index;
            if (!SDRValidateRecordHeader(1, u16Position, psEntry, psEntry->au8RecordData[u8Index])) {
                return 0;
            }
        }
    }
    return 1;
}
