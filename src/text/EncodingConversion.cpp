#include "EncodingConversion.h"

#include <cstdio>

size_t ConvertEncodingType(iconv_t cd, const char* pInput, size_t uInputSize, char* pOutput,
                           size_t uOutputSize)
{
    if (pInput == nullptr || pOutput == nullptr || cd == INVALID_CONVERTER) {
        fputs("<ERROR> Internal Error!", stderr);
        return 0;
    }
    // Start from the initial state, whatever an earlier, broken-off conversion left.
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    char* pchIn = const_cast<char*>(pInput);  // iconv's interface is not const-correct
    char* pchOut = pOutput;
    size_t uInLeft = uInputSize;
    size_t uOutLeft = uOutputSize;
    iconv(cd, &pchIn, &uInLeft, &pchOut, &uOutLeft);
    return uOutputSize - uOutLeft;
}
