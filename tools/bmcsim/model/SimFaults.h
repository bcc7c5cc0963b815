// Faults to inject: which exchange they hit, and their names on the command line and
// in the log.
#ifndef TAVRIN_BMCSIM_SIMFAULTS_H
#define TAVRIN_BMCSIM_SIMFAULTS_H

#include <cstdint>

#include "BmcSimState.h"

// Counts the exchange for every fault that matches its route, NetFn and command, and
// returns the first one that fires on it, or null. LAN faults match the LAN route only.
const sSimFault* SimPickFault(sBmcSimState* psState, eSimRoute eRoute, uint8_t u8NetFn, uint8_t u8Command);

// True for the kinds that only the ipmitool front end can show.
bool SimFaultIsLanOnly(eSimFaultKind eKind);

// True for the kinds that keep the request from reaching the BMC at all.
bool SimFaultStopsBeforeBmc(eSimFaultKind eKind);

// "none", "cc", "nodata", "partial", "errno", "lan-timeout", "lan-lost-reply",
// "lan-silent", "lan-flood", "lan-nostart", "signal", "auth", "cipher".
const char* SimFaultName(eSimFaultKind eKind);
// 1 and the kind for a name that can be set as a fault (not "none", "auth", "cipher").
int SimFaultFromName(const char* pchName, eSimFaultKind* peKind);
// 1 and the kind for any name the log can show.
int SimLoggedFaultFromName(const char* pchName, eSimFaultKind* peKind);

// "driver", "ipmb", "kcs", "lan", "direct".
const char* SimRouteName(eSimRoute eRoute);
int SimRouteFromName(const char* pchName, eSimRoute* peRoute);

#endif
