// Test stand-in for libbrevok.so (see FakeRouteControl.h).
#include "FakeRouteControl.h"
#include "channel/RouteLibraryApi.h"

namespace {
sFakeRouteControl s_sControl;

int FakeSetter(const char* pchName, uint8_t u8Value)
{
    s_sControl.pchSetter = pchName;
    s_sControl.u8SetterValue = u8Value;
    return s_sControl.iResult;
}
}  // namespace

extern "C" {

sFakeRouteControl* FakeRouteControl(void)
{
    return &s_sControl;
}

#ifndef OMIT_INIT_KCSIO
TRouteHandle InitKCSIO(unsigned int uPortAddress, RegisterSpacing eSpacing)
{
    s_sControl.iOpenCalls++;
    s_sControl.uPortAddress = uPortAddress;
    s_sControl.iSpacing = eSpacing;
    return s_sControl.bRefuseOpen ? nullptr : &s_sControl;
}
#endif

#ifndef OMIT_UINIT_KCSIO
void UinitKCSIO(TRouteHandle hHandle)
{
    s_sControl.iCloseCalls++;
    s_sControl.hClosed = hHandle;
}
#endif

#ifndef OMIT_KCSIO_REQUEST
int KCSIORequest(TRouteHandle, uint8_t u8NetFnLun, uint8_t u8Command, uint8_t* pu8Request, uint8_t u8RequestLength,
                 uint8_t* pu8CompletionCode, uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    return FakeRequest(&s_sControl, u8NetFnLun, u8Command, pu8Request, u8RequestLength, pu8CompletionCode,
                       pu8Response, pu16ResponseLength);
}
#endif

#ifndef OMIT_SET_IO_TIMEOUT
int KCSIOSetIOTimeOut(TRouteHandle, uint8_t u8Value)
{
    return FakeSetter("KCSIOSetIOTimeOut", u8Value);
}
#endif

int KCSIOSetMessageTransferTimeOut(TRouteHandle, uint8_t u8Value)
{
    return FakeSetter("KCSIOSetMessageTransferTimeOut", u8Value);
}

#ifndef OMIT_SET_WAIT_TIME
int KCSIOSetWaitTimeBeforeReadRsp(TRouteHandle, uint8_t u8Value)
{
    return FakeSetter("KCSIOSetWaitTimeBeforeReadRsp", u8Value);
}
#endif

}  // extern "C"
