// libsarnic.so: Tavrin's route to the BMC through the operating system's IPMI driver
// (/dev/ipmi0 and its other names on Linux, ipmi(4) on FreeBSD).
#include <cerrno>
#include <cstdlib>

#include "IpmiDevice.h"
#include "channel/RouteLibraryApi.h"

namespace {

int Request(TRouteHandle hHandle, const sIpmiTarget* psTarget, uint8_t u8NetFnLun, uint8_t u8Command,
            const uint8_t* pu8Request, uint8_t u8RequestLength, uint8_t* pu8CompletionCode, uint8_t* pu8Response,
            uint16_t* pu16ResponseLength)
{
    if (hHandle == nullptr) {
        return EINVAL;
    }
    return IpmiDeviceRequest(static_cast<sIpmiDevice*>(hHandle), psTarget, u8NetFnLun, u8Command, pu8Request,
                             u8RequestLength, pu8CompletionCode, pu8Response, pu16ResponseLength);
}

}  // namespace

extern "C" {

TRouteHandle RawOpen(void)
{
    sIpmiDevice* psDevice = static_cast<sIpmiDevice*>(calloc(1, sizeof(sIpmiDevice)));
    if (psDevice == nullptr) {
        return nullptr;
    }
    if (IpmiDeviceOpen(psDevice, SystemIpmiDeviceOps(), nullptr) != 0) {
        free(psDevice);
        return nullptr;
    }
    return psDevice;
}

void RawClose(TRouteHandle hHandle)
{
    if (hHandle == nullptr) {
        return;
    }
    IpmiDeviceClose(static_cast<sIpmiDevice*>(hHandle));
    free(hHandle);
}

int RawRequest(TRouteHandle hHandle, uint8_t u8NetFnLun, uint8_t u8Command, uint8_t* pu8Request,
               uint8_t u8RequestLength, uint8_t* pu8CompletionCode, uint8_t* pu8Response,
               uint16_t* pu16ResponseLength)
{
    const sIpmiTarget sBMC = {false, 0};
    return Request(hHandle, &sBMC, u8NetFnLun, u8Command, pu8Request, u8RequestLength, pu8CompletionCode,
                   pu8Response, pu16ResponseLength);
}

int RawIPMBRequest(TRouteHandle hHandle, uint8_t u8TargetAddress, uint8_t u8NetFnLun, uint8_t u8Command,
                   uint8_t* pu8Request, uint8_t u8RequestLength, uint8_t* pu8CompletionCode,
                   uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    const sIpmiTarget sController = {true, u8TargetAddress};
    return Request(hHandle, &sController, u8NetFnLun, u8Command, pu8Request, u8RequestLength, pu8CompletionCode,
                   pu8Response, pu16ResponseLength);
}

}  // extern "C"
