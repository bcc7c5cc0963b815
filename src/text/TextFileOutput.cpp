#include "TextFileOutput.h"

#include "text/DatTrans.h"
#include "text/DiskFullDialogue.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>

namespace {

// Characters of one UTF-16 piece: two bytes each fill a conversion buffer.
constexpr size_t WIDE_PIECE_CHARS = CONVERT_BUFFER_SIZE / 2;
// Characters of one UTF-8 piece: at most two bytes each, and the output's 8-bit length.
constexpr size_t UTF8_PIECE_CHARS = CODEC_MAX_OUTPUT / 2;

// Writes and flushes the bytes; a short write or a failed flush is a full disk.
int WriteBytes(FILE* pStream, const char* pchPath, const char* pchBytes, size_t uCount)
{
    const size_t uWritten = fwrite(pchBytes, 1, uCount, pStream);
    if (uWritten < uCount || fflush(pStream) != 0) {
        return RunDiskFullDialogue(pStream, pchPath);
    }
    return WRITE_SUCCESS;
}

int WriteUTF8String(FILE* pStream, const char* pchPath, const char* pchText)
{
    size_t uLength = strlen(pchText);
    while (uLength > 0) {
        const size_t uPiece = uLength < UTF8_PIECE_CHARS ? uLength : UTF8_PIECE_CHARS;
        char achBuffer[CONVERT_BUFFER_SIZE] = {0};
        uint8_t u8OutLength = 0;
        if (!ASCIIToUTF8(pchText, static_cast<uint8_t>(uPiece), achBuffer, sizeof(achBuffer) - 1,
                         &u8OutLength)) {
            return WRITE_INTERNAL_ERROR;
        }
        const int iStatus = WriteToFile(pStream, pchPath, achBuffer);
        if (iStatus != WRITE_SUCCESS) {
            return iStatus;
        }
        pchText += uPiece;
        uLength -= uPiece;
    }
    return WRITE_SUCCESS;
}

int WriteUTF16String(FILE* pStream, const char* pchPath, const char* pchText)
{
    iconv_t cd = iconv_open(CHARSET_UTF16LE, CHARSET_ONE_BYTE);
    const int iStatus = WriteWideCharToFile(pStream, pchPath, pchText, cd);
    if (cd != INVALID_CONVERTER) {
        iconv_close(cd);
    }
    return iStatus;
}

}  // namespace

FILE* CreateTextFile(const char* pchPath)
{
    const int iFile = open(pchPath, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (iFile < 0) {
        return nullptr;
    }
    FILE* pFile = fdopen(iFile, "wb");
    if (pFile == nullptr) {
        close(iFile);
    }
    return pFile;
}

const char* ByteOrderMark(eFileEncoding eEncoding)
{
    return (eEncoding == eEncodingUTF8) ? "\xEF\xBB\xBF" : (eEncoding == eEncodingUTF16) ? "\xFF\xFE" : "";
}

int WriteBytesToFile(FILE* pStream, const char* pchPath, const void* pBytes, size_t uCount)
{
    if (pStream == nullptr || pchPath == nullptr || pBytes == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return WRITE_INTERNAL_ERROR;
    }
    return WriteBytes(pStream, pchPath, static_cast<const char*>(pBytes), uCount);
}

int WriteToFile(FILE* pStream, const char* pchPath, const char* pchText)
{
    if (pStream == nullptr || pchPath == nullptr || pchText == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return WRITE_INTERNAL_ERROR;
    }
    return WriteBytes(pStream, pchPath, pchText, strlen(pchText));
}

int WriteWideCharToFile(FILE* pStream, const char* pchPath, const char* pchText, iconv_t cd)
{
    if (pStream == nullptr || pchPath == nullptr || pchText == nullptr || cd == INVALID_CONVERTER) {
        fputs("<ERROR> Internal Error!", stderr);
        return WRITE_INTERNAL_ERROR;
    }
    size_t uLength = strlen(pchText);
    while (uLength > 0) {
        const size_t uPiece = uLength < WIDE_PIECE_CHARS ? uLength : WIDE_PIECE_CHARS;
        char achBuffer[CONVERT_BUFFER_SIZE] = {0};
        const size_t uBytes = ConvertEncodingType(cd, pchText, uPiece, achBuffer, sizeof(achBuffer));
        const int iStatus = WriteBytes(pStream, pchPath, achBuffer, uBytes);
        if (iStatus != WRITE_SUCCESS) {
            return iStatus;
        }
        pchText += uPiece;
        uLength -= uPiece;
    }
    return WRITE_SUCCESS;
}

int WriteStringToFile(FILE* pStream, const char* pchPath, const char* pchText, eFileEncoding eEncoding)
{
    if (pStream == nullptr || pchPath == nullptr || pchText == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    int iStatus = WRITE_SUCCESS;
    if (eEncoding == eEncodingUTF16) {
        iStatus = WriteUTF16String(pStream, pchPath, pchText);
    } else if (eEncoding == eEncodingUTF8) {
        iStatus = WriteUTF8String(pStream, pchPath, pchText);
    } else {
        iStatus = WriteToFile(pStream, pchPath, pchText);
    }
    return iStatus == WRITE_SUCCESS ? 1 : 0;
}

int FeedData(FILE* pStream, const char* pchPath, sFeedCursor* psCursor, uint16_t u16Count)
{
    if (pStream == nullptr || pchPath == nullptr || psCursor == nullptr || psCursor->pu8Data == nullptr ||
        static_cast<uint32_t>(psCursor->u16Offset) + u16Count > psCursor->u16DataSize) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    const bool bWide = psCursor->eEncoding == eEncodingUTF16;
    iconv_t cd = bWide ? iconv_open(CHARSET_UTF16LE, CHARSET_ONE_BYTE) : INVALID_CONVERTER;
    int iStatus = WRITE_SUCCESS;
    for (uint32_t i = 0; i < u16Count && iStatus == WRITE_SUCCESS; i++) {
        char achLine[4];
        snprintf(achLine, sizeof(achLine), "%02X\n", psCursor->pu8Data[psCursor->u16Offset + i]);
        iStatus = bWide ? WriteWideCharToFile(pStream, pchPath, achLine, cd)
                        : WriteToFile(pStream, pchPath, achLine);
    }
    if (cd != INVALID_CONVERTER) {
        iconv_close(cd);
    }
    if (iStatus != WRITE_SUCCESS) {
        return 0;
    }
    psCursor->u16Offset = static_cast<uint16_t>(psCursor->u16Offset + u16Count);
    return 1;
}
