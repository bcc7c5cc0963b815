// The SDR text file reader: the branch of ReadSDRFile for a file that matches no binary
// format. A first pass checks the section structure of the whole file; the second goes
// back behind the "_SDR (" line and reads the records into G_psLocalSDREntryList,
// checking each against the type tables as its bytes arrive.
//
// The format, in lines of at most 254 bytes (longer lines arrive in pieces that count as
// lines of their own); "//" starts a comment, and blank or comment lines may stand
// between records and between bytes:
//   _SDR (                  the records, exactly once
//   _SDR_TYPE   01          a record: its type,
//   _REC_LEN    35          its length with the five header bytes,
//   01 00 51 01 30 ...      its bytes in hex, any number to a line,
//   'CPU1 Temp'             and the ID string in quotes where its code says 8-bit text
//   )
//   _DISABLED_SDR (         at most once, before or after; never read
//   )
// Every fault is reported on standard error as "<ERROR> SDR file format error.\n" and a
// second line with its cause and line number.
#ifndef TAVRIN_SDR_SDRTEXTFILE_H
#define TAVRIN_SDR_SDRTEXTFILE_H

#include <cstdint>
#include <cstdio>

#include "SDREntry.h"
#include "text/TextFileInput.h"

// Reads the stream pFile, opened by the caller with nothing read from it yet (the mark of
// eEncoding is skipped here), into G_psLocalSDREntryList from index *pu16RecordCount on
// and adds the records to the count. Closes pFile on every way out. 1 on success, 0 on failure (reported).
int ReadSDRTextFile(FILE* pFile, const char* pchPath, eFileEncoding eEncoding, uint16_t* pu16RecordCount);

// The first pass over the section structure. 1 with the stream behind the "_SDR (" line
// and u16LineNumber on that line's number, else 0.
int SDRValidateStartEndTag(sTextFileContext* psContext);

// One record into the holder: eSdrRecordRead, eSdrEndOfSection at the closing ")", or
// eSdrFailed.
eSDRFileState SDRReadOneRecord(sTextFileContext* psContext, SDREntry* psEntry);

// The tag line of pchTag ("_SDR_TYPE" or "_REC_LEN") and its hex value: eSdrValueRead,
// eSdrEndOfSection (a ")" where "_SDR_TYPE" is expected), or eSdrFailed.
eSDRFileState SDRReadRecordTypeLength(sTextFileContext* psContext, const char* pchTag, uint8_t* pu8Value);

// The bytes of a record whose u8RecordType and u8RecordLength are set: eSdrRecordRead
// or eSdrFailed. Nothing is ever written past au8RecordData.
eSDRFileState SDRReadRecordData(sTextFileContext* psContext, SDREntry* psEntry);

#endif
