// The layout of a FRU image as this system uses it (IPMI Platform Management FRU
// Information Storage Definition): the common header, the area table that turns it
// into offsets and lengths, and the zero-sum checksum test.
#ifndef TAVRIN_FRU_FRUAREATABLE_H
#define TAVRIN_FRU_FRUAREATABLE_H

#include <cstdint>

enum {
    FRU_AREA_TABLE_SIZE = 8,        // one row per byte of the common header
    FRU_COMMON_HEADER_SIZE = 8,
    FRU_AREA_UNIT = 8,              // offsets and area lengths count in units of 8 bytes
    FRU_FORMAT_VERSION = 1,         // of the header and of every area
    FRU_HEADER_PAD_INDEX = 6,
    FRU_AREA_TAG_SIZE = 17,         // a tag of at most 16 characters
    FRU_AREA_NAME_SKIP = 5,         // the name in messages is the tag without "_SEE_"
    FRU_IMAGE_SIZE_LIMIT = 0xFFFF,  // an image's size must fit its 16-bit counters
};

// Row indexes: the index of the header byte that the row belongs to.
enum eFRUArea {
    eFRUAreaCommon = 0,
    eFRUAreaInternal = 1,
    eFRUAreaChassis = 2,
    eFRUAreaBoard = 3,
    eFRUAreaProduct = 4,
    eFRUAreaMultiRecord = 5,
    eFRUAreaPad = 6,
    eFRUAreaChecksum = 7,
};

// One row of the area table.
struct sFRUAreaInfo {
    char achTag[FRU_AREA_TAG_SIZE];
    uint16_t u16Length;  // bytes up to the next present area; 0 when the header doesn't tell
    uint16_t u16Offset;  // bytes from the start of the image; 0 when the area is absent
};

// Fills the 8 rows with their tags, every length and offset 0.
void FRUInitAreaTable(sFRUAreaInfo* psTable);

// The area's name in messages: "COMMON", "INTERNAL", ... "MULTIRECORD".
const char* FRUAreaName(const sFRUAreaInfo* psRow);

// Sets the offsets of rows 1 to 5 from the 8 header bytes, and the length of every
// present area but the last. 1, or 0 after a message when the offsets aren't ascending.
int FRUGetAreaInfo(const uint8_t* pu8Header, int bInventoryData, sFRUAreaInfo* psTable);

// 1 when the header alone tells the image's length: no area at all, or one of the
// areas that carry their own length or end mark. 0 when the internal use area is the
// only one.
int CanKnowFRULengthFromCommonArea(const sFRUAreaInfo* psTable);

// 1 when the u16Length bytes and u16Extra sum to 0 modulo 256.
int FRUAreaChecksumCorrect(const uint8_t* pu8Data, uint16_t u16Length, uint16_t u16Extra);

#endif
