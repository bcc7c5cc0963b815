// Reading a text file line by line in any of its encodings (the line rule).
//
// A read takes bytes up to and including the first line feed, up to uMaxBytes, or up
// to the end of the file, whichever comes first, into the line buffer, zero-terminated,
// and counts one line. A line longer than the limit arrives in pieces that count as
// lines of their own.
// - ASCII and UTF-8 files: the bytes are the line (a UTF-8 line is not converted here).
// - UTF-16 files: the read goes by whole little-endian characters. A line ends with the
//   character 0A 00, whose 0A alone is kept; a piece ended by the limit ends behind a
//   whole character (an odd limit is rounded up to one), so that the next read starts
//   on a character boundary and no character is ever split. Each character below
//   U+0100 becomes its one byte (ISO-8859-1); the first character above U+00FF cuts the
//   line's text there, and the rest of the line is read but dropped. A lone last byte
//   of the file stands for the character with a high byte of 0.
// The owner skips the byte-order mark before the first read (3 bytes for UTF-8, 2 for
// UTF-16). The file is read ahead in large blocks into the context and lines are taken
// from there: once reading has begun, the stream is moved only through TextFileSeek.
#ifndef TAVRIN_TEXT_TEXTFILEINPUT_H
#define TAVRIN_TEXT_TEXTFILEINPUT_H

#include "text/FileEncoding.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

// The largest limit a reader may ask for (a FRU text line).
constexpr size_t TEXT_MAX_LINE_READ = 257;

// The block in which the file is read ahead: far more than the longest piece of a line.
constexpr size_t TEXT_READ_AHEAD_SIZE = 64 * 1024;

// The bytes read from the file but not yet taken as lines.
struct sTextReadAhead {
    long lFileOffset;  // the file offset of achData[0]; -1 before the first read
    size_t uNext;      // the index of the next byte to take
    size_t uEnd;       // the number of bytes held
    bool bEndOfFile;   // the file has nothing more (a read error counts as its end)
    char achData[TEXT_READ_AHEAD_SIZE];
};

// The state of one text file being read. The owner opens the stream for binary
// reading and closes it; reading only moves the position and counts. The owner may
// position the stream itself (fseek) before the first read; the read ahead starts at
// the stream's position then.
struct sTextFileContext {
    char achFileName[256];   // the path, zero-terminated, for messages
    FILE* pFile;
    uint16_t u16LineNumber;  // lines read so far: every line, blank or comment
    eFileEncoding eEncoding;
    sTextReadAhead sAhead;
};

// Fills the context for a stream its owner has opened: the path (which must fit
// achFileName with its terminator), the encoding, line count 0, nothing read ahead.
// Returns 1, or 0 with "<ERROR> Internal Error!\n" for a null pointer or a path too
// long to hold.
int InitTextFileContext(sTextFileContext* psContext, const char* pchPath, FILE* pFile,
                        eFileEncoding eEncoding);

// The file offset of the next byte a read takes, or -1 if the stream can't tell it.
long TextFileTell(sTextFileContext* psContext);

// Moves the reading to the file offset lOffset and drops what was read ahead. Returns
// 1, or 0 if the stream can't be positioned there. The line count is left alone.
int TextFileSeek(sTextFileContext* psContext, long lOffset);

// Reads the next line by the rule above into pchLine, zero-terminated, and adds 1 to
// u16LineNumber. Nothing behind the terminator is written. uMaxBytes must be below
// uLineSize and at most TEXT_MAX_LINE_READ (the SDR reader: 256-byte buffer, 254; the
// FRU reader: 258-byte buffer, 257). Returns 1 for a line, 0 at the end of the file with
// nothing read (a read error counts as the end), or 0 with "<ERROR> Internal Error!\n"
// for a null pointer or sizes outside these bounds.
int ReadTextLine(sTextFileContext* psContext, char* pchLine, size_t uLineSize,
                 size_t uMaxBytes);

#endif
