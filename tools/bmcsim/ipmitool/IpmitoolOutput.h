// What the ipmitool look-alike prints, in the real tool's words.
#ifndef TAVRIN_BMCSIM_IPMITOOLOUTPUT_H
#define TAVRIN_BMCSIM_IPMITOOLOUTPUT_H

#include "IpmitoolArgs.h"
#include "SimExchange.h"

// Prints the outcome of the exchange and returns the exit status.
int PrintIpmitoolOutcome(const sIpmitoolCall& sCall, const sSimExchangeResult& sResult);

// "Error: Unable to establish IPMI v2 / RMCP+ session" and the failed raw command; 1.
int PrintSessionFailure(const sIpmitoolCall& sCall);

// The failed raw command without a completion code, as for a request with no answer; 1.
int PrintNoAnswer(const sIpmitoolCall& sCall);

#endif
