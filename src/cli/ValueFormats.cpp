// Formats of the LAN option values: IPv4 addresses and cipher suite IDs.
#include <cctype>
#include <climits>
#include <cstring>

#include "InterfaceOptions.h"

namespace {

const int32_t kCipherLowLast = 19;
const int32_t kCipherHighFirst = 0x80;
const int32_t kCipherHighLast = 0xBF;

bool IsHexDigit(char ch)
{
    return isxdigit(static_cast<unsigned char>(ch)) != 0;
}

}  // namespace

int GetCharCount(const char* pchText, char chWanted)
{
    int iCount = 0;
    for (const char* p = pchText; p != nullptr && *p != '\0'; p++) {
        iCount += (*p == chWanted) ? 1 : 0;
    }
    return iCount;
}

int IsValidIPv4Format(const char* pchText)
{
    if (pchText == nullptr) {
        return 0;
    }
    int iDots = 0;
    bool bGroupSet = false;
    for (const char* p = pchText; *p != '\0'; p++) {
        if (*p == '.') {
            if (!bGroupSet || p[1] == '\0') {
                return 0;
            }
            iDots++;
            bGroupSet = false;
        } else if (*p >= '0' && *p <= '9') {
            // The group's value is judged at each of its digits, from there to its end.
            long lValue = 0;
            for (const char* q = p; *q >= '0' && *q <= '9'; q++) {
                lValue = lValue * 10 + (*q - '0');
                if (lValue > 255) {
                    return 0;
                }
            }
            bGroupSet = true;
        } else {
            return 0;
        }
    }
    return iDots == 3 ? 1 : 0;
}

int IsValidHostIPFormat(const char* pchText)
{
    if (pchText == nullptr || GetCharCount(pchText, ':') > 0) {
        return 0;
    }
    return IsValidIPv4Format(pchText);
}

int StringToInteger(const char* pchText, int32_t* pi32Value)
{
    if (pchText == nullptr || pi32Value == nullptr) {
        return 0;
    }
    int iBase = 10;
    const char* pchDigits = pchText;
    if (pchText[0] == '0' && (pchText[1] == 'x' || pchText[1] == 'X')) {
        iBase = 16;
        pchDigits = pchText + 2;
    }
    if (*pchDigits == '\0') {
        return 0;
    }
    int64_t i64Value = 0;
    for (const char* p = pchDigits; *p != '\0'; p++) {
        bool bDigit = (iBase == 16) ? IsHexDigit(*p) : (*p >= '0' && *p <= '9');
        if (!bDigit) {
            return 0;
        }
        int iDigit = (*p <= '9') ? *p - '0' : (*p | 0x20) - 'a' + 10;
        i64Value = i64Value * iBase + iDigit;
        if (i64Value > INT32_MAX) {
            return 0;  // no 32-bit number: refused rather than wrapped
        }
    }
    *pi32Value = static_cast<int32_t>(i64Value);
    return 1;
}

int IsValidCipherSuite(const char* pchText)
{
    int32_t i32Value = 0;
    if (!StringToInteger(pchText, &i32Value)) {
        return 0;
    }
    return ((i32Value >= 0 && i32Value <= kCipherLowLast) ||
            (i32Value >= kCipherHighFirst && i32Value <= kCipherHighLast))
               ? 1
               : 0;
}
