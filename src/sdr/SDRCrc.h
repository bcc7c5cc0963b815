// CRC-16/XMODEM of the records of binary SDR files.
#ifndef TAVRIN_SDR_SDRCRC_H
#define TAVRIN_SDR_SDRCRC_H

#include <array>
#include <cstdint>

// Entry i is the CRC step of the polynomial 0x1021 over i shifted into the high byte.
extern const std::array<uint16_t, 256> u16CRCTable;

// One CRC step over one byte (MSB first, no reflection, no final XOR). Inline: it
// runs once for every byte of a binary SDR file.
inline uint16_t GenerateCRC16(uint16_t u16Crc, uint8_t u8Byte)
{
    uint8_t u8Index = static_cast<uint8_t>((u16Crc >> 8) ^ u8Byte);
    return static_cast<uint16_t>(u16CRCTable[u8Index] ^ (u16Crc << 8));
}

#endif
