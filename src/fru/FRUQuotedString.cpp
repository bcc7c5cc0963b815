// The quoted strings of a FRU text file: a field's contents in the form that its
// type/length byte gives (BCD Plus, 6-bit ASCII, 8-bit text or Unicode), or the text of
// a multi-record, turned into image bytes.
#include <iconv.h>

#include <cstdio>
#include <cstring>

#include "FRUImage.h"
#include "FRUTextReader.h"
#include "text/DatTrans.h"
#include "text/EncodingConversion.h"

namespace {

enum : uint8_t {
    FRU_TYPE_BINARY = 0,
    FRU_TYPE_BCD_PLUS = 1,
    FRU_TYPE_SIX_BIT = 2,
    FRU_LENGTH_MASK = 0x3F,
    FRU_LANGUAGE_ENGLISH = 0,
    FRU_LANGUAGE_ENGLISH_CODE = 25,
};

// UTF8ToASCII takes at most this many bytes at a time.
const size_t kuUTF8Piece = 254;

bool IsArea(const char* pchAreaName, const char* pchName) { return std::strcmp(pchAreaName, pchName) == 0; }

// Stores the bytes and counts them in the block's *pu16Stored. 1, or 0 after the report.
int StoreCounted(sFRUTextReader* psReader, const char* pchAreaName, const void* pBytes, size_t uCount,
                 uint16_t* pu16Stored)
{
    if (!FRUStoreBytes(psReader, pchAreaName, static_cast<const uint8_t*>(pBytes), uCount)) {
        return 0;
    }
    *pu16Stored = static_cast<uint16_t>(*pu16Stored + uCount);
    return 1;
}

// UTF-8 to one-byte text, in pieces that UTF8ToASCII can take, cut in front of a lead
// byte. 1, or 0 after UTF8ToASCII's report.
int UTF8ToOneByte(const uint8_t* pu8Input, size_t uLength, char* pchText, size_t uTextSize)
{
    size_t uIn = 0;
    size_t uOut = 0;
    while (uIn < uLength) {
        size_t uPiece = (uLength - uIn < kuUTF8Piece) ? uLength - uIn : kuUTF8Piece;
        while (uIn + uPiece < uLength && uPiece > 1 && (pu8Input[uIn + uPiece] & 0xC0) == 0x80) {
            uPiece--;
        }
        uint8_t u8Out = 0;
        if (!UTF8ToASCII(reinterpret_cast<const char*>(pu8Input + uIn), static_cast<uint8_t>(uPiece), pchText + uOut,
                         uTextSize - 1 - uOut, &u8Out)) {
            return 0;
        }
        uIn += uPiece;
        uOut += u8Out;
    }
    pchText[uOut] = '\0';
    return 1;
}

// The string as zero-terminated one-byte text: narrowed from UTF-16, decoded from UTF-8
// when bDecodeUTF8 is set, else its bytes as they are. pchText has room for the whole
// string. 1, or 0 after the report of a UTF-8 string that has no one-byte form.
int StringToOneByte(const sFRUTextReader* psReader, const char* pchAreaName, const uint8_t* pu8String,
                    size_t uLength, bool bDecodeUTF8, char* pchText, size_t uTextSize)
{
    const eFileEncoding eEncoding = psReader->sContext.eEncoding;
    if (eEncoding == eEncodingUTF16) {
        NarrowUTF16LE(pu8String, uLength, pchText, uTextSize);
    } else if (eEncoding == eEncodingUTF8 && bDecodeUTF8) {
        if (!UTF8ToOneByte(pu8String, uLength, pchText, uTextSize)) {
            FRUReportFormatError("Fail to convert quoted string (line %d) in %s Area from UTF-8 to 8-bit ASCII. \n",
                                 psReader->sContext.u16LineNumber - 1, pchAreaName);
            return 0;
        }
    } else {
        const size_t uCopy = (uLength < uTextSize) ? uLength : uTextSize - 1;
        std::memcpy(pchText, pu8String, uCopy);
        pchText[uCopy] = '\0';
    }
    return 1;
}

// A string whose length must be N, the length of its type/length byte.
int LengthIsN(const sFRUTextReader* psReader, const char* pchAreaName, size_t uLength, uint8_t u8N)
{
    if (uLength == u8N) {
        return 1;
    }
    FRUReportFormatError("Length of the quoted string (line %d) in %s Area is %d. \n"
                         "Length specified in the type/length byte is %d. \n",
                         psReader->sContext.u16LineNumber - 1, pchAreaName, static_cast<uint8_t>(uLength), u8N);
    return 0;
}

// BCD Plus or 6-bit ASCII, packed straight into the image, whose bytes there are zero.
int StorePacked(sFRUTextReader* psReader, const char* pchAreaName, const char* pchText, bool bBCDPlus,
                uint16_t* pu16Stored)
{
    const size_t uChars = std::strlen(pchText);
    const size_t uBytes = bBCDPlus ? (uChars + 1) / 2 : (3 * uChars + 3) / 4;
    if (!FRUImageHasRoom(psReader, pchAreaName, uBytes)) {
        return 0;
    }
    uint8_t* pu8Target = G_pu8LocalFRUDataBuffer + G_u16RawDataSizeFromFRUFile;
    const size_t uRoom = psReader->u16ImageLimit - G_u16RawDataSizeFromFRUFile;
    if (!(bBCDPlus ? ConvertASCIIStrToBCDPlus(pchText, pu8Target, uRoom)
                   : ConvertASCIIStrToSixBitASCII(pchText, pu8Target, uRoom))) {
        FRUReportFormatError("Fail to convert quoted string \"%s\" in %s Area. (line %d) \n", pchText, pchAreaName,
                             psReader->sContext.u16LineNumber - 1);
        return 0;
    }
    G_u16RawDataSizeFromFRUFile = static_cast<uint16_t>(G_u16RawDataSizeFromFRUFile + uBytes);
    *pu16Stored = static_cast<uint16_t>(*pu16Stored + uBytes);
    return 1;
}

// A Unicode field: UTF-16LE bytes, as they stand in a UTF-16 file, or converted from
// UTF-8 and cut to N bytes; an ASCII file can't hold them.
int StoreUnicode(sFRUTextReader* psReader, const char* pchAreaName, const uint8_t* pu8String, size_t uLength,
                 uint8_t u8N, uint16_t* pu16Stored)
{
    const eFileEncoding eEncoding = psReader->sContext.eEncoding;
    if (eEncoding == eEncodingASCII) {
        std::fputs("<ERROR> Invalid file encoding format!\n", stderr);
        std::fprintf(stderr, "%s Info Area contains data in Unicode. The file must be Unicode encoded!\n",
                     pchAreaName);
        return 0;
    }
    if (eEncoding == eEncodingUTF16) {
        return LengthIsN(psReader, pchAreaName, uLength, u8N) &&
               StoreCounted(psReader, pchAreaName, pu8String, uLength, pu16Stored);
    }
    char achWide[CONVERT_BUFFER_SIZE] = {};
    iconv_t cd = iconv_open(CHARSET_UTF16LE, CHARSET_UTF8);
    ConvertEncodingType(cd, reinterpret_cast<const char*>(pu8String), uLength, achWide, sizeof(achWide));
    if (cd != INVALID_CONVERTER) {
        iconv_close(cd);
    }
    return StoreCounted(psReader, pchAreaName, reinterpret_cast<const uint8_t*>(achWide), u8N, pu16Stored);
}

// A field's string, in the form of the type/length byte stored last.
int StoreFieldString(sFRUTextReader* psReader, const char* pchAreaName, const uint8_t* pu8String, size_t uLength,
                     uint8_t u8LanguageCode, uint16_t u16HexLineCount, uint16_t* pu16Stored)
{
    const uint8_t u8TypeLength =
        G_u16RawDataSizeFromFRUFile > 0 ? G_pu8LocalFRUDataBuffer[G_u16RawDataSizeFromFRUFile - 1] : 0;
    const uint8_t u8Type = static_cast<uint8_t>(u8TypeLength >> 6);
    const uint8_t u8N = static_cast<uint8_t>(u8TypeLength & FRU_LENGTH_MASK);
    if (u8Type == FRU_TYPE_BINARY) {
        FRUReportFormatError("Incorrect String Type in %s Area. (line %d) \n", pchAreaName,
                             psReader->sContext.u16LineNumber - 1);
        return 0;
    }
    const bool bEightBit = u8Type != FRU_TYPE_BCD_PLUS && u8Type != FRU_TYPE_SIX_BIT &&
                           FRUIsEightBitField(pchAreaName, u8LanguageCode, u16HexLineCount);
    if (u8Type > FRU_TYPE_SIX_BIT && !bEightBit) {
        return StoreUnicode(psReader, pchAreaName, pu8String, uLength, u8N, pu16Stored);
    }
    char achText[FRU_RAW_LINE_SIZE];
    if (!StringToOneByte(psReader, pchAreaName, pu8String, uLength, bEightBit, achText, sizeof(achText))) {
        return 0;
    }
    if (!bEightBit) {
        return StorePacked(psReader, pchAreaName, achText, u8Type == FRU_TYPE_BCD_PLUS, pu16Stored);
    }
    const size_t uChars = std::strlen(achText);
    return LengthIsN(psReader, pchAreaName, uChars, u8N) &&
           StoreCounted(psReader, pchAreaName, achText, uChars, pu16Stored);
}

}  // namespace

bool FRUIsEightBitField(const char* pchAreaName, uint8_t u8LanguageCode, uint16_t u16FieldNumber)
{
    if (u8LanguageCode == FRU_LANGUAGE_ENGLISH || u8LanguageCode == FRU_LANGUAGE_ENGLISH_CODE) {
        return true;
    }
    if (IsArea(pchAreaName, "BOARD")) {
        return u16FieldNumber == 3 || u16FieldNumber == 5;
    }
    if (IsArea(pchAreaName, "PRODUCT")) {
        return u16FieldNumber == 5 || u16FieldNumber == 7;
    }
    return IsArea(pchAreaName, "CHASSIS");
}

int FRUStoreQuotedString(sFRUTextReader* psReader, const char* pchAreaName, const uint8_t* pu8String,
                         size_t uLength, uint8_t u8LanguageCode, uint16_t u16HexLineCount, uint16_t* pu16Stored)
{
    if (!IsArea(pchAreaName, "MULTIRECORD")) {
        return StoreFieldString(psReader, pchAreaName, pu8String, uLength, u8LanguageCode, u16HexLineCount,
                                pu16Stored);
    }
    // The data of a record have no type/length byte: a string is 8-bit text.
    char achText[FRU_RAW_LINE_SIZE];
    if (!StringToOneByte(psReader, pchAreaName, pu8String, uLength, true, achText, sizeof(achText))) {
        return 0;
    }
    return StoreCounted(psReader, pchAreaName, achText, std::strlen(achText), pu16Stored);
}
