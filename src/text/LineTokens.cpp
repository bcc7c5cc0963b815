#include "LineTokens.h"

#include <cstdio>
#include <cstring>

// Lines are short and a file may hold millions of them: every function here makes one
// plain pass over the characters it needs, with no library call per character or per
// small step.
namespace {

// White space of the POSIX locale's isspace, independent of the current locale.
inline bool IsPosixSpace(char chValue)
{
    return chValue == ' ' || (chValue >= '\t' && chValue <= '\r');
}

// The separators of a token: blank, tab, carriage return, line feed.
inline bool IsSeparator(char chValue)
{
    return chValue == ' ' || chValue == '\t' || chValue == '\r' || chValue == '\n';
}

const char kchQuote = '\'';

}  // namespace

void TrimComment(char* pchLine)
{
    if (pchLine == nullptr) {
        return;
    }
    for (char* pch = pchLine; *pch != '\0'; pch++) {
        if (pch[0] == '/' && pch[1] == '/') {
            *pch = '\0';
            return;
        }
    }
}

void TrimSideSpace(char* pchLine)
{
    if (pchLine == nullptr) {
        return;
    }
    size_t uStart = 0;
    while (IsPosixSpace(pchLine[uStart])) {
        uStart++;
    }
    if (pchLine[uStart] == '\0') {
        pchLine[0] = '\0';  // white space alone
        return;
    }
    size_t uEnd = uStart + strlen(pchLine + uStart);
    while (uEnd > uStart && IsPosixSpace(pchLine[uEnd - 1])) {
        uEnd--;
    }
    if (uStart > 0) {
        memmove(pchLine, pchLine + uStart, uEnd - uStart);
    }
    pchLine[uEnd - uStart] = '\0';
}

int ParseNonQuotedData(char* pchLine, char* pchToken, size_t uTokenSize, int bKeepComment)
{
    if (pchLine == nullptr || pchToken == nullptr || uTokenSize == 0) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    pchToken[0] = '\0';
    if (pchLine[0] == '\0') {
        return 1;  // an empty line gives an empty token and stays empty
    }
    if (!bKeepComment) {
        TrimComment(pchLine);
    }
    TrimSideSpace(pchLine);
    size_t uTokenLength = 0;
    for (; pchLine[uTokenLength] != '\0' && !IsSeparator(pchLine[uTokenLength]); uTokenLength++) {
        if (uTokenLength + 1 >= uTokenSize) {
            pchToken[0] = '\0';
            fputs("<ERROR> Internal Error!\n", stderr);
            return 0;
        }
        pchToken[uTokenLength] = pchLine[uTokenLength];
    }
    pchToken[uTokenLength] = '\0';
    // The rest keeps its separator in front; with none, the line becomes empty.
    size_t i = 0;
    do {
        pchLine[i] = pchLine[uTokenLength + i];
    } while (pchLine[i++] != '\0');
    return 1;
}

int ParseQuotedData(char* pchLine, char* pchText, size_t uTextSize)
{
    if (pchLine == nullptr || pchText == nullptr || uTextSize == 0) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    pchText[0] = '\0';
    if (pchLine[0] == '\0') {
        return 0;
    }
    const char* pchClose = strrchr(pchLine + 1, kchQuote);
    if (pchClose == nullptr) {
        return 0;
    }
    const size_t uTextLength = static_cast<size_t>(pchClose - (pchLine + 1));
    if (uTextLength >= uTextSize) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    memcpy(pchText, pchLine + 1, uTextLength);
    pchText[uTextLength] = '\0';
    memmove(pchLine, pchClose + 1, strlen(pchClose + 1) + 1);
    return 1;
}
