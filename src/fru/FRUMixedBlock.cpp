// The mixed block parser: the hex bytes and quoted strings of an area's fields or of a
// record's data. It reads its lines byte by byte in the file's own encoding, so that a
// string keeps every byte (a Unicode field of a UTF-16 file is stored as it stands).
#include <cstdio>
#include <cstring>

#include "FRUImage.h"
#include "FRUTextReader.h"
#include "text/EncodingConversion.h"
#include "text/LineTokens.h"
#include "text/TextLineScan.h"
#include "text/TextReadAhead.h"

namespace {

enum eRawLine { eRawLineRead, eRawLineFileEnd, eRawLineTooLong };

// The state of one mixed block.
struct sMixedBlock {
    const char* pchAreaName;
    uint16_t u16BlockLength;
    uint8_t u8LanguageCode;
    bool bFieldArea;        // chassis, board or product: C1 ends the fields
    uint16_t u16Stored;     // bytes stored by this block, strings included
    bool bEndOfFieldsSeen;  // a hex byte C1 has been stored in a field area
    // Hex lines met so far (not blank, not a comment, no apostrophe): a field's number
    // on the line of its type/length byte. 16 bits, so that it never comes round again.
    uint16_t u16HexLineCount;
};

// Takes one line, line end included, into pu8Line: up to the byte 0A in an ASCII or
// UTF-8 file, up to the character 0A 00 in a UTF-16 file. The end of the file ends a
// line that has bytes. The bytes come from the block that the line rule reads ahead.
eRawLine ReadRawLine(sTextFileContext* psContext, uint8_t* pu8Line, size_t* puLength)
{
    const bool bUTF16 = psContext->eEncoding == eEncodingUTF16;
    sTextReadAhead& sAhead = psContext->sAhead;
    size_t uLength = 0;
    for (;;) {
        if (TextReadAhead(psContext, 1) == 0) {
            *puLength = uLength;
            return uLength > 0 ? eRawLineRead : eRawLineFileEnd;
        }
        if (uLength == FRU_RAW_LINE_LIMIT) {
            return eRawLineTooLong;
        }
        const uint8_t u8Byte = static_cast<uint8_t>(sAhead.achData[sAhead.uNext++]);
        pu8Line[uLength++] = u8Byte;
        const bool bEnd = bUTF16 ? (uLength % 2 == 0 && pu8Line[uLength - 2] == 0x0A && u8Byte == 0)
                                 : u8Byte == 0x0A;
        if (bEnd) {
            *puLength = uLength;
            return eRawLineRead;
        }
    }
}

// Whether the character at uAt of a line, in the file's encoding, is chWanted.
bool IsCharAt(const uint8_t* pu8Line, size_t uLength, size_t uAt, size_t uUnit, char chWanted)
{
    return uAt + uUnit <= uLength && pu8Line[uAt] == static_cast<uint8_t>(chWanted) &&
           (uUnit == 1 || pu8Line[uAt + 1] == 0);
}

bool IsQuotedLine(const uint8_t* pu8Line, size_t uLength, size_t uUnit)
{
    for (size_t i = 0; i < uLength; i += uUnit) {
        if (IsCharAt(pu8Line, uLength, i, uUnit, '\'')) {
            return true;
        }
    }
    return false;
}

// A quoted line: blanks, an apostrophe, the string, the last apostrophe of the line, and
// anything behind it, which is dropped. A line that starts with "//" behind its blanks
// is a comment.
int ReadQuotedLine(sFRUTextReader* psReader, sMixedBlock* ps, const uint8_t* pu8Line, size_t uLength)
{
    const size_t uUnit = psReader->sContext.eEncoding == eEncodingUTF16 ? 2 : 1;
    const int iLine = psReader->sContext.u16LineNumber;
    size_t uStart = 0;
    while (IsCharAt(pu8Line, uLength, uStart, uUnit, ' ')) {
        uStart += uUnit;
    }
    if (IsCharAt(pu8Line, uLength, uStart, uUnit, '/') && IsCharAt(pu8Line, uLength, uStart + uUnit, uUnit, '/')) {
        return 1;
    }
    if (!IsCharAt(pu8Line, uLength, uStart, uUnit, '\'')) {
        // Reports about a string name the line in front of it, where its type/length byte stands.
        FRUReportFormatError("Quoted string (line %d) in %s Area does not begin with a quotation mark. \n", iLine - 1,
                             ps->pchAreaName);
        return 0;
    }
    if (ps->bEndOfFieldsSeen) {
        FRUReportFormatError("In %s Area, C1 is followed by an one-byte length string. (line %d) \n",
                             ps->pchAreaName, iLine);
        return 0;
    }
    // The last apostrophe closes the string, so that it may hold apostrophes.
    size_t uClose = uLength - (uLength - uStart) % uUnit;
    do {
        uClose -= uUnit;
    } while (uClose > uStart && !IsCharAt(pu8Line, uLength, uClose, uUnit, '\''));
    if (uClose == uStart) {
        FRUReportFormatError("Quoted string (line %d) in %s Area is not complete. \n", iLine, ps->pchAreaName);
        return 0;
    }
    const size_t uFirst = uStart + uUnit;
    return FRUStoreQuotedString(psReader, ps->pchAreaName, pu8Line + uFirst, uClose - uFirst, ps->u8LanguageCode,
                                ps->u16HexLineCount, &ps->u16Stored);
}

// The first nonzero byte behind C1 is the area checksum: the zeroes that the text has
// left out go in front of it, up to the last byte of the block.
int InsertZeroesBehindEndOfFields(sFRUTextReader* psReader, sMixedBlock* ps)
{
    if (ps->u16Stored + 1 >= ps->u16BlockLength) {
        return 1;
    }
    const size_t uZeroes = ps->u16BlockLength - 1u - ps->u16Stored;
    if (G_u16RawDataSizeFromFRUFile + uZeroes + 1 > psReader->u16ImageLimit) {
        FRUReportFormatError("In %s Area, the zeroes left out behind C1 would make the FRU image longer than its "
                             "file (%d bytes): list them in the file. (line %d) \n",
                             ps->pchAreaName, psReader->u16ImageLimit, psReader->sContext.u16LineNumber);
        return 0;
    }
    std::memset(G_pu8LocalFRUDataBuffer + G_u16RawDataSizeFromFRUFile, 0, uZeroes);
    G_u16RawDataSizeFromFRUFile = static_cast<uint16_t>(G_u16RawDataSizeFromFRUFile + uZeroes);
    ps->u16Stored = static_cast<uint16_t>(ps->u16Stored + uZeroes);
    return 1;
}

// Stores a hex byte of the block under the rule of C1.
int StoreHexByte(sFRUTextReader* psReader, sMixedBlock* ps, uint8_t u8Byte)
{
    if (ps->bEndOfFieldsSeen && u8Byte != 0 && !InsertZeroesBehindEndOfFields(psReader, ps)) {
        return 0;
    }
    if (!FRUStoreBytes(psReader, ps->pchAreaName, &u8Byte, 1)) {
        return 0;
    }
    ps->u16Stored++;
    ps->bEndOfFieldsSeen = ps->bEndOfFieldsSeen || (ps->bFieldArea && u8Byte == FRU_END_OF_FIELDS);
    return 1;
}

// Every token of a hex line, even those past the end of the block; a comment ends the line.
int TakeHexTokens(sFRUTextReader* psReader, sMixedBlock* ps, char* pchLine)
{
    char achToken[FRU_RAW_LINE_SIZE];
    for (;;) {
        if (!ParseNonQuotedData(pchLine, achToken, sizeof(achToken), 1)) {
            return 0;
        }
        TrimComment(achToken);
        if (achToken[0] == '\0') {
            return 1;
        }
        uint8_t u8Byte = 0;
        if (!FRUParseHexByte(achToken, &u8Byte)) {
            FRUReportFormatError("'%s' is not a Hex byte data in %s Area. (line %d) \n", achToken, ps->pchAreaName,
                                 psReader->sContext.u16LineNumber);
            return 0;
        }
        if (!StoreHexByte(psReader, ps, u8Byte)) {
            return 0;
        }
    }
}

// A run of lines of one hex byte each, as an upload writes them, taken at once and
// stored one by one as their lines would be, each counted as a hex line. *puTaken
// receives the number of lines. 1, or 0 after the report, with the line of the byte.
int TakeHexByteRun(sFRUTextReader* psReader, sMixedBlock* ps, size_t* puTaken)
{
    uint8_t au8Values[FRU_LINE_BUFFER_SIZE];
    const size_t uLeft = ps->u16BlockLength - ps->u16Stored;
    const uint16_t u16Before = psReader->sContext.u16LineNumber;
    *puTaken = TakeHexByteLines(&psReader->sContext, au8Values, uLeft < sizeof(au8Values) ? uLeft : sizeof(au8Values),
                                FRU_LINE_READ_LIMIT);
    for (size_t i = 0; i < *puTaken; i++) {
        psReader->sContext.u16LineNumber = static_cast<uint16_t>(u16Before + i + 1);
        ps->u16HexLineCount++;
        if (!StoreHexByte(psReader, ps, au8Values[i])) {
            return 0;
        }
    }
    return 1;
}

// The next line of the block: a quoted line is stored here; a hex line is brought to
// one-byte text in pchLine, empty for a blank or comment line. 1, or 0 after the report.
int ReadMixedLine(sFRUTextReader* psReader, sMixedBlock* ps, char* pchLine)
{
    uint8_t au8Raw[FRU_RAW_LINE_SIZE];
    size_t uLength = 0;
    const eRawLine eRead = ReadRawLine(&psReader->sContext, au8Raw, &uLength);
    if (eRead == eRawLineFileEnd) {
        FRUReportFormatError("%s Area is not complete. \n", ps->pchAreaName);
        return 0;
    }
    psReader->sContext.u16LineNumber++;
    if (eRead == eRawLineTooLong) {
        FRUReportFormatError("A line in %s Area is longer than %d bytes. (line %d) \n", ps->pchAreaName,
                             FRU_RAW_LINE_LIMIT, psReader->sContext.u16LineNumber);
        return 0;
    }
    const bool bUTF16 = psReader->sContext.eEncoding == eEncodingUTF16;
    if (IsQuotedLine(au8Raw, uLength, bUTF16 ? 2 : 1)) {
        return ReadQuotedLine(psReader, ps, au8Raw, uLength);
    }
    if (bUTF16) {
        NarrowUTF16LE(au8Raw, uLength, pchLine, FRU_RAW_LINE_SIZE);
    } else {
        std::memcpy(pchLine, au8Raw, uLength);
        pchLine[uLength] = '\0';
    }
    TrimSideSpace(pchLine);
    if (pchLine[0] == '/' && pchLine[1] == '/') {
        pchLine[0] = '\0';
    }
    ps->u16HexLineCount = static_cast<uint16_t>(ps->u16HexLineCount + (pchLine[0] != '\0' ? 1 : 0));
    return 1;
}

}  // namespace

int FRUReadHexDataQuotedStringMixBlockWithLanguageCode(sFRUTextReader* psReader, const char* pchAreaName,
                                                       uint16_t u16BlockLength, uint8_t u8LanguageCode)
{
    if (psReader == nullptr || pchAreaName == nullptr) {
        std::fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    sMixedBlock s = {pchAreaName, u16BlockLength, u8LanguageCode, std::strcmp(pchAreaName, "MULTIRECORD") != 0,
                     0, false, 0};
    char achLine[FRU_RAW_LINE_SIZE];
    while (s.u16Stored < s.u16BlockLength) {
        // The rest of the last line of a hex block comes first; it counts as no hex line.
        achLine[0] = '\0';
        size_t uTaken = 0;
        if (psReader->achPendingLine[0] != '\0') {
            std::strcpy(achLine, psReader->achPendingLine);
            psReader->achPendingLine[0] = '\0';
        } else if (!TakeHexByteRun(psReader, &s, &uTaken) || (uTaken == 0 && !ReadMixedLine(psReader, &s, achLine))) {
            return 0;
        }
        if (!TakeHexTokens(psReader, &s, achLine)) {
            return 0;
        }
    }
    return 1;
}
