// libbrevok.so: Tavrin's route to the BMC by direct port I/O on the KCS registers.
// It needs the I/O privilege (root) and no operating-system IPMI driver on the same
// interface.
#include <cerrno>
#include <cstdlib>

#include "KcsPortIO.h"
#include "KcsRequest.h"
#include "KcsSettings.h"
#include "KcsTransfer.h"
#include "channel/RouteLibraryApi.h"

namespace {

struct sBrevokHandle {
    sKcsPort sPort;
    sKcsRegisterAccess sRegisters;
    sKcsTimeLimits sLimits;
};

sBrevokHandle* AsHandle(TRouteHandle hHandle)
{
    return static_cast<sBrevokHandle*>(hHandle);
}

}  // namespace

extern "C" {

TRouteHandle InitKCSIO(unsigned int uPortAddress, RegisterSpacing eSpacing)
{
    unsigned int uOffset = KcsStatusRegisterOffset(eSpacing);
    if (uOffset == 0) {
        return nullptr;
    }
    sBrevokHandle* psHandle = static_cast<sBrevokHandle*>(calloc(1, sizeof(sBrevokHandle)));
    if (psHandle == nullptr) {
        return nullptr;
    }
    if (KcsPortOpen(&psHandle->sPort, uPortAddress, uOffset) != 0) {
        free(psHandle);
        return nullptr;
    }
    KcsPortBindRegisters(&psHandle->sPort, &psHandle->sRegisters);
    KcsDefaultTimeLimits(&psHandle->sLimits);
    if (!KcsInterfacePresent(&psHandle->sRegisters)) {
        KcsPortClose(&psHandle->sPort);
        free(psHandle);
        return nullptr;
    }
    return psHandle;
}

void UinitKCSIO(TRouteHandle hHandle)
{
    if (hHandle == nullptr) {
        return;
    }
    KcsPortClose(&AsHandle(hHandle)->sPort);
    free(hHandle);
}

int KCSIORequest(TRouteHandle hHandle, uint8_t u8NetFnLun, uint8_t u8Command, uint8_t* pu8Request,
                 uint8_t u8RequestLength, uint8_t* pu8CompletionCode, uint8_t* pu8Response,
                 uint16_t* pu16ResponseLength)
{
    if (hHandle == nullptr) {
        return EINVAL;
    }
    return KcsRequest(&AsHandle(hHandle)->sRegisters, &AsHandle(hHandle)->sLimits, u8NetFnLun, u8Command,
                      pu8Request, u8RequestLength, pu8CompletionCode, pu8Response, pu16ResponseLength);
}

int KCSIOSetIOTimeOut(TRouteHandle hHandle, uint8_t u8Value)
{
    return (hHandle == nullptr) ? EINVAL : KcsSetRegisterTimeOut(&AsHandle(hHandle)->sLimits, u8Value);
}

int KCSIOSetMessageTransferTimeOut(TRouteHandle hHandle, uint8_t u8Value)
{
    return (hHandle == nullptr) ? EINVAL : KcsSetTransferTimeOut(&AsHandle(hHandle)->sLimits, u8Value);
}

int KCSIOSetWaitTimeBeforeReadRsp(TRouteHandle hHandle, uint8_t u8Value)
{
    return (hHandle == nullptr) ? EINVAL : KcsSetWaitBeforeRead(&AsHandle(hHandle)->sLimits, u8Value);
}

}  // extern "C"
