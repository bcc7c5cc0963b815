// The hex block parser: a run of hex bytes of a FRU text file, taken token by token
// from lines read by the line rule.
#include <cstdio>
#include <cstring>

#include "FRUImage.h"
#include "FRUTextReader.h"
#include "text/LineTokens.h"
#include "text/TextLineScan.h"

namespace {

// A token that ends a hex block without being part of it: the closing parenthesis (the
// first character counts), or the tag of the next area.
bool EndsHexBlock(const char* pchToken)
{
    return pchToken[0] == ')' || std::strncmp(pchToken, FRU_TAG_PREFIX, std::strlen(FRU_TAG_PREFIX)) == 0;
}

// Puts the token back in front of the rest of its line, which starts with the separator
// that followed the token (or is empty), so that the line is as it was.
void PutBackToken(char* pchPendingLine, const char* pchToken)
{
    const size_t uToken = std::strlen(pchToken);
    std::memmove(pchPendingLine + uToken, pchPendingLine, std::strlen(pchPendingLine) + 1);
    std::memcpy(pchPendingLine, pchToken, uToken);
}

// A run of lines of one hex byte each, as an upload writes them, taken at once straight
// into the image, as far as it has room. Returns the number of bytes stored.
size_t TakeHexByteRun(sFRUTextReader* psReader, size_t uWanted)
{
    const size_t uRoom = psReader->u16ImageLimit - G_u16RawDataSizeFromFRUFile;
    const size_t uTaken = TakeHexByteLines(&psReader->sContext, G_pu8LocalFRUDataBuffer + G_u16RawDataSizeFromFRUFile,
                                           uWanted < uRoom ? uWanted : uRoom, FRU_LINE_READ_LIMIT);
    G_u16RawDataSizeFromFRUFile = static_cast<uint16_t>(G_u16RawDataSizeFromFRUFile + uTaken);
    return uTaken;
}

}  // namespace

int FRUReadHexBlock(sFRUTextReader* psReader, const char* pchAreaName, uint16_t u16Count)
{
    if (psReader == nullptr || pchAreaName == nullptr) {
        std::fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    char* pchPendingLine = psReader->achPendingLine;
    char achToken[FRU_LINE_BUFFER_SIZE];
    uint16_t u16Stored = 0;
    for (;;) {
        if (pchPendingLine[0] == '\0' && u16Stored < u16Count) {
            u16Stored = static_cast<uint16_t>(u16Stored + TakeHexByteRun(psReader, u16Count - u16Stored));
            if (u16Stored == u16Count) {
                return 1;
            }
        }
        if (pchPendingLine[0] == '\0' &&
            !ReadTextLine(&psReader->sContext, pchPendingLine, FRU_LINE_BUFFER_SIZE, FRU_LINE_READ_LIMIT)) {
            FRUReportFormatError("%s Area is not complete. \n", pchAreaName);
            return 0;
        }
        while (u16Stored < u16Count) {
            if (!ParseNonQuotedData(pchPendingLine, achToken, sizeof(achToken), 0)) {
                return 0;
            }
            if (achToken[0] == '\0') {
                pchPendingLine[0] = '\0';
                break;
            }
            if (EndsHexBlock(achToken)) {
                PutBackToken(pchPendingLine, achToken);
                return 1;
            }
            uint8_t u8Byte = 0;
            if (!FRUParseHexByte(achToken, &u8Byte)) {
                FRUReportFormatError("'%s' is not a Hex byte data in %s Area. (line %d) \n", achToken, pchAreaName,
                                     psReader->sContext.u16LineNumber);
                return 0;
            }
            if (!FRUStoreBytes(psReader, pchAreaName, &u8Byte, 1)) {
                return 0;
            }
            u16Stored++;
        }
        if (u16Stored >= u16Count) {
            return 1;
        }
    }
}
