// Requests through the loaded route library, its time-limit settings, and the
// status texts of TTalkToBMC.
#include "channel/TBMC_OSA.h"

#include <cstring>

int TTalkToBMC::RequestBMC(uint8_t u8NetFn, uint8_t u8Command, uint8_t u8Lun, uint8_t* pu8Request,
                           uint8_t u8RequestLength, uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    u8CompletionCode = BMC_NO_COMPLETION_CODE;
    iStatus = 0;
    if (pu8Request == nullptr || pu8Response == nullptr || pu16ResponseLength == nullptr) {
        TBMCDebug("requestBMC: Invalid input parameter!\n");
        return BMC_STATUS_NULL_ARGUMENT;
    }
    if (!IsConnectToBMCOK()) {
        return BMC_STATUS_NO_HANDLE;
    }

    TRawRequest pfnRequest = nullptr;
    TRouteHandle hHandle = nullptr;
    const char* pchFunction = nullptr;
    if (u8Interface == INTERFACE_OS_DRIVER) {
        pfnRequest = pfnRawRequest;
        hHandle = hRawHandle;
        pchFunction = "RawRequest";
    } else if (u8Interface == INTERFACE_KCS_IO) {
        pfnRequest = pfnKCSIORequest;
        hHandle = hKCSIOHandle;
        pchFunction = "KCSIORequest";
    } else {
        TBMCDebug("requestBMC: Support KCS interface only!\n");
        return BMC_STATUS_INTERFACE_NOT_SUPPORTED;
    }
    if (pfnRequest == nullptr) {
        TBMCDebug("requestBMC: Invalid function address - %s()!\n", pchFunction);
        return BMC_STATUS_FUNCTION_MISSING;
    }

    uint8_t u8NetFnLun = static_cast<uint8_t>((u8NetFn << 2) | u8Lun);
    iStatus = pfnRequest(hHandle, u8NetFnLun, u8Command, pu8Request, u8RequestLength, &u8CompletionCode,
                         pu8Response, pu16ResponseLength);
    return FinishRequest(u8NetFn, u8Command, pu8Response, pu16ResponseLength);
}

int TTalkToBMC::RequestIPMB(uint8_t u8TargetAddress, uint8_t u8NetFn, uint8_t u8Command, uint8_t u8Lun,
                            uint8_t* pu8Request, uint8_t u8RequestLength, uint8_t* pu8Response,
                            uint16_t* pu16ResponseLength)
{
    u8CompletionCode = BMC_NO_COMPLETION_CODE;
    iStatus = 0;
    if (pu8Request == nullptr || pu8Response == nullptr || pu16ResponseLength == nullptr) {
        TBMCDebug("requestIPMB: Invalid input parameters!\n");
        return BMC_STATUS_NULL_ARGUMENT;
    }
    if (!IsConnectToBMCOK()) {
        return BMC_STATUS_NO_HANDLE;
    }
    if (u8Interface != INTERFACE_OS_DRIVER) {
        TBMCDebug("requestIPMB: Support KCS interface only!\n");
        return BMC_STATUS_INTERFACE_NOT_SUPPORTED;
    }
    if (pfnRawIPMBRequest == nullptr) {
        TBMCDebug("requestIPMB: Invalid function address - %s()!\n", "RawIPMBRequest");
        return BMC_STATUS_FUNCTION_MISSING;
    }

    uint8_t u8NetFnLun = static_cast<uint8_t>((u8NetFn << 2) | u8Lun);
    iStatus = pfnRawIPMBRequest(hRawHandle, u8TargetAddress, u8NetFnLun, u8Command, pu8Request, u8RequestLength,
                                &u8CompletionCode, pu8Response, pu16ResponseLength);
    return FinishRequest(u8NetFn, u8Command, pu8Response, pu16ResponseLength);
}

// Traces the outcome of the library call in iStatus and maps it to a status code.
int TTalkToBMC::FinishRequest(uint8_t u8NetFn, uint8_t u8Command, const uint8_t* pu8Response,
                              const uint16_t* pu16ResponseLength)
{
    if (iStatus != 0) {
        TBMCDebug("RawRequst failed: status = %d\n", iStatus);
    }
    TBMCDebug("Send Command [%d] NetFn [%d] :\n", u8Command, u8NetFn);
    TBMCDebug("CompletCode = %d\tResponse Length = %d\n", u8CompletionCode, *pu16ResponseLength);
    DumpRespData(pu8Response, *pu16ResponseLength);
    if (iStatus != 0) {
        return BMC_STATUS_LIBRARY_CALL_FAILED;
    }
    TBMCDebug("\n************* End of RspData. ********\n\n\n");
    return BMC_STATUS_SUCCESS;
}

uint8_t TTalkToBMC::CompletionCode()
{
    return u8CompletionCode;
}

void TTalkToBMC::DumpRespData(const uint8_t* pu8Data, uint16_t u16Length)
{
    (void)pu8Data;
    (void)u16Length;
}

long TTalkToBMC::GetAddressToFirmwareInfo()
{
    return lFirmwareInfoAddress;
}

bool TTalkToBMC::SetRegisterTimeOut(uint8_t u8Value)
{
    if (hKCSIOHandle == nullptr) {
        TBMCDebug("Set timeout limit for the access of a KCS interface register: supports interface "
                  "INTERFACE_KCS_IO only.\n");
        return false;
    }
    if (pfnKCSIOSetIOTimeOut == nullptr) {
        TBMCDebug("Set timeout limit for the access of a KCS interface register: Invalid function address - "
                  "%s()!\n",
                  "KCSIOSetIOTimeOut");
        return false;
    }
    if (pfnKCSIOSetIOTimeOut(hKCSIOHandle, u8Value) != 0) {
        TBMCDebug("Failed to set timeout limit for the access of a KCS interface register.\n");
        return false;
    }
    return true;
}

bool TTalkToBMC::SetMessageTransferTimeOut(uint8_t u8Value)
{
    if (hKCSIOHandle == nullptr) {
        TBMCDebug("Set timeout limit for the transfer from SMS/BMC to BMC/SMS: supports interface "
                  "INTERFACE_KCS_IO only.\n");
        return false;
    }
    if (pfnKCSIOSetMessageTransferTimeOut == nullptr) {
        TBMCDebug("Set timeout limit for the transfer from SMS/BMC to BMC/SMS: Invalid function address - "
                  "%s()!\n",
                  "KCSIOSetMessageTransferTimeOut");
        return false;
    }
    if (pfnKCSIOSetMessageTransferTimeOut(hKCSIOHandle, u8Value) != 0) {
        TBMCDebug("Failed to set timeout limit for the transfer from SMS/BMC to BMC/SMS.\n");
        return false;
    }
    return true;
}

bool TTalkToBMC::SetWaitTimeBeforeReadRsp(uint8_t u8Value)
{
    if (hKCSIOHandle == nullptr) {
        TBMCDebug("Set the wait time before reading IPMI response: supports interface INTERFACE_KCS_IO only.\n");
        return false;
    }
    if (pfnKCSIOSetWaitTimeBeforeReadRsp == nullptr) {
        TBMCDebug("Set the wait time before reading IPMI response: Invalid function address - %s()!\n",
                  "KCSIOSetWaitTimeBeforeReadRsp");
        return false;
    }
    if (pfnKCSIOSetWaitTimeBeforeReadRsp(hKCSIOHandle, u8Value) != 0) {
        TBMCDebug("Failed to set the wait time before reading IPMI response.\n");
        return false;
    }
    return true;
}

const char* TTalkToBMC::ErrorMessage(int iStatusCode)
{
    switch (iStatusCode) {
    case BMC_STATUS_SUCCESS:
        return "Success!";
    case BMC_STATUS_CONFIG_INVALID:
        return "General error!";
    case BMC_STATUS_INTERFACE_NOT_SUPPORTED:
        return "Interface not supported!";
    case BMC_STATUS_NULL_ARGUMENT:
        return "BMC didn't accept the data you sent!";
    case BMC_STATUS_NO_HANDLE:
        return "Invalid raw handle!";
    case BMC_STATUS_LIBRARY_NOT_LOADED:
        return "Failed to load dynamic link library!";
    case BMC_STATUS_FUNCTION_MISSING:
        return "Invalid function address!";
    case BMC_STATUS_LIBRARY_CALL_FAILED:
        return strerror(iStatus);
    default:
        return "Unknown error!";
    }
}
