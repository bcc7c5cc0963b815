// One IPMI exchange with the simulated BMC: faults first, then the command, then the
// exchange log. Every front end (route libraries, ipmitool, tests) goes through here.
#ifndef TAVRIN_BMCSIM_SIMEXCHANGE_H
#define TAVRIN_BMCSIM_SIMEXCHANGE_H

#include <cstdint>

#include "BmcSimState.h"

struct sSimRequest {
    uint8_t u8NetFn;
    uint8_t u8Command;
    const uint8_t* pu8Data;  // may be null when u16Length is 0
    uint16_t u16Length;
};

struct sSimResponse {
    uint8_t u8CompletionCode;
    uint16_t u16Length;
    uint8_t au8Data[BMCSIM_RESPONSE_DATA_MAX];
};

// The login that came with a LAN exchange; checked against the state after the
// faults that keep a request from reaching the BMC.
struct sSimLanLogin {
    const char* pchUser;
    const char* pchPassword;
    int iCipherSuite;  // -1 when none was given
};

struct sSimExchangeResult {
    eSimFaultKind eFault;    // eSimFaultNone when the BMC's answer stands as it is
    bool bAnswered;          // sResponse holds the BMC's answer
    uint32_t u32Errno;       // the fault's value: errno value, signal number
    sSimResponse sResponse;
};

// Runs one exchange on the state and logs it. psLogin is null on the local routes.
void SimExchange(sBmcSimState* psState, eSimRoute eRoute, const sSimRequest& sRequest,
                 const sSimLanLogin* psLogin, sSimExchangeResult* psResult);

// The command alone, without faults or log: what the BMC answers.
void SimExecuteCommand(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse);

#endif
