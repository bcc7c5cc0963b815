// The bytes of one record of an SDR text file: the fixed part in hex, then the ID
// string, in quotes or in hex as its type/length code says.
#include <cstring>

#include "SDRRecordTypes.h"
#include "SDRTextFile.h"
#include "SDRTextFormat.h"
#include "SDRValidate.h"
#include "text/DatTrans.h"
#include "text/LineTokens.h"
#include "text/TextLineScan.h"

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

// How many of the next bytes are hex bytes: the rest of the part in front of the string
// start, or the rest of an ID string in hex.
size_t HexBytesWanted(const sRecordFill& sFill)
{
    const SDREntry* psEntry = sFill.psEntry;
    if (psEntry->u8DataOffset < sFill.u8StringStart) {
        return sFill.u8StringStart - psEntry->u8DataOffset;
    }
    if (SDRHasIDString(psEntry->u8RecordType) && (sFill.u8LengthCode & SDR_ID_STRING_8BIT) != SDR_ID_STRING_8BIT &&
        psEntry->u8DataOffset < psEntry->u8RecordLength) {
        return psEntry->u8RecordLength - psEntry->u8DataOffset;
    }
    return 0;
}

// Lines that hold one hex byte alone, the way the writer lays a record out, taken in a
// run straight from the file: the same bytes and checks as the steps above give line by
// line. The header bytes among them are checked in turn, each with the number of its
// own line; a failure ends the whole read, so the lines taken behind it are of no
// account. eStepDone if a line was taken (nothing is left of it), eStepNeedLine if the
// next line is of another kind, eStepFailed if a header byte failed its check.
eLineStep TakeHexByteRuns(sRecordFill* psFill)
{
    SDREntry* psEntry = psFill->psEntry;
    const size_t uWanted = HexBytesWanted(*psFill);
    const uint8_t u8From = psEntry->u8DataOffset;
    const uint16_t u16FirstLine = static_cast<uint16_t>(psFill->psContext->u16LineNumber + 1);
    const size_t uTaken =
        (uWanted == 0) ? 0 : TakeHexByteLines(psFill->psContext, &psEntry->au8RecordData[u8From], uWanted, SDR_LINE_MAX_READ);
    if (uTaken == 0) {
        return eStepNeedLine;
    }
    for (size_t i = 0; i < uTaken && u8From + i < SDR_RECORD_HEADER_SIZE; i++) {
        psEntry->u8DataOffset = static_cast<uint8_t>(u8From + i);
        if (!SDRValidateRecordHeader(0, static_cast<uint16_t>(u16FirstLine + i), psEntry,
                                     psEntry->au8RecordData[u8From + i])) {
            return eStepFailed;
        }
    }
    psEntry->u8DataOffset = static_cast<uint8_t>(u8From + uTaken);
    if (u8From < psFill->u8StringStart && psEntry->u8DataOffset == psFill->u8StringStart) {
        psFill->u8LengthCode = psEntry->au8RecordData[psFill->u8StringStart - 1];
    }
    return eStepDone;
}

void ReportTooLong(const sRecordFill& sFill)
{
    SDRReportFormatError("In record type %02Xh, record length > _REC_LEN (line %d) \n", sFill.psEntry->u8RecordType,
                         sFill.psContext->u16LineNumber);
}

// The characters of the ID string into the record, as many as the code's low six bits
// say. They are stored only when they fit the record's length (at most 40h, inside
// au8RecordData); a longer string is the too-long report it would give.
eLineStep StoreQuotedText(const sRecordFill& sFill, const char* pchText, size_t uCount)
{
    SDREntry* psEntry = sFill.psEntry;
    if (uCount != (sFill.u8LengthCode & SDR_ID_STRING_LENGTH_MASK)) {
        SDRReportFormatError(
            "String length (%02Xh) is not consistent with Type/Length Code (%02X) in record type %02Xh. (line %d) \n",
            static_cast<unsigned>(uCount), sFill.u8LengthCode, psEntry->u8RecordType, sFill.psContext->u16LineNumber);
        return eStepFailed;
    }
    if (psEntry->u8DataOffset + uCount > psEntry->u8RecordLength) {
        ReportTooLong(sFill);
        return eStepFailed;
    }
    // Character by character: a short string costs no block copy.
    uint8_t* pu8To = &psEntry->au8RecordData[psEntry->u8DataOffset];
    for (const char* pch = pchText; pch != pchText + uCount; pch++) {
        *pu8To++ = static_cast<uint8_t>(*pch);
    }
    psEntry->u8DataOffset = static_cast<uint8_t>(psEntry->u8DataOffset + uCount);
    return eStepDone;
}

// The string as the writer lays it out: an apostrophe first on the line, and the last
// one at its end. Trimming and parsing such a line give the text between them and leave
// nothing, so it is found at once. 1 with the text, else 0.
int FindPlainQuotedString(const char* pchLine, const char** ppchText, size_t* puCount)
{
    if (pchLine[0] != kchQuote) {
        return 0;
    }
    const char* pchClose = strrchr(pchLine + 1, kchQuote);
    if (pchClose == nullptr || (pchClose[1] != '\0' && (pchClose[1] != '\n' || pchClose[2] != '\0'))) {
        return 0;
    }
    *ppchText = pchLine + 1;
    *puCount = static_cast<size_t>(pchClose - pchLine) - 1;
    return 1;
}

// The ID string as one quoted string of 8-bit characters.
eLineStep TakeQuotedString(const sRecordFill& sFill, char* pchLine)
{
    const char* pchPlain = nullptr;
    size_t uCount = 0;
    if (FindPlainQuotedString(pchLine, &pchPlain, &uCount)) {
        const eLineStep eStep = StoreQuotedText(sFill, pchPlain, uCount);
        pchLine[0] = '\0';  // nothing follows the string
        return eStep;
    }
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
    // Without a closing quote the line is left as it is.
    char achText[SDR_LINE_BUFFER_SIZE];
    if (!ParseQuotedData(pchLine, achText, sizeof(achText))) {
        SDRReportFormatError("Quoted string \"%s\" in record type %02Xh is not complete. (line %d) \n", pchLine,
                             psEntry->u8RecordType, u16Line);
        return eStepFailed;
    }
    return StoreQuotedText(sFill, achText, strlen(achText));
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
        eLineStep eStep = TakeHexByteRuns(&sFill);
        if (eStep == eStepFailed) {
            return eSdrFailed;
        }
        if (eStep == eStepDone) {
            achLine[0] = '\0';
        } else if (!ReadRecordLine(sFill, achLine)) {
            return eSdrFailed;
        }
        eStep = TakeFixedBytes(&sFill, achLine);
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
