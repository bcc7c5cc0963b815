// The sub-commands of tavrin-bmcsim and the helpers they share. A sub-command gets the
// loaded state and its own arguments, and returns 0 for success or 1 after printing why
// it failed; the caller saves the state when a changing sub-command succeeded.
#ifndef TAVRIN_BMCSIM_CLICOMMANDS_H
#define TAVRIN_BMCSIM_CLICOMMANDS_H

#include <cstdint>

#include "BmcSimState.h"

typedef int (*TCliHandler)(sBmcSimState* psState, int iArgc, char** ppchArgv);

// "tavrin-bmcsim: " and the text, on standard error; returns 1.
int CliFail(const char* pchFormat, ...) __attribute__((format(printf, 1, 2)));

// 1 when the number of arguments is within the limits; 0 after "usage: ..." otherwise.
int CliExpect(int iArgc, int iMin, int iMax, const char* pchUsage);

// Numbers in decimal or 0x hex, whole argument, within the limits; 0 after CliFail.
int CliUnsigned(const char* pchText, uint32_t u32Max, uint32_t* pu32Value, const char* pchWhat);
int CliSigned(const char* pchText, int32_t i32Min, int32_t i32Max, int32_t* pi32Value, const char* pchWhat);
// A NetFn or command byte, or "any".
int CliByteOrAny(const char* pchText, uint16_t* pu16Value, const char* pchWhat);

// Setup: init, user, set, show (CliSetupCommands.cpp, CliParameters.cpp).
int CliInit(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliUser(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliSet(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliShow(sBmcSimState* psState, int iArgc, char** ppchArgv);

// SDR records (CliSdrCommands.cpp).
int CliSdrLoad(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliSdrAdd(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliSdrList(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliSdrClear(sBmcSimState* psState, int iArgc, char** ppchArgv);

// FRU devices (CliFruCommands.cpp).
int CliFruLoad(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliFruCreate(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliFruDump(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliFruSave(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliFruRemove(sBmcSimState* psState, int iArgc, char** ppchArgv);

// Faults and the exchange log (CliFaultCommands.cpp).
int CliFault(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliFaultList(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliFaultClear(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliLog(sBmcSimState* psState, int iArgc, char** ppchArgv);
int CliLogClear(sBmcSimState* psState, int iArgc, char** ppchArgv);

// Rehearsal (CliRun.cpp): runs the command against this simulator and returns its exit
// status, or one of these when no rehearsal took place.
enum {
    RUN_USAGE = 2,            // no command given
    RUN_NOT_REHEARSED = 125,  // the simulator is incomplete, or the command didn't reach it
};
int CliRun(const char* pchStatePath, int iArgc, char** ppchArgv);

#endif
