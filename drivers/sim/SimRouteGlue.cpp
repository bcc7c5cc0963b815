// The simulated route libraries' common part: every request loads the state file,
// runs the exchange and saves the state before the answer is handed back.
#include "SimRouteGlue.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include "SimServe.h"

namespace {

const uint32_t kHandleMagic = 0x424D4353;  // "BMCS"
const size_t kPathMax = 4096;

struct sSimRouteHandle {
    uint32_t u32Magic;
    eSimRoute eRoute;
    char achStatePath[kPathMax];
};

sSimRouteHandle* CheckHandle(TRouteHandle hHandle)
{
    sSimRouteHandle* psHandle = static_cast<sSimRouteHandle*>(hHandle);
    return (psHandle != nullptr && psHandle->u32Magic == kHandleMagic) ? psHandle : nullptr;
}

// Loads the state, lets the change act on it and saves it; 0 or an errno value.
template <typename TChange>
int ChangeState(const char* pchPath, TChange fnChange)
{
    sBmcSimState sState;
    sSimError sError;
    if (!SimLoadState(pchPath, &sState, &sError)) {
        fprintf(stderr, "bmcsim: %s\n", sError.achText);
        return EIO;
    }
    if (!fnChange(&sState)) {
        return ENODEV;
    }
    if (!SimSaveState(pchPath, sState, &sError)) {
        fprintf(stderr, "bmcsim: %s\n", sError.achText);
        return EIO;
    }
    return 0;
}

}  // namespace

TRouteHandle SimRouteOpen(eSimRoute eRoute, uint32_t u32Port, int32_t i32Spacing)
{
    const char* pchPath = SimStatePath();
    if (strlen(pchPath) >= kPathMax) {
        fprintf(stderr, "bmcsim: state file path too long\n");
        return nullptr;
    }
    int iStatus = ChangeState(pchPath, [&](sBmcSimState* psState) {
        if (psState->sRoute.bOpenRefused) {
            return false;
        }
        if (eRoute == eSimRouteKcs) {
            psState->sRoute.u32KcsPort = u32Port;
            psState->sRoute.i32KcsSpacing = i32Spacing;
        }
        return true;
    });
    if (iStatus != 0) {
        return nullptr;
    }
    sSimRouteHandle* psHandle = new (std::nothrow) sSimRouteHandle;
    if (psHandle == nullptr) {
        return nullptr;
    }
    psHandle->u32Magic = kHandleMagic;
    psHandle->eRoute = eRoute;
    strcpy(psHandle->achStatePath, pchPath);
    return psHandle;
}

void SimRouteClose(TRouteHandle hHandle)
{
    sSimRouteHandle* psHandle = CheckHandle(hHandle);
    if (psHandle != nullptr) {
        psHandle->u32Magic = 0;
        delete psHandle;
    }
}

int SimRouteRequest(TRouteHandle hHandle, eSimRoute eRoute, uint8_t u8NetFnLun, uint8_t u8Command,
                    const uint8_t* pu8Request, uint8_t u8RequestLength, uint8_t* pu8CompletionCode,
                    uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    sSimRouteHandle* psHandle = CheckHandle(hHandle);
    if (psHandle == nullptr) {
        return EBADF;
    }
    if (pu8CompletionCode == nullptr || pu8Response == nullptr || pu16ResponseLength == nullptr ||
        (pu8Request == nullptr && u8RequestLength != 0)) {
        return EINVAL;
    }
    sSimRequest sRequest = {static_cast<uint8_t>(u8NetFnLun >> 2), u8Command, pu8Request, u8RequestLength};
    sSimExchangeResult sResult;
    sSimError sError;
    uint16_t u16Room = *pu16ResponseLength;
    *pu16ResponseLength = 0;
    if (!SimServeExchange(psHandle->achStatePath, eRoute, sRequest, nullptr, &sResult, &sError)) {
        fprintf(stderr, "bmcsim: %s\n", sError.achText);
        return EIO;
    }
    if (!sResult.bAnswered) {
        return sResult.u32Errno != 0 ? static_cast<int>(sResult.u32Errno) : EIO;
    }
    // A response that doesn't fit is cut to the room given, as the driver reports it.
    uint16_t u16Length = sResult.sResponse.u16Length;
    uint16_t u16Copied = (u16Length > u16Room) ? u16Room : u16Length;
    *pu8CompletionCode = sResult.sResponse.u8CompletionCode;
    if (u16Copied > 0) {
        memcpy(pu8Response, sResult.sResponse.au8Data, u16Copied);
    }
    *pu16ResponseLength = u16Copied;
    return (u16Copied < u16Length) ? EMSGSIZE : 0;
}

int SimRouteSetTimeout(TRouteHandle hHandle, eSimTimeout eWhich, uint8_t u8Value)
{
    sSimRouteHandle* psHandle = CheckHandle(hHandle);
    if (psHandle == nullptr) {
        return EBADF;
    }
    return ChangeState(psHandle->achStatePath, [&](sBmcSimState* psState) {
        psState->sRoute.au8KcsTimeouts[eWhich] = u8Value;
        return true;
    });
}
