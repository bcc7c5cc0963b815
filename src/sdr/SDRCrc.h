// CRC-16/XMODEM of the records of binary SDR files.
#ifndef TAVRIN_SDR_SDRCRC_H
#define TAVRIN_SDR_SDRCRC_H

#include <array>
#include <cstdint>

// Entry i is the CRC step of the polynomial 0x1021 over i shifted into the high byte.
extern const std::array<uint16_t, 256> u16CRCTable;

// One CRC step over one byte (MSB first, no reflection, no final XOR).
uint16_t GenerateCRC16(uint16_t u16Crc, uint8_t u8Byte);

#endif
