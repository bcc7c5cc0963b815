// Fast ways through runs of lines in which a reader would find nothing of interest.
// Each takes exactly the lines that ReadTextLine would take one by one, counts them in
// u16LineNumber the same way, and stops in front of the first line that needs the
// reader's own look, which ReadTextLine then takes as usual.
#ifndef TAVRIN_TEXT_TEXTLINESCAN_H
#define TAVRIN_TEXT_TEXTLINESCAN_H

#include <cstddef>
#include <cstdint>

#include "TextFileInput.h"

// Takes the lines that the line rule with the limit uMaxBytes reads whole, each ending
// in its line feed, and that hold none of the characters of pchStops (ASCII characters;
// in a UTF-16 file the characters of the same codes). Stops in front of the first other
// line: one with a stop character, one longer than the limit, or a last line without a
// line feed. Takes nothing for a limit below 128 bytes, or unless there are one or two
// stop characters.
// Returns the number of lines taken.
size_t SkipTextLinesWithout(sTextFileContext* psContext, const char* pchStops, size_t uMaxBytes);

// Takes the lines that hold nothing but white space (blank, tab, vertical tab, form feed,
// carriage return) in front of their line feed, within the limit uMaxBytes. Stops in
// front of the first other line. Returns the number of lines taken.
size_t SkipSpaceLines(sTextFileContext* psContext, size_t uMaxBytes);

// Takes up to uMaxCount lines that hold exactly two hex digits (either case) and their
// line feed, and stores the value of each at pu8Values, in turn. Stops in front of the
// first other line. Takes nothing for a limit below 6 bytes. Returns the number taken.
size_t TakeHexByteLines(sTextFileContext* psContext, uint8_t* pu8Values, size_t uMaxCount, size_t uMaxBytes);

#endif
