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

size_t NarrowUTF16LE(const unsigned char* pu8Input, size_t uInputSize, char* pchOutput, size_t uOutputSize)
{
    if (pu8Input == nullptr || pchOutput == nullptr || uOutputSize == 0) {
        return 0;
    }
    size_t uCount = 0;
    for (size_t i = 0; i < uInputSize && uCount + 1 < uOutputSize; i += 2) {
        const unsigned char u8High = (i + 1 < uInputSize) ? pu8Input[i + 1] : 0;
        if (u8High != 0 || pu8Input[i] == 0) {
            break;
        }
        pchOutput[uCount++] = static_cast<char>(pu8Input[i]);
    }
    pchOutput[uCount] = '\0';
    return uCount;
}
