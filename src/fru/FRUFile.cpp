#include "FRUFile.h"

#include <cstdlib>
#include <cstring>

#include "FRUAreaTable.h"
#include "FRUImage.h"
#include "FRUTextReader.h"
#include "FRUValidate.h"
#include "text/FileEncoding.h"
#include "text/LineTokens.h"
#include "text/TextLineScan.h"

namespace {

enum {
    FRU_SIZE_READ_BLOCK = 255,  // bytes per read of the size pass
    UTF8_MARK_SIZE = 3,
    UTF16_MARK_SIZE = 2,
};

// The number of bytes in the file, byte-order mark included.
size_t FRUFileSize(FILE* pFile)
{
    uint8_t au8Block[FRU_SIZE_READ_BLOCK];
    size_t uSize = 0;
    size_t uRead = 0;
    while ((uRead = std::fread(au8Block, 1, sizeof(au8Block), pFile)) > 0) {
        uSize += uRead;
    }
    return uSize;
}

long MarkSize(eFileEncoding eEncoding)
{
    return eEncoding == eEncodingUTF8 ? UTF8_MARK_SIZE : eEncoding == eEncodingUTF16 ? UTF16_MARK_SIZE : 0;
}

// A zero-filled image buffer of the file's size, in place of any earlier one.
int AllocateLocalImage(size_t uFileSize)
{
    std::free(G_pu8LocalFRUDataBuffer);
    G_pu8LocalFRUDataBuffer = static_cast<uint8_t*>(std::calloc(uFileSize > 0 ? uFileSize : 1, 1));
    if (G_pu8LocalFRUDataBuffer == nullptr) {
        std::fputs("<ERROR> FRU Memory allocation error! \n", stderr);
        return 0;
    }
    return 1;
}

// The whole file is the image: read from its first byte (a byte-order mark, if the
// first bytes looked like one, is image data) and validated.
int FRUReadBinaryFile(FILE* pFile, size_t uFileSize)
{
    std::fputs("Recognize FRU File as binary format \n", stdout);
    std::fflush(stdout);
    if (uFileSize > FRU_IMAGE_SIZE_LIMIT) {
        // The image's length counts in 16 bits: a longer file can't be an image.
        std::fputs("<ERROR> Incorrect FRU binary file. \n", stderr);
        std::fprintf(stderr, "The FRU data length > %d. \n", FRU_IMAGE_SIZE_LIMIT);
        return 0;
    }
    if (std::fseek(pFile, 0, SEEK_SET) != 0) {
        std::fputs("<ERROR> Set current file-position indicator failed. \n", stderr);
        return 0;
    }
    G_u16RawDataSizeFromFRUFile = 0;
    FRUReadRawData(pFile, uFileSize);
    return FRUValidateRawData(G_pu8LocalFRUDataBuffer, G_u16RawDataSizeFromFRUFile, 0);
}

// Everything of ReadFRUFile behind the opening of the file: the size pass, the image
// buffer of the file's size, and the file read as text if a line holds the start tag.
int FRUReadOpenFile(const char* pchPath, FILE* pFile, eFileEncoding eEncoding)
{
    const size_t uFileSize = FRUFileSize(pFile);
    if (std::fseek(pFile, MarkSize(eEncoding), SEEK_SET) != 0) {
        std::fputs("<ERROR> Set current file-position indicator failed. \n", stderr);
        return 0;
    }
    sFRUTextReader sReader;
    if (!AllocateLocalImage(uFileSize) || !FRUInitTextReader(&sReader, pchPath, pFile, eEncoding, uFileSize)) {
        return 0;
    }
    uint32_t u32OutsideFlag = 0;
    if (FRUReadBlockStartTag(&sReader.sContext, &u32OutsideFlag) == 0) {
        return FRUReadBinaryFile(pFile, uFileSize);
    }
    return FRUReadTextFile(&sReader, u32OutsideFlag);
}

}  // namespace

int ReadFRUFile(const char* pchPath)
{
    if (pchPath == nullptr) {
        return 0;
    }
    G_u16RawDataSizeFromFRUFile = 0;
    eFileEncoding eEncoding = eEncodingASCII;
    if (!GetFileEncoding(pchPath, &eEncoding)) {
        std::fprintf(stderr, "<ERROR> Failure to get encoding info from file %s.\n", pchPath);
        return 0;
    }
    FILE* pFile = std::fopen(pchPath, "rb");
    if (pFile == nullptr) {
        std::fprintf(stderr, "<ERROR> Failure to open FRU file %s.\n", pchPath);
        return 0;
    }
    const int iResult = FRUReadOpenFile(pchPath, pFile, eEncoding);
    std::fclose(pFile);
    return iResult;
}

int FRUReadRawData(FILE* pFile, size_t uBufferSize)
{
    const size_t uLimit = uBufferSize < size_t{FRU_IMAGE_SIZE_LIMIT} ? uBufferSize : size_t{FRU_IMAGE_SIZE_LIMIT};
    int iByte = 0;
    while (G_u16RawDataSizeFromFRUFile < uLimit && (iByte = std::fgetc(pFile)) != EOF) {
        G_pu8LocalFRUDataBuffer[G_u16RawDataSizeFromFRUFile++] = static_cast<uint8_t>(iByte);
    }
    return 1;
}

int FRUReadBlockStartTag(sTextFileContext* psContext, uint32_t* pu32OutsideFlag)
{
    if (psContext == nullptr || pu32OutsideFlag == nullptr) {
        std::fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    char achLine[FRU_LINE_BUFFER_SIZE];
    int iFound = 0;
    while (!iFound) {
        // Once the flag is set, only the tag matters, and a line without "(" can't hold it.
        if (*pu32OutsideFlag != 0) {
            SkipTextLinesWithout(psContext, "(", FRU_LINE_READ_LIMIT);
        }
        if (!ReadTextLine(psContext, achLine, sizeof(achLine), FRU_LINE_READ_LIMIT)) {
            break;
        }
        TrimComment(achLine);
        TrimSideSpace(achLine);
        if (std::strstr(achLine, FRU_START_TAG) != nullptr) {
            iFound = 1;
            if (std::strcmp(achLine, FRU_START_TAG) != 0) {
                *pu32OutsideFlag = 1;
            }
        } else if (achLine[0] != '\0') {
            *pu32OutsideFlag = 1;
        }
    }
    return iFound;
}
