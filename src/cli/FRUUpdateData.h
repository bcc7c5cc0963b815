// The parameters of -updateFRU: name=value words, in any order, checked and turned into
// the new bytes of one FRU field before the BMC is contacted.
#ifndef TAVRIN_CLI_FRUUPDATEDATA_H
#define TAVRIN_CLI_FRUUPDATEDATA_H

#include <cstdint>

enum {
    FRU_UPDATE_MAX_PARAMETERS = 6,
    FRU_UPDATE_NAME_LENGTH = 10,    // characters of a parameter name, at most
    FRU_UPDATE_VALUE_LENGTH = 126,  // characters of a parameter value, at most
    FRU_UPDATE_VALUE_SIZE = 258,
    FRU_UPDATE_DATA_SIZE = 64,      // field bytes and, behind them, the new type/length byte
    FRU_STRING_MAX_LENGTH = 0x3F,   // the six length bits of a type/length byte
    FRU_DATETIME_SIZE = 3,
};

// The string types of a FRU type/length byte's upper two bits that a serial number may take.
enum {
    FRU_STRING_BCD_PLUS = 1,
    FRU_STRING_SIX_BIT = 2,
    FRU_STRING_EIGHT_BIT = 3,
};

// One name=value word.
struct sUpdateParameter {
    char achName[FRU_UPDATE_NAME_LENGTH + 1];
    char achValue[FRU_UPDATE_VALUE_SIZE];
};

// What the parameter check hands to UpdateFRU; the caller zero-fills it.
struct sFRUUpdateData {
    char achFieldName[FRU_UPDATE_NAME_LENGTH + 1];
    uint16_t u16Offset;       // the field's first data byte in the FRU device
    uint8_t u8FRUID;
    uint32_t u32StringType;
    uint8_t u8StringLength;   // bytes of the string field in the device
    char achStringValue[FRU_UPDATE_VALUE_SIZE];  // strValue, padded with blanks
    uint8_t au8NewData[FRU_UPDATE_DATA_SIZE];    // index u8StringLength: the new type/length byte
    uint8_t u8Checksum;       // work byte: area length, then old checksum, then new checksum
};

// 1 when the arguments are good and psData is complete with au8NewData ready; otherwise
// 0 with the reason on standard error.
int ValidateAnalyzeFRUUpdateDataParameters(uint16_t u16ArgCount, char** ppchArgs, sFRUUpdateData* psData);

// The string steps of the check: the type's length rules, the padding up to
// u8StringLength bytes and the encoding into au8NewData. 1, or 0 with the reason.
int PrepareFRUUpdateString(sFRUUpdateData* psData);

// 1 when the field is the manufacturing date/time rather than a serial number string.
int IsFRUUpdateOfDateTime(const sFRUUpdateData* psData);

#endif
