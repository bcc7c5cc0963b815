// Load, exchange, save; then the signal of a signal fault.
#include "SimServe.h"

#include <signal.h>
#include <unistd.h>

#include <cstring>

namespace {

// The process that asked: tavrin itself runs the route libraries, and is the parent of
// the ipmitool look-alike. Called straight, there is no one to send it to.
void SendFaultSignal(eSimRoute eRoute, uint32_t u32Signal)
{
    if (eRoute == eSimRouteDirect) {
        return;
    }
    kill(eRoute == eSimRouteLan ? getppid() : getpid(), static_cast<int>(u32Signal));
}

}  // namespace

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
    // Only once the exchange is saved: the signal may end the process that asked at once.
    if (psResult->eFault == eSimFaultSignal) {
        SendFaultSignal(eRoute, psResult->u32Errno);
    }
    return 1;
}
