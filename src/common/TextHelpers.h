// Small text helpers shared by the option handlers and the file readers.
#ifndef TAVRIN_COMMON_TEXTHELPERS_H
#define TAVRIN_COMMON_TEXTHELPERS_H

#include <cstddef>

// GetNextToken results.
enum { TOKEN_NONE = 0, TOKEN_FOUND = 1, TOKEN_TOO_LONG = 2 };

// Splits at any of " ,\t\n" with strtok's semantics: a non-null text starts a new
// string (changed in place), null carries on behind the last token. The token is
// copied to pchToken (which may be null) when it fits uTokenSize bytes with its
// terminator; a longer token yields TOKEN_TOO_LONG and an empty pchToken.
int GetNextToken(char* pchText, char* pchToken, size_t uTokenSize);

// 1 if the text is hexadecimal digits; a 0x/0X prefix is removed in place and must
// be followed by at least one character. An empty string passes.
int ValidateHexData(char* pchText);

// Lower-cased copy (A-Z only) in one static buffer of 16 bytes, overwritten by each
// call; at most 15 characters are kept. Null or empty gives an empty string.
char* GetLowerCaseString(const char* pchText);

// 1 for null or an empty string.
int IsStringNullOrEmpty(const char* pchText);

#endif
