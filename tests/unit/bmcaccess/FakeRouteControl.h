// Stand-ins for libsarnic.so and libbrevok.so: they export the route functions (minus
// those a build leaves out with OMIT_*), record what they were called with and answer
// as the test tells them through FakeRouteControl().
#ifndef TAVRIN_TESTS_BMCACCESS_FAKEROUTECONTROL_H
#define TAVRIN_TESTS_BMCACCESS_FAKEROUTECONTROL_H

#include <cstdint>
#include <cstring>

struct sFakeRouteControl {
    // Behaviour.
    int bRefuseOpen;
    int iResult;  // of requests and setters
    uint8_t u8CompletionCode;
    uint8_t au8Response[8];
    uint16_t u16ResponseLength;
    // Calls seen.
    int iOpenCalls;
    int iCloseCalls;
    void* hClosed;
    unsigned int uPortAddress;
    int iSpacing;
    uint8_t u8TargetAddress;
    uint8_t u8NetFnLun;
    uint8_t u8Command;
    uint8_t au8Request[32];
    uint8_t u8RequestLength;
    uint16_t u16ResponseRoom;
    const char* pchSetter;
    uint8_t u8SetterValue;
};

typedef sFakeRouteControl* (*TFakeRouteControl)(void);

extern "C" sFakeRouteControl* FakeRouteControl(void);

// The common body of RawRequest, RawIPMBRequest and KCSIORequest.
inline int FakeRequest(sFakeRouteControl* psControl, uint8_t u8NetFnLun, uint8_t u8Command, const uint8_t* pu8Request,
                       uint8_t u8RequestLength, uint8_t* pu8CompletionCode, uint8_t* pu8Response,
                       uint16_t* pu16ResponseLength)
{
    psControl->u8NetFnLun = u8NetFnLun;
    psControl->u8Command = u8Command;
    psControl->u8RequestLength = u8RequestLength;
    memcpy(psControl->au8Request, pu8Request, u8RequestLength < 32 ? u8RequestLength : 32);
    psControl->u16ResponseRoom = *pu16ResponseLength;
    if (psControl->iResult != 0) {
        return psControl->iResult;
    }
    *pu8CompletionCode = psControl->u8CompletionCode;
    memcpy(pu8Response, psControl->au8Response, psControl->u16ResponseLength);
    *pu16ResponseLength = psControl->u16ResponseLength;
    return 0;
}

#endif
