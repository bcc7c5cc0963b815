// Building raw FRU images (IPMI Platform Management FRU Information Storage
// Definition): encoded fields, info areas with their padding and checksum, multi-records,
// and the common header that places the areas. Used by the example generator and tests.
#ifndef TAVRIN_TOOLS_FRUIMAGEBUILDER_H
#define TAVRIN_TOOLS_FRUIMAGEBUILDER_H

#include <cstdint>
#include <string>
#include <vector>

typedef std::vector<uint8_t> TFruBytes;

// The five areas of an image in header order; an empty one is absent.
struct sFruImageParts {
    TFruBytes vInternal;  // the whole internal use area, version byte first
    TFruBytes vChassis;   // whole areas, as FruInfoArea makes them
    TFruBytes vBoard;
    TFruBytes vProduct;
    TFruBytes vMultiRecord;  // the records, as FruMultiRecord makes them
};

// A field: its type/length byte and bytes. pchEncoding is "8bit", "6bit", "bcd" (BCD
// Plus, an even number of characters) or "binary" (sValue holds the bytes). False with
// *psError set for a value that the encoding can't hold, one of more than 63 bytes, or
// an 8bit one of one byte (its type/length byte would be the end mark C1).
bool FruEncodeField(const std::string& sEncoding, const std::string& sValue, TFruBytes* pvField, std::string* psError);

// A chassis, board or product area: version 1, the length byte, vFixed (chassis type;
// language and date/time; language), the fields, C1, zeroes up to a multiple of 8
// bytes, and the checksum.
TFruBytes FruInfoArea(const TFruBytes& vFixed, const std::vector<TFruBytes>& vFields);

// One multi-record: type, flags (format version 2, bit 7 on the last record), length,
// data checksum, header checksum, data.
TFruBytes FruMultiRecord(uint8_t u8Type, bool bLast, const TFruBytes& vData);

// The header and the areas, each present area at the next multiple of 8 bytes.
TFruBytes FruImage(const sFruImageParts& sParts);

// The zero-sum checksum of the bytes.
uint8_t FruChecksum(const uint8_t* pu8Data, size_t uLength);

#endif
