// The bytes of one record of an SDR text file: the fixed part in hex, then the ID
// string, in quotes or in hex as its type/length code says.
#include <cstring>

#include "SDRRecordTypes.h"
#include "SDRTextFile.h"
#include "SDRTextFormat.h"
#include "SDRValidate.h"
#include "text/DatTrans.h"
#include "text/LineTokens.h"

namespace {

// What one step made of the current line.
enum eLineStep { eStepNeedLine, eStepDone, eStepFailed };

const char kchQuote = '\'';

// The record being filled: its string start and the type/length code seen so far.
struct sRecordFill {
    sTextFileContext* psContext;
    SDREntry* psEntry;
    uint8_t u8StringStart;
    uint8_t u8LengthCode;
};

void ReportIncomplete(const sRecordFill& sFill)
{
    SDRReportFormatError("Record type (%02Xh) is not complete. (line %d) \n", sFill.psEntry->u8RecordType,
                         sFill.psContext->u16LineNumber);
}

// UTF-8 lines become one-byte text, comment and all. A line that can't be converted
// counts as the end of the file, so it takes no line number.
int ConvertUTF8Line(const sRecordFill& sFill, char* pchLine)
{
    size_t uLength = 0;
    bool bPlainASCII = true;
    for (; pchLine[uLength] != '\0'; uLength++) {
        bPlainASCII = bPlainASCII && static_cast<unsigned char>(pchLine[uLength]) < 0x80;
    }
    if (bPlainASCII) {
        return 1;  // the bytes are the characters already
    }
    char achText[SDR_LINE_BUFFER_SIZE];
    uint8_t u8Length = 0;
    if (!UTF8ToASCII(pchLine, static_cast<uint8_t>(uLength), achText, sizeof(achText) - 1, &u8Length)) {
        sFill.psContext->u16LineNumber--;
        fprintf(stderr, "Fail to convert string (line %d) from UTF-8 to 8-bit ASCII. \n",
                sFill.psContext->u16LineNumber);
        return 0;
    }
    memcpy(pchLine, achText, u8Length);
    pchLine[u8Length] = '\0';
    return 1;
}

int ReadRecordLine(const sRecordFill& sFill, char* pchLine)
{
    if (!SDRReadTextLine(sFill.psContext, pchLine) ||
        (sFill.psContext->eEncoding == eEncodingUTF8 && !ConvertUTF8Line(sFill, pchLine))) {
        ReportIncomplete(sFill);
        return 0;
    }
    return 1;
}

// The next hex byte of the line into *pu8Value: eStepDone, eStepNeedLine when the line
// holds no more (or only a comment), eStepFailed for a bad token.
eLineStep TakeHexByte(const sRecordFill& sFill, char* pchLine, uint8_t* pu8Value)
{
    char achToken[SDR_LINE_BUFFER_SIZE];
    ParseNonQuotedData(pchLine, achToken, sizeof(achToken), 1);
    if (achToken[0] == '\0' || (achToken[0] == '/' && achToken[1] == '/')) {
        return eStepNeedLine;
    }
    if (!SDRParseHexByte(achToken, pu8Value)) {
        SDRReportFormatError("'%s' is not a Hex byte data in record type %02Xh. (line %d) \n", achToken,
                             sFill.psEntry->u8RecordType, sFill.psContext->u16LineNumber);
        return eStepFailed;
    }
    return eStepDone;
}

// The bytes in front of the string start, header bytes checked as they come.
eLineStep TakeFixedBytes(sRecordFill* psFill, char* pchLine)
{
    SDREntry* psEntry = psFill->psEntry;
    while (psEntry->u8DataOffset < psFill->u8StringStart) {
        uint8_t u8Value = 0;
        const eLineStep eStep = TakeHexByte(*psFill, pchLine, &u8Value);
        if (eStep != eStepDone) {
            return eStep;
        }
        if (psEntry->u8DataOffset < SDR_RECORD_HEADER_SIZE &&
            !SDRValidateRecordHeader(0, psFill->psContext->u16LineNumber, psEntry, u8Value)) {
            return eStepFailed;
        }
        if (psEntry->u8DataOffset + 1 == psFill->u8StringStart) {
            psFill->u8LengthCode = u8Value;
        }
        psEntry->au8RecordData[psEntry->u8DataOffset++] = u8Value;
    }
    return eStepDone;
}

// The ID string as hex bytes, up to the record's length.
eLineStep TakeHexString(const sRecordFill& sFill, char* pchLine)
{
    SDREntry* psEntry = sFill.psEntry;
    while (psEntry->u8DataOffset < psEntry->u8RecordLength) {
        uint8_t u8Value = 0;
        const eLineStep eStep = TakeHexByte(sFill, pchLine, &u8Value);
        if (eStep != eStepDone) {
            return eStep;
        }
        psEntry->au8RecordData[psEntry->u8DataOffset++] = u8Value;
    }
    return eStepDone;
}

void ReportTooLong(const sRecordFill& sFill)
{
    SDRReportFormatError("In record type %02Xh, record length > _REC_LEN (line %d) \n", sFill.psEntry->u8RecordType,
                         sFill.psContext->u16LineNumber);
}

// The ID string as one quoted string of 8-bit characters, as many as the code's low six
// bits say. Its characters are stored only when they fit the record's length (at most
// 40h, inside au8RecordData); a longer string is the too-long report it would give.
eLineStep TakeQuotedString(const sRecordFill& sFill, char* pchLine)
{
    TrimSideSpace(pchLine);
    if (pchLine[0] == '\0') {
        return eStepNeedLine;
    }
    const SDREntry* psEntry = sFill.psEntry;
    const uint16_t u16Line = sFill.psContext->u16LineNumber;
    if (pchLine[0] != kchQuote) {
        SDRReportFormatError("\"%s\" is not a quoted string in record type %02Xh. (line %d) \n", pchLine,
                             psEntry->u8RecordType, u16Line);
        return eStepFailed;
    }
    if (strchr(pchLine + 1, kchQuote) == nullptr) {
        SDRReportFormatError("Quoted string \"%s\" in record type %02Xh is not complete. (line %d) \n", pchLine,
                             psEntry->u8RecordType, u16Line);
        return eStepFailed;
    }
    char achText[SDR_LINE_BUFFER_SIZE];
    ParseQuotedData(pchLine, achText, sizeof(achText));
    const size_t uCount = strlen(achText);
    if (uCount != (sFill.u8LengthCode & SDR_ID_STRING_LENGTH_MASK)) {
        SDRReportFormatError(
            "String length (%02Xh) is not consistent with Type/Length Code (%02X) in record type %02Xh. (line %d) \n",
            static_cast<unsigned>(uCount), sFill.u8LengthCode, psEntry->u8RecordType, u16Line);
        return eStepFailed;
    }
    if (psEntry->u8DataOffset + uCount > psEntry->u8RecordLength) {
        ReportTooLong(sFill);
        return eStepFailed;
    }
    memcpy(&sFill.psEntry->au8RecordData[psEntry->u8DataOffset], achText, uCount);
    sFill.psEntry->u8DataOffset = static_cast<uint8_t>(psEntry->u8DataOffset + uCount);
    return eStepDone;
}

// The part of the record from the string start on, in the form its type and code call for.
eLineStep TakeIDString(const sRecordFill& sFill, char* pchLine)
{
    if (!SDRHasIDString(sFill.psEntry->u8RecordType)) {
        return eStepDone;
    }
    if ((sFill.u8LengthCode & SDR_ID_STRING_8BIT) == SDR_ID_STRING_8BIT) {
        return TakeQuotedString(sFill, pchLine);
    }
    return TakeHexString(sFill, pchLine);
}

// The record is complete: nothing may follow on its last line but a comment, and its
// bytes must be as many as _REC_LEN says.
eSDRFileState FinishRecord(const sRecordFill& sFill, char* pchLine)
{
    SDREntry* psEntry = sFill.psEntry;
    char achToken[SDR_LINE_BUFFER_SIZE];
    ParseNonQuotedData(pchLine, achToken, sizeof(achToken), 0);
    if (achToken[0] != '\0' || psEntry->u8DataOffset > psEntry->u8RecordLength) {
        ReportTooLong(sFill);
        return eSdrFailed;
    }
    if (psEntry->u8DataOffset < psEntry->u8RecordLength) {
        SDRReportFormatError("In record type %02Xh, record length < _REC_LEN (line %d) \n", psEntry->u8RecordType,
                             sFill.psContext->u16LineNumber);
        return eSdrFailed;
    }
    psEntry->u16RecordID = static_cast<uint16_t>(psEntry->au8RecordData[0] | (psEntry->au8RecordData[1] << 8));
    return eSdrRecordRead;
}

}  // namespace

eSDRFileState SDRReadRecordData(sTextFileContext* psContext, SDREntry* psEntry)
{
    // The length must have passed its check: the bytes go up to it.
    if (psContext == nullptr || psEntry == nullptr || psEntry->u8RecordLength > SDR_RECORD_DATA_SIZE) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return eSdrFailed;
    }
    sRecordFill sFill = {psContext, psEntry, SDRStringStart(psEntry->u8RecordType, psEntry->u8RecordLength), 0};
    psEntry->u8DataOffset = 0;
    char achLine[SDR_LINE_BUFFER_SIZE];
    for (;;) {
        if (!ReadRecordLine(sFill, achLine)) {
            return eSdrFailed;
        }
        eLineStep eStep = TakeFixedBytes(&sFill, achLine);
        if (eStep == eStepDone) {
            eStep = TakeIDString(sFill, achLine);
        }
        if (eStep == eStepFailed) {
            return eSdrFailed;
        }
        if (eStep == eStepDone) {
            return FinishRecord(sFill, achLine);
        }
    }
}
