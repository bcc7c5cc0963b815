// Trimming and tokenising of one line of internal one-byte text, in place.
#ifndef TAVRIN_TEXT_LINETOKENS_H
#define TAVRIN_TEXT_LINETOKENS_H

#include <cstddef>

// Cuts the line at the first "//", whatever stands before it (quotes included).
void TrimComment(char* pchLine);

// Removes leading and trailing blank, tab, line feed, vertical tab, form feed and
// carriage return; the text moves down to the start of the buffer.
void TrimSideSpace(char* pchLine);

// Takes the first token of the line, up to the first of " \t\r\n", into pchToken and
// leaves the rest, separator first, in pchLine; with no separator the whole line is
// the token and the line becomes empty. With bKeepComment 0 the comment is dropped
// first. Returns 1, or 0 with "<ERROR> Internal Error!\n" for a null pointer or a
// token that doesn't fit uTokenSize bytes with its terminator (the line is then left
// trimmed, the token empty).
int ParseNonQuotedData(char* pchLine, char* pchToken, size_t uTokenSize, int bKeepComment);

// The first character of the line is taken as the opening quote. If a later apostrophe
// exists, the text up to the last one goes to pchText and pchLine keeps what follows
// it; returns 1. With no closing apostrophe, pchText becomes empty, the line stays and
// the result is 0. A null pointer or a text that doesn't fit uTextSize bytes with its
// terminator prints "<ERROR> Internal Error!\n", leaves the line and gives 0.
int ParseQuotedData(char* pchLine, char* pchText, size_t uTextSize);

#endif
