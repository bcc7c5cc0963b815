// The characters of a file as the line scans see them: a unit is a byte in ASCII and
// UTF-8 files and a little-endian 16-bit character in UTF-16 files (W is its width).
#ifndef TAVRIN_TEXT_TEXTUNITS_H
#define TAVRIN_TEXT_TEXTUNITS_H

#include <cstddef>
#include <cstdint>

constexpr uint16_t TEXT_UNIT_LINE_FEED = 0x0A;

// The scans take sixteen units at a time with SSE2, which every x86-64 processor has;
// elsewhere they take one at a time.
#if defined(__SSE2__) && defined(__x86_64__)
#define TEXT_SCAN_SSE2 1
#include <emmintrin.h>
#endif

template <size_t W>
inline uint16_t TextUnitAt(const unsigned char* pu8)
{
    return (W == 1) ? pu8[0] : static_cast<uint16_t>(pu8[0] | (pu8[1] << 8));
}

#endif
