// Test stand-in for libsarnic.so (built with FAKE_SARNIC) or libbrevok.so. With
// OMIT_LAST_EXPORT it lacks the export that TTalkToBMC looks up last.
#include <cstring>

#include "FakeRouteControl.h"
#include "channel/RouteLibraryApi.h"

namespace {

sFakeRouteControl s_sControl;

TRouteHandle FakeOpen()
{
    s_sControl.iOpenCalls++;
    return s_sControl.bRefuseOpen ? nullptr : &s_sControl;
}

int FakeRequest(uint8_t u8NetFnLun, uint8_t u8Command, uint8_t u8RequestLength,
                uint8_t* pu8CompletionCode, uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    s_sControl.u8NetFnLun = u8NetFnLun;
    s_sControl.u8Command = u8Command;
    s_sControl.u8RequestLength = u8RequestLength;
    if (s_sControl.iResult != 0) {
        return s_sControl.iResult;
    }
    *pu8CompletionCode = s_sControl.u8CompletionCode;
    memcpy(pu8Response, s_sControl.au8Response, s_sControl.u16ResponseLength);
    *pu16ResponseLength = s_sControl.u16ResponseLength;
    return 0;
}

#ifndef FAKE_SARNIC
int FakeSetter(const char* pchName, uint8_t u8Value)
{
    s_sControl.pchSetter = pchName;
    s_sControl.u8SetterValue = u8Value;
    return s_sControl.iResult;
}
#endif

}  // namespace

extern "C" {

sFakeRouteControl* FakeRouteControl(void)
{
    return &s_sControl;
}

#ifdef FAKE_SARNIC
TRouteHandle RawOpen(void)
{
    return FakeOpen();
}

void RawClose(TRouteHandle hHandle)
{
    s_sControl.hClosed = hHandle;
}

int RawRequest(TRouteHandle, uint8_t u8NetFnLun, uint8_t u8Command, uint8_t*, uint8_t u8RequestLength,
               uint8_t* pu8CompletionCode, uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    return FakeRequest(u8NetFnLun, u8Command, u8RequestLength, pu8CompletionCode, pu8Response, pu16ResponseLength);
}

#ifndef OMIT_LAST_EXPORT
int RawIPMBRequest(TRouteHandle, uint8_t u8TargetAddress, uint8_t u8NetFnLun, uint8_t u8Command,
                   uint8_t*, uint8_t u8RequestLength, uint8_t* pu8CompletionCode, uint8_t* pu8Response,
                   uint16_t* pu16ResponseLength)
{
    s_sControl.u8TargetAddress = u8TargetAddress;
    return FakeRequest(u8NetFnLun, u8Command, u8RequestLength, pu8CompletionCode, pu8Response, pu16ResponseLength);
}
#endif

#else
TRouteHandle InitKCSIO(unsigned int uPortAddress, RegisterSpacing eSpacing)
{
    s_sControl.uPortAddress = uPortAddress;
    s_sControl.iSpacing = eSpacing;
    return FakeOpen();
}

void UinitKCSIO(TRouteHandle hHandle)
{
    s_sControl.hClosed = hHandle;
}

int KCSIORequest(TRouteHandle, uint8_t u8NetFnLun, uint8_t u8Command, uint8_t*, uint8_t u8RequestLength,
                 uint8_t* pu8CompletionCode, uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    return FakeRequest(u8NetFnLun, u8Command, u8RequestLength, pu8CompletionCode, pu8Response, pu16ResponseLength);
}

int KCSIOSetIOTimeOut(TRouteHandle, uint8_t u8Value)
{
    return FakeSetter(__func__, u8Value);
}

int KCSIOSetMessageTransferTimeOut(TRouteHandle, uint8_t u8Value)
{
    return FakeSetter(__func__, u8Value);
}

#ifndef OMIT_LAST_EXPORT
int KCSIOSetWaitTimeBeforeReadRsp(TRouteHandle, uint8_t u8Value)
{
    return FakeSetter(__func__, u8Value);
}
#endif
#endif

}  // extern "C"
