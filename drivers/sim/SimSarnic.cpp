// libsarnic.so of the simulated BMC: the OS driver route's four exports.
#include "SimRouteGlue.h"

extern "C" {

TRouteHandle RawOpen(void)
{
    return SimRouteOpen(eSimRouteDriver, 0, -1);
}

void RawClose(TRouteHandle hHandle)
{
    SimRouteClose(hHandle);
}

int RawRequest(TRouteHandle hHandle, uint8_t u8NetFnLun, uint8_t u8Command, uint8_t* pu8Request,
               uint8_t u8RequestLength, uint8_t* pu8CompletionCode, uint8_t* pu8Response,
               uint16_t* pu16ResponseLength)
{
    return SimRouteRequest(hHandle, eSimRouteDriver, u8NetFnLun, u8Command, pu8Request, u8RequestLength,
                           pu8CompletionCode, pu8Response, pu16ResponseLength);
}

// The simulated BMC answers for every target address itself.
int RawIPMBRequest(TRouteHandle hHandle, uint8_t /*u8TargetAddress*/, uint8_t u8NetFnLun, uint8_t u8Command,
                   uint8_t* pu8Request, uint8_t u8RequestLength, uint8_t* pu8CompletionCode,
                   uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    return SimRouteRequest(hHandle, eSimRouteIpmb, u8NetFnLun, u8Command, pu8Request, u8RequestLength,
                           pu8CompletionCode, pu8Response, pu16ResponseLength);
}

}
