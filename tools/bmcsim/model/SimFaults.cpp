// Deciding which exchange a fault hits, and the names of faults and routes.
#include "SimFaults.h"

#include <cstring>

namespace {

const char* const kFaultNames[] = {"none",       "cc",         "nodata",      "partial",     "errno",
                                   "lan-timeout", "lan-lost-reply", "lan-silent", "lan-flood",
                                   "lan-nostart", "signal",     "auth",       "cipher"};
const char* const kRouteNames[] = {"driver", "ipmb", "kcs", "lan", "direct"};

bool Matches(const sSimFault& sFault, eSimRoute eRoute, uint8_t u8NetFn, uint8_t u8Command)
{
    if (SimFaultIsLanOnly(sFault.eKind) && eRoute != eSimRouteLan) {
        return false;
    }
    return (sFault.u16NetFn == BMCSIM_ANY || sFault.u16NetFn == u8NetFn) &&
           (sFault.u16Command == BMCSIM_ANY || sFault.u16Command == u8Command);
}

bool Fires(const sSimFault& sFault)
{
    return sFault.bAlways ? sFault.u32Seen >= sFault.u32Nth : sFault.u32Seen == sFault.u32Nth;
}

int FaultFromNameIn(const char* pchName, size_t uFirst, size_t uLast, eSimFaultKind* peKind)
{
    for (size_t i = uFirst; i <= uLast; i++) {
        if (strcmp(pchName, kFaultNames[i]) == 0) {
            *peKind = static_cast<eSimFaultKind>(i);
            return 1;
        }
    }
    return 0;
}

}  // namespace

const sSimFault* SimPickFault(sBmcSimState* psState, eSimRoute eRoute, uint8_t u8NetFn, uint8_t u8Command)
{
    const sSimFault* psFired = nullptr;
    for (sSimFault& sFault : psState->vsFaults) {
        if (!Matches(sFault, eRoute, u8NetFn, u8Command)) {
            continue;
        }
        if (sFault.u32Seen < 0xFFFFFFFFu) {
            sFault.u32Seen++;
        }
        if (psFired == nullptr && Fires(sFault)) {
            psFired = &sFault;
        }
    }
    return psFired;
}

bool SimFaultIsLanOnly(eSimFaultKind eKind)
{
    return eKind == eSimFaultLanTimeout || eKind == eSimFaultLanLostReply || eKind == eSimFaultLanSilent ||
           eKind == eSimFaultLanFlood || eKind == eSimFaultLanNoStart;
}

bool SimFaultStopsBeforeBmc(eSimFaultKind eKind)
{
    return eKind == eSimFaultErrno || eKind == eSimFaultLanTimeout || eKind == eSimFaultLanSilent ||
           eKind == eSimFaultLanNoStart;
}

const char* SimFaultName(eSimFaultKind eKind)
{
    size_t uIndex = static_cast<size_t>(eKind);
    return uIndex < sizeof(kFaultNames) / sizeof(kFaultNames[0]) ? kFaultNames[uIndex] : "?";
}

int SimFaultFromName(const char* pchName, eSimFaultKind* peKind)
{
    return FaultFromNameIn(pchName, eSimFaultCompletionCode, eSimFaultSignal, peKind);
}

int SimLoggedFaultFromName(const char* pchName, eSimFaultKind* peKind)
{
    return FaultFromNameIn(pchName, eSimFaultNone, eSimFaultCipher, peKind);
}

const char* SimRouteName(eSimRoute eRoute)
{
    size_t uIndex = static_cast<size_t>(eRoute);
    return uIndex < sizeof(kRouteNames) / sizeof(kRouteNames[0]) ? kRouteNames[uIndex] : "?";
}

int SimRouteFromName(const char* pchName, eSimRoute* peRoute)
{
    for (size_t i = 0; i < sizeof(kRouteNames) / sizeof(kRouteNames[0]); i++) {
        if (strcmp(pchName, kRouteNames[i]) == 0) {
            *peRoute = static_cast<eSimRoute>(i);
            return 1;
        }
    }
    return 0;
}
