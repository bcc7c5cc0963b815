// The second pass of the SDR text reader: one record, headed by its two tag lines.
#include <cstring>

#include "SDRTextFile.h"
#include "SDRTextFormat.h"
#include "SDRValidate.h"
#include "text/LineTokens.h"

namespace {

// True when nothing but white space is left of the line.
bool IsBlank(const char* pchText)
{
    return pchText[strspn(pchText, " \t\n\v\f\r")] == '\0';
}

}  // namespace

eSDRFileState SDRReadRecordTypeLength(sTextFileContext* psContext, const char* pchTag, uint8_t* pu8Value)
{
    if (psContext == nullptr || pchTag == nullptr || pu8Value == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return eSdrFailed;
    }
    char achLine[SDR_LINE_BUFFER_SIZE];
    char achToken[SDR_LINE_BUFFER_SIZE];
    do {
        if (!SDRReadTextLine(psContext, achLine)) {
            return eSdrFailed;
        }
        ParseNonQuotedData(achLine, achToken, sizeof(achToken), 0);
    } while (achToken[0] == '\0');

    const uint16_t u16Line = psContext->u16LineNumber;
    if (strcmp(achToken, pchTag) != 0) {
        if (strcmp(pchTag, SDR_TAG_RECORD_TYPE) == 0 && strcmp(achToken, SDR_TAG_END) == 0) {
            return eSdrEndOfSection;
        }
        SDRReportFormatError("\"%s\" is not the '%s' tag (line %d) \n", achToken, pchTag, u16Line);
        return eSdrFailed;
    }
    ParseNonQuotedData(achLine, achToken, sizeof(achToken), 0);
    if (!IsBlank(achLine)) {
        SDRReportFormatError("More than one Hex data follow the '%s' tag. (line %d) \n", pchTag, u16Line);
        return eSdrFailed;
    }
    if (achToken[0] == '\0') {
        SDRReportFormatError("Hex byte data does not follow the '%s' tag. (line %d) \n", pchTag, u16Line);
        return eSdrFailed;
    }
    if (!SDRParseHexByte(achToken, pu8Value)) {
        SDRReportFormatError("'%s' is not a Hex byte data. (line %d) \n", achToken, u16Line);
        return eSdrFailed;
    }
    return eSdrValueRead;
}

eSDRFileState SDRReadOneRecord(sTextFileContext* psContext, SDREntry* psEntry)
{
    if (psContext == nullptr || psEntry == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return eSdrFailed;
    }
    eSDRFileState eState = SDRReadRecordTypeLength(psContext, SDR_TAG_RECORD_TYPE, &psEntry->u8RecordType);
    if (eState != eSdrValueRead) {
        return eState;
    }
    if (!SDRValidateRecordType(0, psContext->u16LineNumber, psEntry->u8RecordType)) {
        return eSdrFailed;
    }
    if (SDRReadRecordTypeLength(psContext, SDR_TAG_RECORD_LENGTH, &psEntry->u8RecordLength) != eSdrValueRead) {
        return eSdrFailed;
    }
    if (!SDRValidateRecordLength(0, psContext->u16LineNumber, psEntry)) {
        return eSdrFailed;
    }
    return SDRReadRecordData(psContext, psEntry);
}
