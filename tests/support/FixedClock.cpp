// Linked into tavrin-fixedclock, a test build of tavrin whose clock stands at
// 2024-02-29 12:34:56 UTC, in the time zone UTC, so that the manufacturing date/time
// that -updateFRU writes is known to the byte.
#include <cstdlib>

#include "cli/FRUDateTime.h"

namespace {

const time_t kLeapDayNoon = 1709210096;

time_t FixedClock(time_t* ptNow)
{
    if (ptNow != nullptr) *ptNow = kLeapDayNoon;
    return kLeapDayNoon;
}

const bool s_bInstalled = (setenv("TZ", "UTC0", 1), G_pfnSystemClock = FixedClock, true);

}  // namespace
