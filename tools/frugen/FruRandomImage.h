// Random valid FRU images for round-trip tests, the same for the same seed: any choice of
// the five areas; fields of every type, in English and in other languages, with Latin-1
// and Unicode text; multi-records of every kind, text of a management access record up
// to the longest. Now and then a field or record holds what no quoted string can carry
// (binary data, a zero byte or line feed, 6-bit bits that unpacking drops, Unicode of odd
// length, U+0000, U+000A or a surrogate): such data hold no byte C1, so that a FRU text
// file can give them in hex.
#ifndef TAVRIN_TOOLS_FRURANDOMIMAGE_H
#define TAVRIN_TOOLS_FRURANDOMIMAGE_H

#include <cstdint>

#include "FruImageBuilder.h"

// bUnicode false: no 16-bit Unicode field at all (of another language than English, only
// the 8-bit serial number and FRU file ID are of type 3), so that an ASCII file can hold
// the image.
TFruBytes FruRandomImage(uint32_t u32Seed, bool bUnicode);

#endif
