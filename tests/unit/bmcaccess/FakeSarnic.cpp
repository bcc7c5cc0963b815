// Test stand-in for libsarnic.so (see FakeRouteControl.h).
#include "FakeRouteControl.h"
#include "channel/RouteLibraryApi.h"

namespace {
sFakeRouteControl s_sControl;
}  // namespace

extern "C" {

sFakeRouteControl* FakeRouteControl(void)
{
    return &s_sControl;
}

#ifndef OMIT_RAW_OPEN
TRouteHandle RawOpen(void)
{
    s_sControl.iOpenCalls++;
    return s_sControl.bRefuseOpen ? nullptr : &s_sControl;
}
#endif

#ifndef OMIT_RAW_CLOSE
void RawClose(TRouteHandle hHandle)
{
    s_sControl.iCloseCalls++;
    s_sControl.hClosed = hHandle;
}
#endif

#ifndef OMIT_RAW_REQUEST
int RawRequest(TRouteHandle, uint8_t u8NetFnLun, uint8_t u8Command, uint8_t* pu8Request, uint8_t u8RequestLength,
               uint8_t* pu8CompletionCode, uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    return FakeRequest(&s_sControl, u8NetFnLun, u8Command, pu8Request, u8RequestLength, pu8CompletionCode,
                       pu8Response, pu16ResponseLength);
}
#endif

#ifndef OMIT_RAW_IPMB_REQUEST
int RawIPMBRequest(TRouteHandle, uint8_t u8TargetAddress, uint8_t u8NetFnLun, uint8_t u8Command,
                   uint8_t* pu8Request, uint8_t u8RequestLength, uint8_t* pu8CompletionCode, uint8_t* pu8Response,
                   uint16_t* pu16ResponseLength)
{
    s_sControl.u8TargetAddress = u8TargetAddress;
    return FakeRequest(&s_sControl, u8NetFnLun, u8Command, pu8Request, u8RequestLength, pu8CompletionCode,
                       pu8Response, pu16ResponseLength);
}
#endif

}  // extern "C"
