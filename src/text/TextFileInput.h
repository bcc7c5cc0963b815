// Reading a text file line by line in any of its encodings (the line rule).
//
// A read takes bytes up to and including the first line feed, up to uMaxBytes, or up
// to the end of the file, whichever comes first, into the zeroed line buffer, and
// counts one line. A line longer than the limit arrives in pieces that count as lines
// of their own.
// - ASCII and UTF-8 files: the bytes are the line (a UTF-8 line is not converted here).
// - UTF-16 files: the read goes by whole little-endian characters. A line ends with the
//   character 0A 00, whose 0A alone is kept; a piece ended by the limit ends behind a
//   whole character (an odd limit is rounded up to one), so that the next read starts
//   on a character boundary and no character is ever split. Each character below
//   U+0100 becomes its one byte (ISO-8859-1); the first character above U+00FF cuts the
//   line's text there, and the rest of the line is read but dropped. A lone last byte
//   of the file stands for the character with a high byte of 0.
// The byte-order mark must have been skipped by the owner of the stream before the
// first read (3 bytes for UTF-8, 2 for UTF-16).
#ifndef TAVRIN_TEXT_TEXTFILEINPUT_H
#define TAVRIN_TEXT_TEXTFILEINPUT_H

#include "text/FileEncoding.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

// The state of one text file being read. The owner opens the stream for binary
// reading, skips the mark, and closes it; reading only moves the position and counts.
struct sTextFileContext {
    char achFileName[256];   // the path, zero-terminated, for messages
    FILE* pFile;
    uint16_t u16LineNumber;  // lines read so far: every line, blank or comment
    eFileEncoding eEncoding;
};

// Fills the context for a stream its owner has opened: the path (which must fit
// achFileName with its terminator), the encoding, line count 0. Returns 1, or 0 with
// "<ERROR> Internal Error!\n" for a null pointer or a path too long to hold.
int InitTextFileContext(sTextFileContext* psContext, const char* pchPath, FILE* pFile,
                        eFileEncoding eEncoding);

// The largest limit a reader may ask for (a FRU text line).
constexpr size_t TEXT_MAX_LINE_READ = 257;

// Reads the next line by the rule above into pchLine, zero-terminated, and adds 1 to
// u16LineNumber. The line's bytes are taken one by one from the stream's own buffer
// (the process has one thread): a file of millions of short lines reads at the speed of
// memory, with no conversion call per line. uMaxBytes must be below uLineSize and
// at most TEXT_MAX_LINE_READ (the SDR reader: 256-byte buffer, 254; the FRU reader:
// 258-byte buffer, 257). Returns 1 for a line, 0 at the end of the file with nothing
// read (a read error counts as the end), or 0 with "<ERROR> Internal Error!\n" for a
// null pointer or sizes outside these bounds.
int ReadTextLine(sTextFileContext* psContext, char* pchLine, size_t uLineSize,
                 size_t uMaxBytes);

#endif
