// The text branch of ReadSDRFile: the two passes, the record limit and the report of an
// empty section; and the small helpers the reader's parts share.
#include "SDRTextFile.h"

#include <cstdarg>

#include "SDRTextFormat.h"
#include "text/DatTrans.h"

namespace {

long MarkSize(eFileEncoding eEncoding)
{
    return (eEncoding == eEncodingUTF8) ? 3 : (eEncoding == eEncodingUTF16) ? 2 : 0;
}

// The second pass: records until the closing ")" of the section.
int ReadRecords(sTextFileContext* psContext, uint16_t* pu16RecordCount)
{
    for (;;) {
        if (*pu16RecordCount >= SDR_RECORD_LIMIT) {
            fprintf(stderr, "The SDR record count exceeds %Xh records. \n", SDR_RECORD_LIMIT);
            return 0;
        }
        const eSDRFileState eState = SDRReadOneRecord(psContext, &G_psLocalSDREntryList[*pu16RecordCount]);
        if (eState == eSdrFailed) {
            return 0;
        }
        if (eState == eSdrEndOfSection) {
            if (*pu16RecordCount == 0) {
                SDRReportFormatError("There is no SDR record in the scope of \"%s %s\". \n", SDR_TAG_SECTION,
                                     SDR_TAG_END);
                return 0;
            }
            return 1;
        }
        (*pu16RecordCount)++;
        if (*pu16RecordCount == SDR_RECORD_LIMIT) {
            fprintf(stderr, "The SDR record count exceeds %Xh records. \n", SDR_RECORD_LIMIT);
            return 0;
        }
    }
}

}  // namespace

void SDRReportFormatError(const char* pchFormat, ...)
{
    fputs("<ERROR> SDR file format error.\n", stderr);
    va_list args;
    va_start(args, pchFormat);
    vfprintf(stderr, pchFormat, args);
    va_end(args);
}

int SDRReadTextLine(sTextFileContext* psContext, char* pchLine)
{
    return ReadTextLine(psContext, pchLine, SDR_LINE_BUFFER_SIZE, SDR_LINE_MAX_READ);
}

int SDRParseHexByte(const char* pchToken, uint8_t* pu8Value)
{
    if (pchToken[0] == '\0' || pchToken[1] == '\0' || pchToken[2] != '\0') {
        return 0;
    }
    const uint8_t u8High = HexToDecimal(&pchToken[0]);
    const uint8_t u8Low = HexToDecimal(&pchToken[1]);
    if (u8High > 0x0F || u8Low > 0x0F) {
        return 0;
    }
    *pu8Value = static_cast<uint8_t>((u8High << 4) | u8Low);
    return 1;
}

int ReadSDRTextFile(FILE* pFile, const char* pchPath, eFileEncoding eEncoding, uint16_t* pu16RecordCount)
{
    if (pFile == nullptr || pchPath == nullptr || pu16RecordCount == nullptr || G_psLocalSDREntryList == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        if (pFile != nullptr) {
            fclose(pFile);
        }
        return 0;
    }
    sTextFileContext sContext;
    if (!InitTextFileContext(&sContext, pchPath, pFile, eEncoding)) {
        fclose(pFile);
        return 0;
    }
    if (!TextFileSeek(&sContext, MarkSize(eEncoding))) {
        fprintf(stderr, "<ERROR> Error occurs while reading SDR file %s. \n", pchPath);
        fclose(pFile);
        return 0;
    }
    int iResult = SDRValidateStartEndTag(&sContext) && ReadRecords(&sContext, pu16RecordCount);
    fclose(pFile);
    return iResult;
}
