// One-byte test text as the bytes of a file in each encoding.
#ifndef TAVRIN_TESTS_TEXTTESTBYTES_H
#define TAVRIN_TESTS_TEXTTESTBYTES_H

#include "text/FileEncoding.h"

#include <string>

// Mark included if bMark is set.
inline std::string Encode(const std::string& sText, eFileEncoding eEncoding, bool bMark = false)
{
    std::string sOut;
    if (bMark && eEncoding != eEncodingASCII) sOut = eEncoding == eEncodingUTF8 ? "\xEF\xBB\xBF" : "\xFF\xFE";
    for (unsigned char c : sText) {
        if (eEncoding == eEncodingUTF16) sOut += {static_cast<char>(c), '\0'};
        else if (eEncoding == eEncodingUTF8 && c >= 0x80) sOut += {static_cast<char>(0xC0 | (c >> 6)), static_cast<char>(0x80 | (c & 0x3F))};
        else sOut += static_cast<char>(c);
    }
    return sOut;
}

#endif
