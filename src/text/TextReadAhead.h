// The block read ahead of the lines, shared by the line rule and the line scans.
#ifndef TAVRIN_TEXT_TEXTREADAHEAD_H
#define TAVRIN_TEXT_TEXTREADAHEAD_H

#include <cstddef>

#include "TextFileInput.h"

// Moves what is left to the start of the block and reads as much as fits behind it,
// until at least uWanted bytes (at most TEXT_READ_AHEAD_SIZE) are held from sAhead.uNext
// on or the file ends. Returns the number held.
size_t TextFillAhead(sTextFileContext* psContext, size_t uWanted);

// The number of bytes held from sAhead.uNext on, at least uWanted unless the file ends
// first (lines are taken by the million: the common case is a test, not a call).
inline size_t TextReadAhead(sTextFileContext* psContext, size_t uWanted)
{
    const size_t uHeld = psContext->sAhead.uEnd - psContext->sAhead.uNext;
    return (uHeld >= uWanted) ? uHeld : TextFillAhead(psContext, uWanted);
}

// Forgets what was read ahead; the next read starts at lFileOffset, or at the stream's
// own position for -1.
void TextDropReadAhead(sTextFileContext* psContext, long lFileOffset);

#endif
