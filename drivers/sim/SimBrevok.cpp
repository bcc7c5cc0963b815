// libbrevok.so of the simulated BMC: the KCS port I/O route's six exports. The port
// and register spacing are recorded in the state, for tests to look at.
#include "SimRouteGlue.h"

extern "C" {

TRouteHandle InitKCSIO(unsigned int uPortAddress, RegisterSpacing eSpacing)
{
    return SimRouteOpen(eSimRouteKcs, uPortAddress, static_cast<int32_t>(eSpacing));
}

void UinitKCSIO(TRouteHandle hHandle)
{
    SimRouteClose(hHandle);
}

int KCSIORequest(TRouteHandle hHandle, uint8_t u8NetFnLun, uint8_t u8Command, uint8_t* pu8Request,
                 uint8_t u8RequestLength, uint8_t* pu8CompletionCode, uint8_t* pu8Response,
                 uint16_t* pu16ResponseLength)
{
    return SimRouteRequest(hHandle, eSimRouteKcs, u8NetFnLun, u8Command, pu8Request, u8RequestLength,
                           pu8CompletionCode, pu8Response, pu16ResponseLength);
}

int KCSIOSetIOTimeOut(TRouteHandle hHandle, uint8_t u8Value)
{
    return SimRouteSetTimeout(hHandle, eSimTimeoutRegister, u8Value);
}

int KCSIOSetMessageTransferTimeOut(TRouteHandle hHandle, uint8_t u8Value)
{
    return SimRouteSetTimeout(hHandle, eSimTimeoutMessageTransfer, u8Value);
}

int KCSIOSetWaitTimeBeforeReadRsp(TRouteHandle hHandle, uint8_t u8Value)
{
    return SimRouteSetTimeout(hHandle, eSimTimeoutWaitBeforeResponse, u8Value);
}

}
