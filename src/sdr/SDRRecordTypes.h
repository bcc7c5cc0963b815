// The SDR record types this system knows: their length bounds and where their ID string
// begins. Lengths count the whole record, its five header bytes included.
#ifndef TAVRIN_SDR_SDRRECORDTYPES_H
#define TAVRIN_SDR_SDRRECORDTYPES_H

#include <cstdint>

enum {
    SDR_TYPE_TABLE_SIZE = 21,           // types 00h to 14h
    SDR_RECORD_TYPE_OEM = 0xC0,
    SDR_RECORD_MIN_LEN_TYPE_C0 = 0x08,
    SDR_RECORD_MAX_LEN_TYPE_C0 = 0x40,
    SDR_REQUIRED_VERSION = 0x51,        // header byte 2
    SDR_ID_STRING_8BIT = 0xC0,          // both top bits of a type/length code: 8-bit ASCII + Latin 1
    SDR_ID_STRING_LENGTH_MASK = 0x3F,   // the low six bits: the length in characters
};

// Indexed by the record type 00h to 14h; looked up only for a type that
// SDRValidateRecordType has passed. SDR_STRING_START_POSITION is an index into
// au8RecordData; the byte in front of it is the ID string's type/length code.
extern const uint8_t SDR_RECORD_MIN_LEN[SDR_TYPE_TABLE_SIZE];
extern const uint8_t SDR_RECORD_MAX_LEN[SDR_TYPE_TABLE_SIZE];
extern const uint8_t SDR_STRING_START_POSITION[SDR_TYPE_TABLE_SIZE];

// 0 for the types without an ID string (08h, 09h, 13h, 14h, C0h), else 1.
int SDRHasIDString(uint8_t u8Type);

// Where the ID string of a record of this type and length begins: the table's entry,
// or for type C0h the smaller of 40h and the length. A type outside the tables gives
// the length itself, so that all of such a record counts as the part before the string.
uint8_t SDRStringStart(uint8_t u8Type, uint8_t u8RecordLength);

#endif
