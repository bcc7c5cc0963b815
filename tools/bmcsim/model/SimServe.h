// What every front end does for one exchange: load the state, run the exchange, save
// the state. The answer counts only when the state was saved, so nothing the BMC
// acknowledged can be lost.
#ifndef TAVRIN_BMCSIM_SIMSERVE_H
#define TAVRIN_BMCSIM_SIMSERVE_H

#include "SimExchange.h"
#include "SimStateFile.h"

// 1 with the result filled; 0 with the reason in psError when the state could not be
// loaded or saved (the result is then no answer at all).
int SimServeExchange(const char* pchPath, eSimRoute eRoute, const sSimRequest& sRequest,
                     const sSimLanLogin* psLogin, sSimExchangeResult* psResult, sSimError* psError);

#endif
