// Little-endian byte helpers for laying values into requests and reading responses.
#ifndef TAVRIN_CHANNEL_BYTEHELPERS_H
#define TAVRIN_CHANNEL_BYTEHELPERS_H

#include <cstdint>

inline uint8_t GetLowByteOfWord(uint16_t u16Word) { return static_cast<uint8_t>(u16Word & 0xFF); }
inline uint8_t GetHighByteOfWord(uint16_t u16Word) { return static_cast<uint8_t>(u16Word >> 8); }

// The byte at the index, plus the next byte shifted left by eight when the size is 2
// or more. Sizes above 2 read no further bytes.
inline uint16_t ParseByIndex(const uint8_t* pu8Data, uint8_t u8Index, uint8_t u8Size)
{
    uint16_t u16Value = pu8Data[u8Index];
    if (u8Size >= 2) {
        u16Value = static_cast<uint16_t>(u16Value | (pu8Data[u8Index + 1] << 8));
    }
    return u16Value;
}

#endif
