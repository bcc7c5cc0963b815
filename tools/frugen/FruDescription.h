// The readable description of a FRU image that tavrin-frugen turns into a raw image.
//
//   # comment (to the end of the line, outside quotes)
//   internal 01 54 41 56                 the internal use area: hex bytes, version first
//   chassis                              an area; its lines follow
//     type 0x17                          chassis type (default 2, unknown)
//     part-number   8bit "CHS-4410"      a field: name, encoding, value
//   board
//     language 25                        language code (default 0, English)
//     made 2024-05-17 08:30              manufacturing date/time (default: unspecified)
//     manufacturer  6bit "TAVRIN"
//   product
//     language 25
//     serial-number bcd "2405170042"
//   multirecord
//     power-supply                       a power supply information record; its values follow
//       capacity-watts 800
//     record 0x01 01 B0 04 ...           any other record: type, then its data in hex
//
// Encodings: 8bit "text", 6bit "TEXT" (characters 20h-5Fh), bcd "0123" (BCD Plus, even
// length), binary 01 02 (hex bytes). Each area lists its standard fields in their
// order (chassis: part-number serial-number; board: manufacturer product-name
// serial-number part-number fru-file-id; product: manufacturer product-name
// part-number version serial-number asset-tag fru-file-id), then any number of custom
// fields. The last record gets the end-of-list flag.
#ifndef TAVRIN_TOOLS_FRUDESCRIPTION_H
#define TAVRIN_TOOLS_FRUDESCRIPTION_H

#include <string>

#include "FruImageBuilder.h"

// False with *psError ("line N: why") for a description that can't be built.
bool FruParseDescription(const std::string& sText, sFruImageParts* psParts, std::string* psError);

#endif
