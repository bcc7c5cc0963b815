// The exchange log kept in the state, and its one-line text form:
//   seq=12 route=lan netfn=0a cmd=25 reqlen=22 req=0100000000... cc=00 rsplen=2 rsp=0100 fault=none
// Hex in lower case without blanks, "-" for no bytes, cc=-- when no answer came back.
#ifndef TAVRIN_BMCSIM_SIMLOG_H
#define TAVRIN_BMCSIM_SIMLOG_H

#include <string>

#include "SimExchange.h"

void SimLogExchange(sBmcSimState* psState, eSimRoute eRoute, const sSimRequest& sRequest,
                    const sSimExchangeResult& sResult);

std::string SimFormatLogLine(const sSimLogEntry& sEntry);

// Bytes as lower-case hex without blanks; "-" for none.
std::string SimHexString(const uint8_t* pu8Data, size_t uLength);

#endif
