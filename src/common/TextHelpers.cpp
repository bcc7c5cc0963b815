#include "TextHelpers.h"

#include <cstring>

namespace {
const char* const kTokenDelimiters = " ,\t\n";
char* s_pchTokenPosition = nullptr;  // strtok's hidden position, shared by all callers
}

int GetNextToken(char* pchText, char* pchToken, size_t uTokenSize)
{
    char* pchStart = (pchText != nullptr) ? pchText : s_pchTokenPosition;
    if (pchToken != nullptr && uTokenSize > 0) {
        pchToken[0] = '\0';
    }
    if (pchStart == nullptr) {
        return TOKEN_NONE;
    }
    pchStart += strspn(pchStart, kTokenDelimiters);
    if (*pchStart == '\0') {
        s_pchTokenPosition = nullptr;
        return TOKEN_NONE;
    }
    size_t uLength = strcspn(pchStart, kTokenDelimiters);
    if (pchStart[uLength] != '\0') {
        pchStart[uLength] = '\0';
        s_pchTokenPosition = pchStart + uLength + 1;
    } else {
        s_pchTokenPosition = nullptr;
    }
    if (pchToken == nullptr) {
        return TOKEN_FOUND;
    }
    if (uLength + 1 > uTokenSize) {
        return TOKEN_TOO_LONG;
    }
    memcpy(pchToken, pchStart, uLength + 1);
    return TOKEN_FOUND;
}

int ValidateHexData(char* pchText)
{
    if (pchText == nullptr) {
        return 0;
    }
    if (pchText[0] == '0' && (pchText[1] == 'x' || pchText[1] == 'X')) {
        if (pchText[2] == '\0') {
            return 0;
        }
        memmove(pchText, pchText + 2, strlen(pchText + 2) + 1);
    }
    for (const char* p = pchText; *p != '\0'; p++) {
        bool bDigit = (*p >= '0' && *p <= '9') || (*p >= 'A' && *p <= 'F') || (*p >= 'a' && *p <= 'f');
        if (!bDigit) {
            return 0;
        }
    }
    return 1;
}

char* GetLowerCaseString(const char* pchText)
{
    static char s_achLower[16];
    memset(s_achLower, 0, sizeof(s_achLower));
    if (pchText == nullptr) {
        return s_achLower;
    }
    for (size_t i = 0; i < sizeof(s_achLower) - 1 && pchText[i] != '\0'; i++) {
        char ch = pchText[i];
        s_achLower[i] = (ch >= 'A' && ch <= 'Z') ? static_cast<char>(ch - 'A' + 'a') : ch;
    }
    return s_achLower;
}

int IsStringNullOrEmpty(const char* pchText)
{
    return (pchText == nullptr || pchText[0] == '\0') ? 1 : 0;
}
