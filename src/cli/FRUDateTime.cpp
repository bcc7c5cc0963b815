#include "FRUDateTime.h"

#include <cstdio>

time_t (*G_pfnSystemClock)(time_t* ptNow) = time;

namespace {

const int FRU_EPOCH_YEAR = 96;  // years since 1900

// 1 January 1996, 00:00:00 in the local time zone, with daylight saving as the zone had
// it then; -1 if it can't be reckoned.
time_t FRUEpochInLocalTime()
{
    struct tm sStart = {};
    sStart.tm_year = FRU_EPOCH_YEAR;
    sStart.tm_mon = 0;
    sStart.tm_mday = 1;
    sStart.tm_isdst = -1;
    return mktime(&sStart);
}

}  // namespace

int ConvertCurrentDateTimeToHex(uint8_t* pu8DateTime)
{
    if (pu8DateTime == nullptr) {
        fputs("<ERROR> Internal Error! \n", stderr);
        return 0;
    }
    const time_t tStart = FRUEpochInLocalTime();
    const time_t tNow = G_pfnSystemClock(nullptr);
    if (tStart == static_cast<time_t>(-1) || tNow < 0) {
        return 0;
    }
    // A clock before 1996 is wrong, and would give a date late in 2027.
    const long long llMinutes = static_cast<long long>(tNow / 60) - static_cast<long long>(tStart / 60);
    if (llMinutes < 0) {
        return 0;
    }
    pu8DateTime[0] = static_cast<uint8_t>(llMinutes);
    pu8DateTime[1] = static_cast<uint8_t>(llMinutes >> 8);
    pu8DateTime[2] = static_cast<uint8_t>(llMinutes >> 16);
    return 1;
}
