// The state file: where it is, its text form, and loading and saving it. Saving writes
// a temporary file beside it, syncs it and renames it over the old one, so a state file
// is always whole: the old one or the new one.
//
// Format (version 1), one item a line, fields separated by one blank, numbers in
// decimal, byte strings in lower-case hex ("-" for none):
//   tavrin-bmcsim-state 1
//   clock <fixed 0|1> <seconds>
//   lan <user hex> <password hex> <cipher mask>
//   route <open refused 0|1> <kcs port> <kcs spacing> <timeout 1> <timeout 2> <timeout 3>
//   repository <capacity> <support> <overflow> <count offset> <addition time> <erase time>
//              <reservation> <last reservation> <next record id> <erase polls> <erase remaining>
//   init-agent <position> <statuses hex>
//   partial <record id> <expected> <received bytes hex>          (only while one is open)
//   sdr <record id> <record hex>                                   (chain order)
//   fru <fru id> <area hex>
//   fault <kind> <netfn|256> <cmd|256> <n> <always 0|1> <value> <seen>
//   log-next <sequence>
//   log <seq> <route> <netfn> <cmd> <fault> <answered 0|1> <cc> <request hex> <response hex>
//   end
#ifndef TAVRIN_BMCSIM_SIMSTATEFILE_H
#define TAVRIN_BMCSIM_SIMSTATEFILE_H

#include <string>

#include "BmcSimState.h"

// The environment variable that names the state file, and the name used without it.
#define BMCSIM_STATE_ENV "TAVRIN_BMCSIM_STATE"
#define BMCSIM_STATE_DEFAULT "bmcsim.state"

struct sSimError {
    char achText[512];
};

// TAVRIN_BMCSIM_STATE, or "bmcsim.state" (in the working directory) when unset or empty.
const char* SimStatePath();

std::string SimStateToText(const sBmcSimState& sState);
// 1 on success; 0 with the reason (and the line number) in psError.
int SimStateFromText(const std::string& sText, sBmcSimState* psState, sSimError* psError);

int SimLoadState(const char* pchPath, sBmcSimState* psState, sSimError* psError);
int SimSaveState(const char* pchPath, const sBmcSimState& sState, sSimError* psError);

// Parses hex without blanks ("-" for none) into bytes; 0 for odd length or a non-digit.
int SimParseHexString(const std::string& sText, std::vector<uint8_t>* pvu8Bytes);

#endif
