// Load, exchange, save.
#include "SimServe.h"

#include <cstring>

int SimServeExchange(const char* pchPath, eSimRoute eRoute, const sSimRequest& sRequest,
                     const sSimLanLogin* psLogin, sSimExchangeResult* psResult, sSimError* psError)
{
    memset(psResult, 0, sizeof(*psResult));
    sBmcSimState sState;
    if (!SimLoadState(pchPath, &sState, psError)) {
        return 0;
    }
    SimExchange(&sState, eRoute, sRequest, psLogin, psResult);
    if (!SimSaveState(pchPath, sState, psError)) {
        memset(psResult, 0, sizeof(*psResult));
        return 0;
    }
    return 1;
}
