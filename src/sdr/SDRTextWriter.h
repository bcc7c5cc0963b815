// The SDR text file writer: saves the records that an upload read from the BMC, in the
// text format that the SDR text reader takes, in ASCII, UTF-8 or UTF-16.
//
// The file holds one "_SDR (" section and nothing else: for each record its two tag
// lines, its bytes up to the ID string one hex byte a line, then the ID string (quoted
// where its type/length code says 8-bit text, else hex bytes as well), and two blank
// lines. No comments, no "_DISABLED_SDR (" section.
#ifndef TAVRIN_SDR_SDRTEXTWRITER_H
#define TAVRIN_SDR_SDRTEXTWRITER_H

#include "SDREntry.h"
#include "text/FileEncoding.h"

// Saves the occupied holders of G_psRepositorySDREntryList, in index order, to
// pchPath in eEncoding and prints "The SDR data has been saved in file %s! \n". Returns
// 1, or 0 with the failure reported:
//  - a quoted ID string that no line can carry (a zero byte or a line feed in it): the
//    file is left as it was;
//  - the file can't be created, or a write fails (the disk-full dialogue ran);
//  - a record fails SDRValidateRawData: the file has been created and stays empty.
// A quoted ID string whose length disagrees with its code is saved as it stands, and a
// warning on standard error names the record, which the reader will refuse.
int SaveSDRFile(const char* pchPath, eFileEncoding eEncoding);

#endif
