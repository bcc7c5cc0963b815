#include "LineTokens.h"

#include <cstdio>
#include <cstring>

namespace {

// White space of the POSIX locale's isspace, independent of the current locale.
bool IsPosixSpace(char chValue)
{
    return chValue != '\0' && strchr(" \t\n\v\f\r", chValue) != nullptr;
}

const char kchQuote = '\'';

}  // namespace

void TrimComment(char* pchLine)
{
    if (pchLine == nullptr) {
        return;
    }
    char* pchComment = strstr(pchLine, "//");
    if (pchComment != nullptr) {
        *pchComment = '\0';
    }
}

void TrimSideSpace(char* pchLine)
{
    if (pchLine == nullptr) {
        return;
    }
    size_t uLength = strlen(pchLine);
    while (uLength > 0 && IsPosixSpace(pchLine[uLength - 1])) {
        uLength--;
    }
    size_t uStart = 0;
    while (uStart < uLength && IsPosixSpace(pchLine[uStart])) {
        uStart++;
    }
    memmove(pchLine, pchLine + uStart, uLength - uStart);
    pchLine[uLength - uStart] = '\0';
}

int ParseNonQuotedData(char* pchLine, char* pchToken, size_t uTokenSize, int bKeepComment)
{
    if (pchLine == nullptr || pchToken == nullptr || uTokenSize == 0) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    pchToken[0] = '\0';
    if (!bKeepComment) {
        TrimComment(pchLine);
    }
    TrimSideSpace(pchLine);
    const size_t uTokenLength = strcspn(pchLine, " \t\r\n");
    if (uTokenLength >= uTokenSize) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    memcpy(pchToken, pchLine, uTokenLength);
    pchToken[uTokenLength] = '\0';
    // The rest keeps its separator in front; with none, the line becomes empty.
    memmove(pchLine, pchLine + uTokenLength, strlen(pchLine + uTokenLength) + 1);
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
