// Reading a local FRU file into G_pu8LocalFRUDataBuffer: a FRU text file, recognised by
// its start tag (FRUTextReader.h), or else a binary file (the raw image), read whole and
// validated.
#ifndef TAVRIN_FRU_FRUFILE_H
#define TAVRIN_FRU_FRUFILE_H

#include <cstdint>
#include <cstdio>

#include "text/TextFileInput.h"

enum {
    FRU_LINE_BUFFER_SIZE = 258,  // the line buffer of the FRU text reader
    FRU_LINE_READ_LIMIT = 257,   // bytes of one read by the line rule
};

// The start tag of a FRU text file.
#define FRU_START_TAG "_FRU ("

// Leaves the file's image in G_pu8LocalFRUDataBuffer and its length in
// G_u16RawDataSizeFromFRUFile. 1 when the file is valid; 0 after the messages (none
// for a null path). The buffer stays allocated for TavrinExit in both cases.
int ReadFRUFile(const char* pchPath);

// Stores the bytes of the stream, from its position to its end, into the image from
// index G_u16RawDataSizeFromFRUFile on, stopping at uBufferSize. Always 1.
int FRUReadRawData(FILE* pFile, size_t uBufferSize);

// Reads lines until one holds the start tag (behind its comment is ignored): 1 then,
// with *pu32OutsideFlag set if that line holds more than the tag. 0 when the file ends
// first; *pu32OutsideFlag is then set if any other text was met. A flag set on entry
// makes the scan look for the tag alone, which is quicker.
int FRUReadBlockStartTag(sTextFileContext* psContext, uint32_t* pu32OutsideFlag);

#endif
