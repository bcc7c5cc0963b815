// The second pass of the SDR text reader: one record, headed by its two tag lines.
#include <cstring>

#include "SDRTextFile.h"
#include "SDRTextFormat.h"
#include "SDRValidate.h"
#include "text/LineTokens.h"
#include "text/TextLineScan.h"

namespace {

// True when nothing but white space is left of the line.
bool IsBlank(const char* pchText)
{
    while (*pchText == ' ' || (*pchText >= '\t' && *pchText <= '\r')) {
        pchText++;
    }
    return *pchText == '\0';
}

// The value of a hex digit, or 0xFF for any other character.
uint8_t HexDigitValue(char chValue)
{
    return (chValue >= '0' && chValue <= '9')   ? static_cast<uint8_t>(chValue - '0')
           : (chValue >= 'A' && chValue <= 'F') ? static_cast<uint8_t>(chValue - 'A' + 10)
           : (chValue >= 'a' && chValue <= 'f') ? static_cast<uint8_t>(chValue - 'a' + 10)
                                                : 0xFF;
}

// The tag line as the writer lays it out: the tag, blanks or tabs, two hex digits and the
// line feed (or the end of the file). What the steps below make of such a line is its
// value, so it is taken at once. 1 with the value, else 0.
int ReadPlainTagLine(const char* pchLine, const char* pchTag, uint8_t* pu8Value)
{
    while (*pchTag != '\0' && *pchLine == *pchTag) {
        pchLine++;
        pchTag++;
    }
    if (*pchTag != '\0' || (*pchLine != ' ' && *pchLine != '\t')) {
        return 0;
    }
    while (*pchLine == ' ' || *pchLine == '\t') {
        pchLine++;
    }
    const uint8_t u8High = HexDigitValue(pchLine[0]);
    const uint8_t u8Low = HexDigitValue(pchLine[1]);
    if ((u8High | u8Low) > 0x0F || (pchLine[2] != '\0' && (pchLine[2] != '\n' || pchLine[3] != '\0'))) {
        return 0;
    }
    *pu8Value = static_cast<uint8_t>((u8High << 4) | u8Low);
    return 1;
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
    achToken[0] = '\0';
    while (achToken[0] == '\0') {
        SkipSpaceLines(psContext, SDR_LINE_MAX_READ);  // they give no token
        if (!SDRReadTextLine(psContext, achLine)) {
            return eSdrFailed;
        }
        if (ReadPlainTagLine(achLine, pchTag, pu8Value)) {
            return eSdrValueRead;
        }
        if (achLine[0] != '\n' || achLine[1] != '\0') {  // an empty line gives no token
            ParseNonQuotedData(achLine, achToken, sizeof(achToken), 0);
        }
    }

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
