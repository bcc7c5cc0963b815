// fault, fault-list, fault-clear, log and log-clear.
#include <cstdio>
#include <cstring>

#include "CliCommands.h"
#include "SimFaults.h"
#include "SimLog.h"

namespace {

const char kFaultUsage[] = "fault <netfn|any> <cmd|any> <n> <kind> [<value>] [once|always]";

bool TakesValue(eSimFaultKind eKind)
{
    return eKind == eSimFaultCompletionCode || eKind == eSimFaultErrno || eKind == eSimFaultSignal ||
           eKind == eSimFaultPartial;
}

// The optional value and mode behind the kind.
int ReadFaultTail(int iArgc, char** ppchArgv, sSimFault* psFault)
{
    int iNext = 0;
    if (TakesValue(psFault->eKind)) {
        uint32_t u32Limit = 0x7FFFFFFF;  // an errno value
        if (psFault->eKind == eSimFaultCompletionCode || psFault->eKind == eSimFaultPartial) {
            u32Limit = 0xFF;
        } else if (psFault->eKind == eSimFaultSignal) {
            u32Limit = 64;
        }
        if (iNext >= iArgc || !CliUnsigned(ppchArgv[iNext], u32Limit, &psFault->u32Value, "the fault's value")) {
            return (iNext >= iArgc) ? CliFail("a %s fault needs a value", SimFaultName(psFault->eKind)) : 1;
        }
        iNext++;
        if (psFault->u32Value == 0 && psFault->eKind != eSimFaultPartial) {
            return CliFail("a %s fault needs a value other than 0", SimFaultName(psFault->eKind));
        }
    }
    if (iNext < iArgc) {
        if (strcmp(ppchArgv[iNext], "always") != 0 && strcmp(ppchArgv[iNext], "once") != 0) {
            return CliFail("usage: tavrin-bmcsim %s", kFaultUsage);
        }
        psFault->bAlways = strcmp(ppchArgv[iNext], "always") == 0;
        iNext++;
    }
    return (iNext == iArgc) ? 0 : CliFail("usage: tavrin-bmcsim %s", kFaultUsage);
}

void PrintByteOrAny(const char* pchName, uint16_t u16Value)
{
    if (u16Value == BMCSIM_ANY) {
        printf(" %s=any", pchName);
    } else {
        printf(" %s=%02x", pchName, u16Value);
    }
}

}  // namespace

int CliFault(sBmcSimState* psState, int iArgc, char** ppchArgv)
{
    if (!CliExpect(iArgc, 4, 6, kFaultUsage)) {
        return 1;
    }
    sSimFault sFault = {};
    if (!CliByteOrAny(ppchArgv[0], &sFault.u16NetFn, "netfn") ||
        !CliByteOrAny(ppchArgv[1], &sFault.u16Command, "cmd") ||
        !CliUnsigned(ppchArgv[2], 0xFFFFFFFFu, &sFault.u32Nth, "n")) {
        return 1;
    }
    if (sFault.u32Nth == 0) {
        return CliFail("n counts from 1");
    }
    if (!SimFaultFromName(ppchArgv[3], &sFault.eKind)) {
        return CliFail("unknown fault kind \"%s\"; \"tavrin-bmcsim help\" lists them", ppchArgv[3]);
    }
    if (ReadFaultTail(iArgc - 4, ppchArgv + 4, &sFault) != 0) {
        return 1;
    }
    psState->vsFaults.push_back(sFault);
    return 0;
}

int CliFaultList(sBmcSimState* psState, int iArgc, char** /*ppchArgv*/)
{
    if (!CliExpect(iArgc, 0, 0, "fault-list")) {
        return 1;
    }
    for (const sSimFault& sFault : psState->vsFaults) {
        printf("kind=%s", SimFaultName(sFault.eKind));
        PrintByteOrAny("netfn", sFault.u16NetFn);
        PrintByteOrAny("cmd", sFault.u16Command);
        printf(" n=%u mode=%s", sFault.u32Nth, sFault.bAlways ? "always" : "once");
        if (TakesValue(sFault.eKind)) {
            printf(" value=0x%x", sFault.u32Value);
        }
        printf(" seen=%u\n", sFault.u32Seen);
    }
    return 0;
}

int CliFaultClear(sBmcSimState* psState, int iArgc, char** /*ppchArgv*/)
{
    if (!CliExpect(iArgc, 0, 0, "fault-clear")) {
        return 1;
    }
    psState->vsFaults.clear();
    return 0;
}

int CliLog(sBmcSimState* psState, int iArgc, char** /*ppchArgv*/)
{
    if (!CliExpect(iArgc, 0, 0, "log")) {
        return 1;
    }
    for (const sSimLogEntry& sEntry : psState->vsLog) {
        printf("%s\n", SimFormatLogLine(sEntry).c_str());
    }
    return 0;
}

int CliLogClear(sBmcSimState* psState, int iArgc, char** /*ppchArgv*/)
{
    if (!CliExpect(iArgc, 0, 0, "log-clear")) {
        return 1;
    }
    psState->vsLog.clear();
    psState->u32NextLogSequence = 1;
    return 0;
}
