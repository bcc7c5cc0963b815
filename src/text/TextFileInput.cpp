#include "TextFileInput.h"

#include <cstring>

namespace {

const int kiLineFeed = 0x0A;

// Bytes up to and including the first line feed, at most uMaxBytes of them.
size_t ReadByteLine(FILE* pFile, char* pchLine, size_t uMaxBytes)
{
    size_t uCount = 0;
    while (uCount < uMaxBytes) {
        const int iByte = getc_unlocked(pFile);
        if (iByte == EOF) {
            break;
        }
        pchLine[uCount++] = static_cast<char>(iByte);
        if (iByte == kiLineFeed) {
            break;
        }
    }
    pchLine[uCount] = '\0';
    return uCount;
}

// Whole little-endian characters while the first byte of the next one lies within the
// limit; the line feed's 00 is consumed but not counted. Characters below U+0100 go
// to pchLine as their one byte until the first one above U+00FF, which ends the text
// (the same result as a conversion from UTF-16LE to ISO-8859-1 that stops at the first
// character it can't convert). Returns the bytes taken from the file.
size_t ReadUTF16Line(FILE* pFile, char* pchLine, size_t uMaxBytes)
{
    size_t uCount = 0;
    size_t uText = 0;
    bool bCut = false;
    while (uCount < uMaxBytes) {
        const int iLow = getc_unlocked(pFile);
        if (iLow == EOF) {
            break;
        }
        uCount++;
        const int iHigh = getc_unlocked(pFile);
        const bool bLineFeed = (iLow == kiLineFeed && iHigh == 0);
        if (iHigh != EOF && !bLineFeed) {
            uCount++;
        }
        bCut = bCut || (iHigh != EOF && iHigh != 0);
        if (!bCut) {
            pchLine[uText++] = static_cast<char>(iLow);
        }
        if (iHigh == EOF || bLineFeed) {
            break;
        }
    }
    pchLine[uText] = '\0';
    return uCount;
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
    const size_t uTaken = (psContext->eEncoding == eEncodingUTF16)
                              ? ReadUTF16Line(psContext->pFile, pchLine, uMaxBytes)
                              : ReadByteLine(psContext->pFile, pchLine, uMaxBytes);
    if (uTaken == 0) {
        return 0;
    }
    psContext->u16LineNumber++;
    return 1;
}
