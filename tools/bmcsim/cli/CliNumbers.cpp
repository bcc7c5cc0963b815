// Messages and number arguments of tavrin-bmcsim.
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "CliCommands.h"

int CliFail(const char* pchFormat, ...)
{
    va_list pArgs;
    va_start(pArgs, pchFormat);
    fputs("tavrin-bmcsim: ", stderr);
    vfprintf(stderr, pchFormat, pArgs);
    fputc('\n', stderr);
    va_end(pArgs);
    return 1;
}

int CliSigned(const char* pchText, int32_t i32Min, int32_t i32Max, int32_t* pi32Value, const char* pchWhat)
{
    char* pchEnd = nullptr;
    errno = 0;
    long long llValue = strtoll(pchText, &pchEnd, 0);
    if (errno != 0 || pchEnd == pchText || *pchEnd != '\0' || llValue < i32Min || llValue > i32Max) {
        CliFail("%s must be a number from %d to %d, not \"%s\"", pchWhat, i32Min, i32Max, pchText);
        return 0;
    }
    *pi32Value = static_cast<int32_t>(llValue);
    return 1;
}

int CliUnsigned(const char* pchText, uint32_t u32Max, uint32_t* pu32Value, const char* pchWhat)
{
    char* pchEnd = nullptr;
    errno = 0;
    unsigned long long ullValue = strtoull(pchText, &pchEnd, 0);
    if (errno != 0 || pchEnd == pchText || *pchEnd != '\0' || pchText[0] == '-' || ullValue > u32Max) {
        CliFail("%s must be a number from 0 to %u, not \"%s\"", pchWhat, u32Max, pchText);
        return 0;
    }
    *pu32Value = static_cast<uint32_t>(ullValue);
    return 1;
}

int CliByteOrAny(const char* pchText, uint16_t* pu16Value, const char* pchWhat)
{
    if (strcmp(pchText, "any") == 0) {
        *pu16Value = BMCSIM_ANY;
        return 1;
    }
    uint32_t u32Value = 0;
    if (!CliUnsigned(pchText, 0xFF, &u32Value, pchWhat)) {
        return 0;
    }
    *pu16Value = static_cast<uint16_t>(u32Value);
    return 1;
}

int CliExpect(int iArgc, int iMin, int iMax, const char* pchUsage)
{
    if (iArgc < iMin || iArgc > iMax) {
        CliFail("usage: tavrin-bmcsim %s", pchUsage);
        return 0;
    }
    return 1;
}
