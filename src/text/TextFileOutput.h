// Writing text and hex dumps to a file in any of its encodings.
//
// Every write is flushed at once, so that a full disk shows at the write that meets it;
// a short write runs the disk-full dialogue, which closes the stream. After
// WRITE_DISK_FULL (or a 0 from the higher writers that passed it on) the caller must
// not touch the stream again. pchPath is only for messages and for the deletion.
#ifndef TAVRIN_TEXT_TEXTFILEOUTPUT_H
#define TAVRIN_TEXT_TEXTFILEOUTPUT_H

#include "text/EncodingConversion.h"
#include "text/FileEncoding.h"

#include <cstdint>
#include <cstdio>

// Status of the low-level writers.
enum { WRITE_SUCCESS = 0, WRITE_INTERNAL_ERROR = 1, WRITE_DISK_FULL = 14 };

// The position of a hex dump.
struct sFeedCursor {
    const uint8_t* pu8Data;   // the bytes to be dumped, not owned
    uint16_t u16Offset;       // index of the next byte to be dumped
    eFileEncoding eEncoding;  // the output file's encoding
    uint16_t u16DataSize;     // bytes at pu8Data: a dump never reads beyond them
};

// Creates the file, or empties the one of that name, for binary writing; a new file is
// readable and writable by its owner only (mode 0600). nullptr when it can't be opened.
FILE* CreateTextFile(const char* pchPath);

// The byte-order mark that opens a file of the encoding: EF BB BF, FF FE, or nothing.
const char* ByteOrderMark(eFileEncoding eEncoding);

// Writes uCount bytes as they stand. A null argument prints "<ERROR> Internal Error!\n"
// and gives WRITE_INTERNAL_ERROR.
int WriteBytesToFile(FILE* pStream, const char* pchPath, const void* pBytes, size_t uCount);

// Writes the zero-terminated text as it stands, without the terminator. A null
// argument prints "<ERROR> Internal Error!\n" and gives WRITE_INTERNAL_ERROR.
int WriteToFile(FILE* pStream, const char* pchPath, const char* pchText);

// Writes the one-byte text converted through cd (ISO-8859-1 to UTF-16LE: two bytes a
// character). Texts of any length go in pieces of CONVERT_BUFFER_SIZE / 2 characters,
// and only the bytes the conversion produced reach the file. A null argument or an
// invalid descriptor prints "<ERROR> Internal Error!" and gives WRITE_INTERNAL_ERROR.
int WriteWideCharToFile(FILE* pStream, const char* pchPath, const char* pchText, iconv_t cd);

// Writes the one-byte text in the file's encoding (UTF-8 in pieces, so that no length
// limit applies). Returns 1, or 0 for a null argument ("<ERROR> Internal Error!\n"),
// a failed conversion or a failed write.
int WriteStringToFile(FILE* pStream, const char* pchPath, const char* pchText, eFileEncoding eEncoding);

// Writes u16Count bytes from the cursor as "%02X\n" lines in the cursor's encoding and
// advances u16Offset by u16Count. Returns 1, or 0 for a failed write (the cursor stays)
// or, with "<ERROR> Internal Error!\n", for a null pointer or a count that would read
// past u16DataSize.
int FeedData(FILE* pStream, const char* pchPath, sFeedCursor* psCursor, uint16_t u16Count);

#endif
