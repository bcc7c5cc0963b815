// String codecs: one-byte text (ISO-8859-1) and UTF-8, UTF-16LE and UTF-8, the packed
// BCD Plus and 6-bit ASCII forms of the IPMI FRU format, hex digits, and the checksum
// update of a FRU area.
//
// Buffers belong to the caller. No function here zero-terminates its output, and the
// two packers add to the bytes already in the output, so callers clear outputs first.
// Every function that writes a variable amount takes the room of its output in bytes
// (uOutputSize) and refuses, with its failure result and no message of its own, a
// conversion whose output would not fit that room or pass CODEC_MAX_OUTPUT bytes; the
// caller reports the failure as it does for bad data. Nothing is written past the room.
#ifndef TAVRIN_TEXT_DATTRANS_H
#define TAVRIN_TEXT_DATTRANS_H

#include <cstddef>
#include <cstdint>

// Lengths and output positions of the codecs are 8 bits wide.
constexpr size_t CODEC_MAX_OUTPUT = 255;

// The value of a hex digit (0-9, A-F, a-f); any other character gives its own code,
// which is above 15 for every non-digit. A null pointer gives 0xFF.
uint8_t HexToDecimal(const char* pchDigit);

// The BCD Plus value (0-15) of a character, or 0xFF.
uint8_t ConvertCharToBCDPlus(char chValue);

// The character of a BCD Plus value; above 15 prints "<ERROR> Invalid BCD number!\n"
// and gives 0.
char ConvertBCDPlusToChar(uint8_t u8Value);

// Packs a zero-terminated text of at most 255 characters, two to a byte, high half
// first; an odd count leaves the last low half as it was. 1, or 0 for a character
// without BCD Plus value (what was stored stays) or an output that doesn't fit.
int ConvertASCIIStrToBCDPlus(const char* pchText, uint8_t* pu8Output, size_t uOutputSize);

// Unpacks u8Count bytes into 2 * u8Count characters, high half first.
int ConvertBCDPlusToASCIIStr(const uint8_t* pu8Input, uint8_t u8Count, char* pchOutput,
                             size_t uOutputSize);

// Packs a zero-terminated text of characters 0x20-0x5F, four to three bytes, from the
// low bits up. 1, or 0 for any other character (what was stored stays) or an output
// that doesn't fit.
int ConvertASCIIStrToSixBitASCII(const char* pchText, uint8_t* pu8Output, size_t uOutputSize);

// Unpacks u8Count bytes: each 3 give 4 characters, a remainder of 2 gives 2, of 1 gives 1.
int ConvertSixBitASCIIToASCIIStr(const uint8_t* pu8Input, uint8_t u8Count, char* pchOutput,
                                 size_t uOutputSize);

// One-byte text to UTF-8; *pu8OutLength receives the bytes written.
int ASCIIToUTF8(const char* pchInput, uint8_t u8InLength, char* pchOutput, size_t uOutputSize,
                uint8_t* pu8OutLength);

// UTF-8 to one-byte text, for characters up to U+00FF only; anything else prints
// "<ERROR> Invalid UTF-8 data found.\n" and fails.
int UTF8ToASCII(const char* pchInput, uint8_t u8InLength, char* pchOutput, size_t uOutputSize,
                uint8_t* pu8OutLength);

// Little-endian 16-bit units to UTF-8, each unit on its own (surrogates included).
// An odd length takes the last byte as a unit whose high byte is 0, so that the bytes
// come back unchanged when the text is turned into UTF-16LE and cut to the length.
int UTF16ToUTF8(const uint8_t* pu8Input, uint8_t u8InLength, char* pchOutput, size_t uOutputSize,
                uint8_t* pu8OutLength);

// New checksum of a zero-sum area whose u16Count bytes change from pu8OldData to
// pu8NewData: old checksum + sum(old) - sum(new), modulo 256.
int ComputeChecksum(uint8_t u8OldChecksum, uint16_t u16Count, const uint8_t* pu8OldData,
                    const uint8_t* pu8NewData, uint8_t* pu8NewChecksum);

#endif
