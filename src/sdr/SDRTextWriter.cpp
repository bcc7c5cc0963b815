#include "SDRTextWriter.h"

#include <cstdarg>
#include <cstdio>

#include "SDRRecordTypes.h"
#include "SDRTextFormat.h"
#include "SDRValidate.h"
#include "common/DebugOutput.h"
#include "text/TextFileOutput.h"

namespace {

const char kchQuote = '\'';

// The text of one record: two tag lines of at most 15 characters, every byte as a hex
// line of three or the ID string's bytes in a quoted line of three more, two line feeds
// and the terminator.
constexpr size_t SDR_RECORD_TEXT_SIZE = 2 * 15 + 3 * SDR_RECORD_DATA_SIZE + 3 + 2 + 1;

// A quoted line is at most the record's bytes and three characters; the widest encoding,
// UTF-16, doubles it. So the reader, which takes SDR_LINE_MAX_READ bytes to a line,
// always meets a quoted line whole.
static_assert(2 * (SDR_RECORD_DATA_SIZE + 3) <= SDR_LINE_MAX_READ, "a quoted line must fit one read of the reader");

struct sRecordText {
    char achText[SDR_RECORD_TEXT_SIZE];
    size_t uUsed;
};

// Where the record's ID string stands as a quoted line: its string start, or 0 when the
// record shows no quoted line (a type without an ID string, a code that asks for hex,
// or a holder out of shape, which validation refuses).
uint8_t QuotedStringStart(const SDREntry* psEntry)
{
    const uint8_t u8Type = psEntry->u8RecordType;
    if (!SDRHasIDString(u8Type) || u8Type >= SDR_TYPE_TABLE_SIZE) {
        return 0;
    }
    const uint8_t u8Start = SDR_STRING_START_POSITION[u8Type];
    if (u8Start == 0 || u8Start > psEntry->u8RecordLength || psEntry->u8RecordLength > SDR_RECORD_DATA_SIZE) {
        return 0;
    }
    const uint8_t u8Code = psEntry->au8RecordData[u8Start - 1];
    return ((u8Code & SDR_ID_STRING_8BIT) == SDR_ID_STRING_8BIT) ? u8Start : 0;
}

// Appends formatted text; 0, with the text cut back to what it held, if it doesn't fit.
int AppendText(sRecordText* psText, const char* pchFormat, ...) __attribute__((format(printf, 2, 3)));

int AppendText(sRecordText* psText, const char* pchFormat, ...)
{
    const size_t uRoom = sizeof(psText->achText) - psText->uUsed;
    va_list args;
    va_start(args, pchFormat);
    const int iLength = vsnprintf(psText->achText + psText->uUsed, uRoom, pchFormat, args);
    va_end(args);
    if (iLength < 0 || static_cast<size_t>(iLength) >= uRoom) {
        psText->achText[psText->uUsed] = '\0';
        return 0;
    }
    psText->uUsed += static_cast<size_t>(iLength);
    return 1;
}

int AppendHexLines(sRecordText* psText, const uint8_t* pu8Data, size_t uFirst, size_t uEnd)
{
    for (size_t i = uFirst; i < uEnd; i++) {
        if (!AppendText(psText, "%02X\n", pu8Data[i])) {
            return 0;
        }
    }
    return 1;
}

// The quoted line, in the one-byte form: the bytes as they stand between two apostrophes.
int AppendQuotedLine(sRecordText* psText, const uint8_t* pu8Data, size_t uFirst, size_t uEnd)
{
    if (!AppendText(psText, "%c", kchQuote)) {
        return 0;
    }
    for (size_t i = uFirst; i < uEnd; i++) {
        if (!AppendText(psText, "%c", pu8Data[i])) {
            return 0;
        }
    }
    return AppendText(psText, "%c\n", kchQuote);
}

// One validated record: tags, bytes up to the string start, the ID string in its form,
// two blank lines.
int ComposeRecord(const SDREntry* psEntry, sRecordText* psText)
{
    const uint8_t* pu8Data = psEntry->au8RecordData;
    const uint8_t u8Length = psEntry->u8RecordLength;
    const uint8_t u8StringStart = SDRStringStart(psEntry->u8RecordType, u8Length);
    psText->uUsed = 0;
    psText->achText[0] = '\0';
    if (!AppendText(psText, "%s   %02X\n", SDR_TAG_RECORD_TYPE, psEntry->u8RecordType) ||
        !AppendText(psText, "%s   %02X\n", SDR_TAG_RECORD_LENGTH, u8Length) ||
        !AppendHexLines(psText, pu8Data, 0, u8StringStart)) {
        return 0;
    }
    if (SDRHasIDString(psEntry->u8RecordType)) {
        const int iFits = (QuotedStringStart(psEntry) != 0) ? AppendQuotedLine(psText, pu8Data, u8StringStart, u8Length)
                                                              : AppendHexLines(psText, pu8Data, u8StringStart, u8Length);
        if (!iFits) {
            return 0;
        }
    }
    return AppendText(psText, "\n\n");
}

// The first byte of the quoted ID string that no line can carry: a zero byte would end
// the line's text, a line feed would break it in two. -1 when there is none.
int FindUncarriableByte(const SDREntry* psEntry)
{
    const uint8_t u8Start = QuotedStringStart(psEntry);
    for (uint8_t i = u8Start; u8Start != 0 && i < psEntry->u8RecordLength; i++) {
        if (psEntry->au8RecordData[i] == 0x00 || psEntry->au8RecordData[i] == '\n') {
            return psEntry->au8RecordData[i];
        }
    }
    return -1;
}

// Refuses the list, before any file is touched, if an ID string can't be written so that
// it reads back into the same bytes. 1 when every one can.
int CheckIDStringsCarriable(const SDREntry* psList)
{
    uint16_t u16Position = 0;
    for (uint32_t i = 0; i < SDR_RECORD_LIMIT; i++) {
        if (!SDRIsOccupied(psList[i])) {
            continue;
        }
        u16Position++;
        const int iByte = FindUncarriableByte(&psList[i]);
        if (iByte >= 0) {
            fprintf(stderr,
                    "<ERROR> Incorrect SDR data. \nThe ID string of record ID %04Xh holds the byte %02Xh, "
                    "which a quoted string can't carry; the file is left as it was. (record %d) \n",
                    psList[i].u16RecordID, iByte, u16Position);
            return 0;
        }
    }
    return 1;
}

// Names each saved record whose quoted ID string is not as long as its code says: the
// reader refuses such a record.
void WarnInconsistentIDStrings(const SDREntry* psList)
{
    uint16_t u16Position = 0;
    for (uint32_t i = 0; i < SDR_RECORD_LIMIT; i++) {
        const SDREntry* psEntry = &psList[i];
        if (!SDRIsOccupied(*psEntry)) {
            continue;
        }
        u16Position++;
        const uint8_t u8Start = QuotedStringStart(psEntry);
        if (u8Start == 0) {
            continue;
        }
        const uint8_t u8Code = psEntry->au8RecordData[u8Start - 1];
        const unsigned uCount = static_cast<unsigned>(psEntry->u8RecordLength - u8Start);
        if (uCount != (u8Code & SDR_ID_STRING_LENGTH_MASK)) {
            fprintf(stderr,
                    "Warning: The ID string of record ID %04Xh has %02Xh characters, but its Type/Length Code (%02X) "
                    "says %02Xh: reading the file back will refuse this record. (record %d) \n",
                    psEntry->u16RecordID, uCount, u8Code, u8Code & SDR_ID_STRING_LENGTH_MASK, u16Position);
        }
    }
}

// The mark, the section and its records. 0 when a write failed: the disk-full dialogue
// has closed the stream.
int WriteSection(FILE* pFile, const char* pchPath, eFileEncoding eEncoding)
{
    if (WriteToFile(pFile, pchPath, ByteOrderMark(eEncoding)) != WRITE_SUCCESS ||
        !WriteStringToFile(pFile, pchPath, SDR_TAG_SECTION "\n", eEncoding)) {
        return 0;
    }
    sRecordText sText;
    for (uint32_t i = 0; i < SDR_RECORD_LIMIT; i++) {
        const SDREntry* psEntry = &G_psRepositorySDREntryList[i];
        if (!SDRIsOccupied(*psEntry)) {
            continue;
        }
        DebugMessage("Record Seq=%X, ID=%04X, Type=%02X, Length=%02X\nData=", i + 1, psEntry->u16RecordID,
                     psEntry->u8RecordType, psEntry->u8RecordLength);
        DebugPrintArray(psEntry->au8RecordData, psEntry->u8RecordLength);
        if (!ComposeRecord(psEntry, &sText)) {
            fputs("<ERROR> Internal Error!\n", stderr);
            fclose(pFile);
            return 0;
        }
        // A record's lines go out in one write: the same bytes as a write a line.
        if (!WriteStringToFile(pFile, pchPath, sText.achText, eEncoding)) {
            return 0;
        }
    }
    return WriteStringToFile(pFile, pchPath, SDR_TAG_END "\n", eEncoding);
}

}  // namespace

int SaveSDRFile(const char* pchPath, eFileEncoding eEncoding)
{
    if (pchPath == nullptr || G_psRepositorySDREntryList == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    if (!CheckIDStringsCarriable(G_psRepositorySDREntryList)) {
        return 0;
    }
    FILE* pFile = CreateTextFile(pchPath);
    if (pFile == nullptr) {
        fprintf(stderr, "<ERROR> File open error %s.\n", pchPath);
        return 0;
    }
    if (!SDRValidateRawData(G_psRepositorySDREntryList)) {
        fclose(pFile);
        return 0;
    }
    if (!WriteSection(pFile, pchPath, eEncoding)) {
        return 0;
    }
    if (fclose(pFile) != 0) {
        fprintf(stderr, "<ERROR> File close error %s.\n", pchPath);
        return 0;
    }
    fprintf(stdout, "The SDR data has been saved in file %s! \n", pchPath);
    WarnInconsistentIDStrings(G_psRepositorySDREntryList);
    return 1;
}
