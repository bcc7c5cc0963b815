#include "TextFileInput.h"

#include <cstring>

#include "TextReadAhead.h"

namespace {

const unsigned char ku8LineFeed = 0x0A;

// Bytes up to and including the first line feed, at most uMaxBytes of them.
size_t TakeByteLine(sTextFileContext* psContext, char* pchLine, size_t uMaxBytes)
{
    const size_t uAhead = TextReadAhead(psContext, uMaxBytes);
    sTextReadAhead& sAhead = psContext->sAhead;
    const char* pchFrom = sAhead.achData + sAhead.uNext;
    const size_t uLimit = (uAhead < uMaxBytes) ? uAhead : uMaxBytes;
    const char* pchFeed = static_cast<const char*>(memchr(pchFrom, ku8LineFeed, uLimit));
    const size_t uCount = (pchFeed != nullptr) ? static_cast<size_t>(pchFeed - pchFrom) + 1 : uLimit;
    memcpy(pchLine, pchFrom, uCount);
    pchLine[uCount] = '\0';
    sAhead.uNext += uCount;
    return uCount;
}

// Whole little-endian characters while the first byte of the next one lies within the
// limit; the line feed's 00 is taken but its 0A alone kept. Characters below U+0100 go
// to pchLine as their one byte until the first one above U+00FF, which ends the text
// (the same result as a conversion from UTF-16LE to ISO-8859-1 that stops at the first
// character it can't convert). Returns the bytes taken from the file.
size_t TakeUTF16Line(sTextFileContext* psContext, char* pchLine, size_t uMaxBytes)
{
    // The last character may begin on the last byte of the limit.
    const size_t uAhead = TextReadAhead(psContext, uMaxBytes + 1);
    sTextReadAhead& sAhead = psContext->sAhead;
    const unsigned char* pu8From = reinterpret_cast<const unsigned char*>(sAhead.achData + sAhead.uNext);
    size_t uTaken = 0;
    size_t uText = 0;
    bool bCut = false;
    while (uTaken < uMaxBytes && uTaken < uAhead) {
        const unsigned char u8Low = pu8From[uTaken];
        // A lone last byte of the file is a character with a high byte of 0.
        const unsigned char u8High = (uTaken + 1 < uAhead) ? pu8From[uTaken + 1] : 0;
        uTaken += (uTaken + 1 < uAhead) ? 2 : 1;
        bCut = bCut || u8High != 0;
        if (!bCut) {
            pchLine[uText++] = static_cast<char>(u8Low);
        }
        if (u8Low == ku8LineFeed && u8High == 0) {
            break;
        }
    }
    pchLine[uText] = '\0';
    sAhead.uNext += uTaken;
    return uTaken;
}

}  // namespace

int InitTextFileContext(sTextFileContext* psContext, const char* pchPath, FILE* pFile,
                        eFileEncoding eEncoding)
{
    if (psContext == nullptr || pchPath == nullptr || pFile == nullptr ||
        strlen(pchPath) >= sizeof(psContext->achFileName)) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    strcpy(psContext->achFileName, pchPath);
    psContext->pFile = pFile;
    psContext->u16LineNumber = 0;
    psContext->eEncoding = eEncoding;
    TextDropReadAhead(psContext, -1);
    return 1;
}

int ReadTextLine(sTextFileContext* psContext, char* pchLine, size_t uLineSize, size_t uMaxBytes)
{
    if (psContext == nullptr || psContext->pFile == nullptr || pchLine == nullptr ||
        uMaxBytes == 0 || uMaxBytes >= uLineSize || uMaxBytes > TEXT_MAX_LINE_READ) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    // A UTF-16 piece may take one byte more than the limit (a whole last character),
    // and gives at most half as many characters, so both fit the line buffer.
    const size_t uTaken = (psContext->eEncoding == eEncodingUTF16) ? TakeUTF16Line(psContext, pchLine, uMaxBytes)
                                                                   : TakeByteLine(psContext, pchLine, uMaxBytes);
    if (uTaken == 0) {
        return 0;
    }
    psContext->u16LineNumber++;
    return 1;
}
