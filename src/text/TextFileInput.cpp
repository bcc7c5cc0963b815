#include "TextFileInput.h"

#include <cstring>

namespace {

// Room for TEXT_MAX_LINE_READ bytes rounded up to a whole UTF-16 character, and zero
// bytes behind them that convert into the terminator.
constexpr size_t RAW_LINE_SIZE = TEXT_MAX_LINE_READ + 3;

const int kiLineFeed = 0x0A;

size_t ReadByteLine(FILE* pFile, char* pchLine, size_t uMaxBytes)
{
    size_t uCount = 0;
    while (uCount < uMaxBytes) {
        const int iByte = fgetc(pFile);
        if (iByte == EOF) {
            break;
        }
        pchLine[uCount++] = static_cast<char>(iByte);
        if (iByte == kiLineFeed) {
            break;
        }
    }
    return uCount;
}

// Whole characters while the first byte of the next one lies within the limit. The
// line feed's 00 is consumed but not kept; a lone last byte of the file is kept.
size_t ReadUTF16Line(FILE* pFile, char* pchRaw, size_t uMaxBytes)
{
    size_t uCount = 0;
    while (uCount < uMaxBytes) {
        const int iLow = fgetc(pFile);
        if (iLow == EOF) {
            break;
        }
        pchRaw[uCount++] = static_cast<char>(iLow);
        const int iHigh = fgetc(pFile);
        if (iHigh == EOF || (iLow == kiLineFeed && iHigh == 0)) {
            break;
        }
        pchRaw[uCount++] = static_cast<char>(iHigh);
    }
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

iconv_t OpenLineConverter(eFileEncoding eEncoding)
{
    if (eEncoding != eEncodingUTF16) {
        return INVALID_CONVERTER;
    }
    return iconv_open(CHARSET_ONE_BYTE, CHARSET_UTF16LE);
}

void CloseLineConverter(iconv_t cd)
{
    if (cd != INVALID_CONVERTER) {
        iconv_close(cd);
    }
}

int ReadTextLine(sTextFileContext* psContext, iconv_t cd, char* pchLine, size_t uLineSize,
                 size_t uMaxBytes)
{
    if (psContext == nullptr || psContext->pFile == nullptr || pchLine == nullptr ||
        uMaxBytes == 0 || uMaxBytes >= uLineSize || uMaxBytes > TEXT_MAX_LINE_READ) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    memset(pchLine, 0, uLineSize);
    if (psContext->eEncoding == eEncodingUTF16) {
        char achRaw[RAW_LINE_SIZE] = {0};
        if (ReadUTF16Line(psContext->pFile, achRaw, uMaxBytes) == 0) {
            return 0;
        }
        // The last byte of the line buffer stays zero whatever the conversion gives.
        ConvertEncodingType(cd, achRaw, sizeof(achRaw), pchLine, uLineSize - 1);
    } else if (ReadByteLine(psContext->pFile, pchLine, uMaxBytes) == 0) {
        return 0;
    }
    psContext->u16LineNumber++;
    return 1;
}
