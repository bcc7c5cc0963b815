// The block read ahead of the lines, shared by the line rule and the line scans.
#ifndef TAVRIN_TEXT_TEXTREADAHEAD_H
#define TAVRIN_TEXT_TEXTREADAHEAD_H

#include <cstddef>

#include "TextFileInput.h"

// Makes at least uWanted bytes (at most TEXT_READ_AHEAD_SIZE) available from
// sAhead.uNext on, unless the file ends first, by moving what is left to the start of
// the block and reading as much as fits behind it. Returns the number available.
size_t TextReadAhead(sTextFileContext* psContext, size_t uWanted);

// Forgets what was read ahead; the next read starts at lFileOffset, or at the stream's
// own position for -1.
void TextDropReadAhead(sTextFileContext* psContext, long lFileOffset);

#endif
