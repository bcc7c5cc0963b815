// One exchange: the fault that fires (if any), the LAN login, the command, the log.
#include "SimExchange.h"

#include <cstring>

#include "SimCommands.h"
#include "SimFaults.h"
#include "SimLog.h"

namespace {

// The login of a LAN exchange: the cipher suite first, as the session set-up does.
eSimFaultKind CheckLogin(const sBmcSimState* psState, const sSimLanLogin* psLogin)
{
    if (psLogin == nullptr) {
        return eSimFaultNone;
    }
    int iCipher = psLogin->iCipherSuite;
    if (iCipher >= 0 && (iCipher > 31 || (psState->sLan.u32CipherMask & (1u << iCipher)) == 0)) {
        return eSimFaultCipher;
    }
    const char* pchUser = psLogin->pchUser != nullptr ? psLogin->pchUser : "";
    const char* pchPassword = psLogin->pchPassword != nullptr ? psLogin->pchPassword : "";
    if (strcmp(pchUser, psState->sLan.achUser) != 0 || strcmp(pchPassword, psState->sLan.achPassword) != 0) {
        return eSimFaultAuth;
    }
    return eSimFaultNone;
}

// What the BMC does when the request reaches it under the fault that fired.
void AnswerAtBmc(sBmcSimState* psState, const sSimRequest& sRequest, const sSimFault* psFault,
                 sSimExchangeResult* psResult)
{
    psResult->bAnswered = true;
    if (psFault != nullptr && psFault->eKind == eSimFaultCompletionCode) {
        SimRefuse(&psResult->sResponse, static_cast<uint8_t>(psFault->u32Value));
        return;
    }
    if (psFault != nullptr && psFault->eKind == eSimFaultPartial) {
        SimExecutePartial(psState, sRequest, psFault->u32Value, &psResult->sResponse);
        return;
    }
    SimExecuteCommand(psState, sRequest, &psResult->sResponse);
    if (psFault != nullptr && psFault->eKind == eSimFaultNoData) {
        SimRefuse(&psResult->sResponse, 0);
    }
}

}  // namespace

void SimExchange(sBmcSimState* psState, eSimRoute eRoute, const sSimRequest& sRequest,
                 const sSimLanLogin* psLogin, sSimExchangeResult* psResult)
{
    memset(psResult, 0, sizeof(*psResult));
    const sSimFault* psFault = SimPickFault(psState, eRoute, sRequest.u8NetFn, sRequest.u8Command);
    if (psFault != nullptr) {
        psResult->eFault = psFault->eKind;
        psResult->u32Errno = psFault->u32Value;
    }
    if (!SimFaultStopsBeforeBmc(psResult->eFault)) {
        eSimFaultKind eLogin = CheckLogin(psState, psLogin);
        if (eLogin != eSimFaultNone) {
            psResult->eFault = eLogin;
        } else {
            AnswerAtBmc(psState, sRequest, psFault, psResult);
        }
    }
    SimLogExchange(psState, eRoute, sRequest, *psResult);
}
