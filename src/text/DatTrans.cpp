#include "DatTrans.h"

#include <cstdio>
#include <cstring>

namespace {

// BCD Plus characters by value; values 0xA-0xF are blank - . : , _
const char kachBCDPlusChars[16] = {'0', '1', '2', '3', '4', '5', '6', '7',
                                   '8', '9', ' ', '-', '.', ':', ',', '_'};

// The room a codec may fill: the caller's buffer, and never more than 8-bit positions.
size_t OutputLimit(size_t uOutputSize)
{
    return uOutputSize < CODEC_MAX_OUTPUT ? uOutputSize : CODEC_MAX_OUTPUT;
}

// Length of a zero-terminated input, or CODEC_MAX_OUTPUT + 1 if it is longer than an
// 8-bit length can hold (the rest is not looked at).
size_t BoundedLength(const char* pchText)
{
    return strnlen(pchText, CODEC_MAX_OUTPUT + 1);
}

}  // namespace

uint8_t HexToDecimal(const char* pchDigit)
{
    if (pchDigit == nullptr) {
        return 0xFF;
    }
    const unsigned char u8Char = static_cast<unsigned char>(*pchDigit);
    if (u8Char >= '0' && u8Char <= '9') {
        return static_cast<uint8_t>(u8Char - '0');
    }
    if (u8Char >= 'A' && u8Char <= 'F') {
        return static_cast<uint8_t>(u8Char - 'A' + 10);
    }
    if (u8Char >= 'a' && u8Char <= 'f') {
        return static_cast<uint8_t>(u8Char - 'a' + 10);
    }
    return u8Char;
}

uint8_t ConvertCharToBCDPlus(char chValue)
{
    for (uint8_t u8Value = 0; u8Value < sizeof(kachBCDPlusChars); u8Value++) {
        if (kachBCDPlusChars[u8Value] == chValue) {
            return u8Value;
        }
    }
    return 0xFF;
}

char ConvertBCDPlusToChar(uint8_t u8Value)
{
    if (u8Value > 15) {
        fputs("<ERROR> Invalid BCD number!\n", stderr);
        return 0;
    }
    return kachBCDPlusChars[u8Value];
}

int ConvertASCIIStrToBCDPlus(const char* pchText, uint8_t* pu8Output, size_t uOutputSize)
{
    if (pchText == nullptr || pu8Output == nullptr) {
        fputs("<ERROR> Internal Error! \n", stderr);
        return 0;
    }
    const size_t uLength = BoundedLength(pchText);
    if (uLength > CODEC_MAX_OUTPUT || (uLength + 1) / 2 > OutputLimit(uOutputSize)) {
        return 0;
    }
    for (size_t i = 0; i < uLength; i++) {
        const uint8_t u8Value = ConvertCharToBCDPlus(pchText[i]);
        if (u8Value > 15) {
            return 0;
        }
        pu8Output[i / 2] = static_cast<uint8_t>(pu8Output[i / 2] + ((i % 2 == 0) ? (u8Value << 4) : u8Value));
    }
    return 1;
}

int ConvertBCDPlusToASCIIStr(const uint8_t* pu8Input, uint8_t u8Count, char* pchOutput,
                             size_t uOutputSize)
{
    if (pu8Input == nullptr || pchOutput == nullptr) {
        fputs("<ERROR> Internal Error! \n", stderr);
        return 0;
    }
    if (2u * u8Count > OutputLimit(uOutputSize)) {
        return 0;
    }
    for (size_t i = 0; i < u8Count; i++) {
        pchOutput[2 * i] = ConvertBCDPlusToChar(static_cast<uint8_t>(pu8Input[i] >> 4));
        pchOutput[2 * i + 1] = ConvertBCDPlusToChar(static_cast<uint8_t>(pu8Input[i] & 0x0F));
    }
    return 1;
}

int ConvertASCIIStrToSixBitASCII(const char* pchText, uint8_t* pu8Output, size_t uOutputSize)
{
    if (pchText == nullptr || pu8Output == nullptr) {
        fputs("<ERROR> Internal Error! \n", stderr);
        return 0;
    }
    const size_t uLength = BoundedLength(pchText);
    if (uLength > CODEC_MAX_OUTPUT || 3 * (uLength / 4) + uLength % 4 > OutputLimit(uOutputSize)) {
        return 0;
    }
    size_t uIndex = 0;
    unsigned uBitPos = 0;  // runs 0, 6, 4, 2, 0, ...
    for (size_t i = 0; i < uLength; i++) {
        const unsigned char u8Char = static_cast<unsigned char>(pchText[i]);
        if (u8Char < 0x20 || u8Char > 0x5F) {
            return 0;
        }
        const unsigned uCode = u8Char - 0x20u;
        pu8Output[uIndex] = static_cast<uint8_t>(pu8Output[uIndex] + (uCode << uBitPos));
        if (uBitPos > 1) {
            uIndex++;
            if (uBitPos > 2) {
                // The bits that did not fit start the next byte.
                pu8Output[uIndex] = static_cast<uint8_t>(uCode >> (8 - uBitPos));
            }
        }
        uBitPos += 6;
        if (uBitPos > 7) {
            uBitPos -= 8;
        }
    }
    return 1;
}

int ConvertSixBitASCIIToASCIIStr(const uint8_t* pu8Input, uint8_t u8Count, char* pchOutput,
                                 size_t uOutputSize)
{
    if (pu8Input == nullptr || pchOutput == nullptr) {
        fputs("<ERROR> Internal Error! \n", stderr);
        return 0;
    }
    if (4u * (u8Count / 3u) + u8Count % 3u > OutputLimit(uOutputSize)) {
        return 0;
    }
    size_t uIn = 0;
    size_t uOut = 0;
    while (uIn < u8Count) {
        const size_t uRemaining = u8Count - uIn;
        const size_t uBytes = uRemaining >= 3 ? 3 : uRemaining;
        const size_t uChars = uBytes == 3 ? 4 : uBytes;
        uint32_t u32Bits = 0;
        for (size_t i = 0; i < uBytes; i++) {
            u32Bits |= static_cast<uint32_t>(pu8Input[uIn + i]) << (8 * i);
        }
        for (size_t i = 0; i < uChars; i++) {
            pchOutput[uOut++] = static_cast<char>(((u32Bits >> (6 * i)) & 0x3F) + 0x20);
        }
        uIn += uBytes;
    }
    return 1;
}

int ASCIIToUTF8(const char* pchInput, uint8_t u8InLength, char* pchOutput, size_t uOutputSize,
                uint8_t* pu8OutLength)
{
    if (pchInput == nullptr || pchOutput == nullptr || pu8OutLength == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    size_t uNeeded = u8InLength;
    for (size_t i = 0; i < u8InLength; i++) {
        uNeeded += (static_cast<unsigned char>(pchInput[i]) >= 0x80) ? 1 : 0;
    }
    if (uNeeded > OutputLimit(uOutputSize)) {
        return 0;
    }
    size_t uOut = 0;
    for (size_t i = 0; i < u8InLength; i++) {
        const unsigned char u8Char = static_cast<unsigned char>(pchInput[i]);
        if (u8Char < 0x80) {
            pchOutput[uOut++] = static_cast<char>(u8Char);
        } else {
            pchOutput[uOut++] = static_cast<char>(0xC0 | (u8Char >> 6));
            pchOutput[uOut++] = static_cast<char>(0x80 | (u8Char & 0x3F));
        }
    }
    *pu8OutLength = static_cast<uint8_t>(uOut);
    return 1;
}

int UTF8ToASCII(const char* pchInput, uint8_t u8InLength, char* pchOutput, size_t uOutputSize,
                uint8_t* pu8OutLength)
{
    if (pchInput == nullptr || pchOutput == nullptr || pu8OutLength == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    const size_t uLimit = OutputLimit(uOutputSize);
    size_t uOut = 0;
    size_t i = 0;
    while (i < u8InLength) {
        const unsigned char u8Lead = static_cast<unsigned char>(pchInput[i]);
        if (uOut >= uLimit) {
            return 0;
        }
        if (u8Lead < 0x80) {
            pchOutput[uOut++] = static_cast<char>(u8Lead);
            i++;
            continue;
        }
        // Only two-byte sequences of U+0080..U+00FF have a one-byte form: lead 110000xx.
        // The continuation byte must lie inside the input.
        if ((u8Lead & 0xE0) != 0xC0 || (u8Lead & 0x1C) != 0 || i + 1 >= u8InLength) {
            fputs("<ERROR> Invalid UTF-8 data found.\n", stderr);
            return 0;
        }
        const unsigned char u8Next = static_cast<unsigned char>(pchInput[i + 1]);
        pchOutput[uOut++] = static_cast<char>(((u8Lead & 0x03) << 6) | (u8Next & 0x3F));
        i += 2;
    }
    *pu8OutLength = static_cast<uint8_t>(uOut);
    return 1;
}

int UTF16ToUTF8(const uint8_t* pu8Input, uint8_t u8InLength, char* pchOutput, size_t uOutputSize,
                uint8_t* pu8OutLength)
{
    if (pu8Input == nullptr || pchOutput == nullptr || pu8OutLength == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    const size_t uLimit = OutputLimit(uOutputSize);
    size_t uOut = 0;
    for (size_t i = 0; i < u8InLength; i += 2) {
        const unsigned uHigh = (i + 1 < u8InLength) ? pu8Input[i + 1] : 0;
        const unsigned uUnit = pu8Input[i] | (uHigh << 8);
        const size_t uBytes = uUnit < 0x80 ? 1 : (uUnit < 0x800 ? 2 : 3);
        if (uOut + uBytes > uLimit) {
            return 0;
        }
        if (uBytes == 1) {
            pchOutput[uOut++] = static_cast<char>(uUnit);
        } else if (uBytes == 2) {
            pchOutput[uOut++] = static_cast<char>(0xC0 | (uUnit >> 6));
            pchOutput[uOut++] = static_cast<char>(0x80 | (uUnit & 0x3F));
        } else {
            pchOutput[uOut++] = static_cast<char>(0xE0 | (uUnit >> 12));
            pchOutput[uOut++] = static_cast<char>(0x80 | ((uUnit >> 6) & 0x3F));
            pchOutput[uOut++] = static_cast<char>(0x80 | (uUnit & 0x3F));
        }
    }
    *pu8OutLength = static_cast<uint8_t>(uOut);
    return 1;
}

int ComputeChecksum(uint8_t u8OldChecksum, uint16_t u16Count, const uint8_t* pu8OldData,
                    const uint8_t* pu8NewData, uint8_t* pu8NewChecksum)
{
    if (pu8OldData == nullptr || pu8NewData == nullptr || pu8NewChecksum == nullptr) {
        fputs("Internal error! \n", stderr);
        return 0;
    }
    unsigned uSum = u8OldChecksum;
    for (size_t i = 0; i < u16Count; i++) {
        uSum += pu8OldData[i];
        uSum -= pu8NewData[i];
    }
    *pu8NewChecksum = static_cast<uint8_t>(uSum & 0xFF);
    return 1;
}
