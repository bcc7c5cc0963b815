// What the parts of the FRU text reader share: the reader's set-up, the two-line format
// report, and the bounded stores into the image.
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "FRUImage.h"
#include "FRUTextReader.h"
#include "text/DatTrans.h"

int FRUInitTextReader(sFRUTextReader* psReader, const char* pchPath, FILE* pFile, eFileEncoding eEncoding,
                      size_t uBufferSize)
{
    if (psReader == nullptr || !InitTextFileContext(&psReader->sContext, pchPath, pFile, eEncoding)) {
        if (psReader == nullptr) {
            std::fputs("<ERROR> Internal Error!\n", stderr);
        }
        return 0;
    }
    psReader->achPendingLine[0] = '\0';
    const size_t uMost = FRU_IMAGE_SIZE_LIMIT;
    psReader->u16ImageLimit = static_cast<uint16_t>(uBufferSize < uMost ? uBufferSize : uMost);
    return 1;
}

void FRUReportFormatError(const char* pchFormat, ...)
{
    std::fputs("<ERROR> Incorrect FRU file.\n", stderr);
    va_list args;
    va_start(args, pchFormat);
    std::vfprintf(stderr, pchFormat, args);
    va_end(args);
}

int FRUImageHasRoom(const sFRUTextReader* psReader, const char* pchAreaName, size_t uCount)
{
    if (size_t{G_u16RawDataSizeFromFRUFile} + uCount <= psReader->u16ImageLimit) {
        return 1;
    }
    if (psReader->u16ImageLimit == FRU_IMAGE_SIZE_LIMIT) {
        FRUReportFormatError("In %s Area, the FRU image would be longer than %d bytes, the most it can have. "
                             "(line %d) \n",
                             pchAreaName, FRU_IMAGE_SIZE_LIMIT, psReader->sContext.u16LineNumber);
    } else {
        // Only a string that stands for more bytes than its text (a Unicode string of a
        // UTF-8 file) can get here: every other image byte costs a byte of text or more.
        FRUReportFormatError("In %s Area, the FRU image would be longer than its file (%d bytes). (line %d) \n",
                             pchAreaName, psReader->u16ImageLimit, psReader->sContext.u16LineNumber);
    }
    return 0;
}

int FRUStoreBytes(sFRUTextReader* psReader, const char* pchAreaName, const uint8_t* pu8Bytes, size_t uCount)
{
    if (!FRUImageHasRoom(psReader, pchAreaName, uCount)) {
        return 0;
    }
    std::memcpy(G_pu8LocalFRUDataBuffer + G_u16RawDataSizeFromFRUFile, pu8Bytes, uCount);
    G_u16RawDataSizeFromFRUFile = static_cast<uint16_t>(G_u16RawDataSizeFromFRUFile + uCount);
    return 1;
}

int FRUParseHexByte(const char* pchToken, uint8_t* pu8Value)
{
    if (std::strlen(pchToken) != 2) {
        return 0;
    }
    const uint8_t u8High = HexToDecimal(&pchToken[0]);
    const uint8_t u8Low = HexToDecimal(&pchToken[1]);
    if (u8High > 15 || u8Low > 15) {
        return 0;
    }
    *pu8Value = static_cast<uint8_t>((u8High << 4) | u8Low);
    return 1;
}
