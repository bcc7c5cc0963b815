#include "SDRRecordTypes.h"

// 01h Full Sensor, 02h Compact Sensor, 03h Event-Only, 08h Entity Association,
// 09h Device-relative Entity Association, 10h Generic Device Locator, 11h FRU Device
// Locator, 12h Management Controller Device Locator, 13h Management Controller
// Confirmation, 14h BMC Message Channel Info; the others are 0 (invalid or reserved).
const uint8_t SDR_RECORD_MIN_LEN[SDR_TYPE_TABLE_SIZE] = {
    0x00, 0x30, 0x20, 0x11, 0x00, 0x00, 0x00, 0x00, 0x10, 0x20, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x10, 0x10, 0x20, 0x10,
};
const uint8_t SDR_RECORD_MAX_LEN[SDR_TYPE_TABLE_SIZE] = {
    0x00, 0x40, 0x30, 0x21, 0x00, 0x00, 0x00, 0x00, 0x10, 0x20, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x20, 0x20, 0x20, 0x20, 0x10,
};
const uint8_t SDR_STRING_START_POSITION[SDR_TYPE_TABLE_SIZE] = {
    0x00, 0x30, 0x20, 0x11, 0x00, 0x00, 0x00, 0x00, 0x10, 0x20, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x10, 0x10, 0x20, 0x10,
};

int SDRHasIDString(uint8_t u8Type)
{
    switch (u8Type) {
    case 0x08:
    case 0x09:
    case 0x13:
    case 0x14:
    case SDR_RECORD_TYPE_OEM:
        return 0;
    default:
        return 1;
    }
}

uint8_t SDRStringStart(uint8_t u8Type, uint8_t u8RecordLength)
{
    if (u8Type < SDR_TYPE_TABLE_SIZE) {
        return SDR_STRING_START_POSITION[u8Type];
    }
    if (u8Type == SDR_RECORD_TYPE_OEM && u8RecordLength > SDR_RECORD_MAX_LEN_TYPE_C0) {
        return SDR_RECORD_MAX_LEN_TYPE_C0;
    }
    return u8RecordLength;
}
