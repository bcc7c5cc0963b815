// Life cycle of TTalkToBMC: loading a route library, opening and closing its handle.
#include "channel/TBMC_OSA.h"

#include <cstring>

namespace {

const char* const kRawLibrary = "libsarnic.so";
const char* const kKCSIOLibrary = "libbrevok.so";

enum { RAW_EXPORT_COUNT = 4, KCSIO_EXPORT_COUNT = 6 };

const char* const kRawExports[RAW_EXPORT_COUNT] = {"RawOpen", "RawClose", "RawRequest", "RawIPMBRequest"};
const char* const kKCSIOExports[KCSIO_EXPORT_COUNT] = {
    "InitKCSIO",         "UinitKCSIO",
    "KCSIORequest",      "KCSIOSetIOTimeOut",
    "KCSIOSetMessageTransferTimeOut", "KCSIOSetWaitTimeBeforeReadRsp",
};

// dlsym hands out object pointers; the exports are functions of known signature.
template <typename TFunction>
TFunction AsFunction(void* pvAddress)
{
    return reinterpret_cast<TFunction>(pvAddress);
}

}  // namespace

void TBMCDebug(const char* pchFormat, ...)
{
    (void)pchFormat;
}

TTalkToBMC::TTalkToBMC(uint8_t u8InterfaceKind)
    : hRawHandle(nullptr),
      hKCSIOHandle(nullptr),
      pfnInitKCSIO(nullptr),
      pfnUinitKCSIO(nullptr),
      pfnKCSIORequest(nullptr),
      pfnKCSIOSetIOTimeOut(nullptr),
      pfnKCSIOSetMessageTransferTimeOut(nullptr),
      pfnKCSIOSetWaitTimeBeforeReadRsp(nullptr),
      u8CompletionCode(BMC_NO_COMPLETION_CODE),
      lFirmwareInfoAddress(0),
      u8Interface(u8InterfaceKind),
      iStatus(0),
      hLibrary(nullptr),
      pfnRawOpen(nullptr),
      pfnRawClose(nullptr),
      pfnRawRequest(nullptr),
      pfnRawIPMBRequest(nullptr)
{
    memset(achIniFilePath, 0, sizeof(achIniFilePath));
}

TTalkToBMC::~TTalkToBMC()
{
    if (hRawHandle != nullptr && hLibrary != nullptr) {
        if (pfnRawClose != nullptr) {
            pfnRawClose(hRawHandle);
        }
        hRawHandle = nullptr;
        UnloadRouteLibrary();
    }
    if (hKCSIOHandle != nullptr && hLibrary != nullptr) {
        if (pfnUinitKCSIO != nullptr) {
            pfnUinitKCSIO(hKCSIOHandle);
        }
        hKCSIOHandle = nullptr;
        UnloadRouteLibrary();
    }
}

bool TTalkToBMC::Init(void* pvParameter, unsigned int uPortAddress, RegisterSpacing eSpacing)
{
    if (hRawHandle != nullptr) {
        TBMCDebug("Init: RawOpen has been done!\n");
        return false;
    }
    if (hKCSIOHandle != nullptr) {
        TBMCDebug("Init: InitKCSIO has been done!\n");
        return false;
    }
    if (u8Interface == INTERFACE_OS_DRIVER) {
        return InitRawRoute();
    }
    if (u8Interface == INTERFACE_KCS_IO) {
        return InitKCSIORoute(uPortAddress, eSpacing);
    }
    if (u8Interface == INTERFACE_LAN && pvParameter == nullptr) {
        TBMCDebug("Init: invalid input parameter!\n");
        return false;
    }
    TBMCDebug("Init: Support KCS intferface only!\n");
    return false;
}

bool TTalkToBMC::InitRawRoute()
{
    void* apvExports[RAW_EXPORT_COUNT] = {};
    if (!LoadRouteLibrary(kRawLibrary, kRawExports, apvExports, RAW_EXPORT_COUNT)) {
        return false;
    }
    pfnRawOpen = AsFunction<TRawOpen>(apvExports[0]);
    pfnRawClose = AsFunction<TRawClose>(apvExports[1]);
    pfnRawRequest = AsFunction<TRawRequest>(apvExports[2]);
    pfnRawIPMBRequest = AsFunction<TRawIPMBRequest>(apvExports[3]);

    hRawHandle = pfnRawOpen();
    if (hRawHandle == nullptr) {
        UnloadRouteLibrary();
        TBMCDebug("Init: %s failed!\n", "RawOpen");
        return false;
    }
    return true;
}

bool TTalkToBMC::InitKCSIORoute(unsigned int uPortAddress, RegisterSpacing eSpacing)
{
    SystemInterface eFileSysIntf = SysIntfKCS;
    uint16_t u16FilePort = BMC_DEFAULT_KCS_PORT;
    RegisterSpacing eFileSpacing = ThirtyTwoBitBoundary;

    void* apvExports[KCSIO_EXPORT_COUNT] = {};
    if (!LoadRouteLibrary(kKCSIOLibrary, kKCSIOExports, apvExports, KCSIO_EXPORT_COUNT)) {
        return false;
    }
    pfnInitKCSIO = AsFunction<TInitKCSIO>(apvExports[0]);
    pfnUinitKCSIO = AsFunction<TUinitKCSIO>(apvExports[1]);
    pfnKCSIORequest = AsFunction<TKCSIORequest>(apvExports[2]);
    pfnKCSIOSetIOTimeOut = AsFunction<TKCSIOSetTimeValue>(apvExports[3]);
    pfnKCSIOSetMessageTransferTimeOut = AsFunction<TKCSIOSetTimeValue>(apvExports[4]);
    pfnKCSIOSetWaitTimeBeforeReadRsp = AsFunction<TKCSIOSetTimeValue>(apvExports[5]);

    int iConfig = GetConfig(&eFileSysIntf, &u16FilePort, &eFileSpacing, &lFirmwareInfoAddress);
    if (iConfig == BMC_STATUS_CONFIG_NOT_FOUND) {
        hKCSIOHandle = pfnInitKCSIO(uPortAddress, eSpacing);
    } else if (iConfig == BMC_STATUS_SUCCESS) {
        hKCSIOHandle = pfnInitKCSIO(u16FilePort, eFileSpacing);
    } else {
        UnloadRouteLibrary();
        return false;
    }
    if (hKCSIOHandle == nullptr) {
        UnloadRouteLibrary();
        TBMCDebug("Init: %s failed!\n", "InitKCSIO");
        return false;
    }
    return true;
}

// Loads the library and looks up every export before testing any of them, so that
// all missing names are traced. On failure nothing stays loaded.
bool TTalkToBMC::LoadRouteLibrary(const char* pchLibrary, const char* const* ppchNames, void** ppvAddresses,
                                  int iCount)
{
    hLibrary = OpenDllFile(pchLibrary);
    if (hLibrary == nullptr) {
        TBMCDebug("Init: Failed to load %s!\n", pchLibrary);
        return false;
    }
    bool bAllFound = true;
    for (int i = 0; i < iCount; i++) {
        ppvAddresses[i] = GetDllFunction(hLibrary, ppchNames[i]);
        if (ppvAddresses[i] == nullptr) {
            bAllFound = false;
        }
    }
    if (bAllFound) {
        return true;
    }
    UnloadRouteLibrary();
    for (int i = 0; i < iCount; i++) {
        if (ppvAddresses[i] == nullptr) {
            TBMCDebug("Init: Failed to get the exported function %s() from %s!\n", ppchNames[i], pchLibrary);
        }
        ppvAddresses[i] = nullptr;
    }
    return false;
}

// Closes the library and forgets every address that pointed into it.
void TTalkToBMC::UnloadRouteLibrary()
{
    CloseDllFile(hLibrary);
    hLibrary = nullptr;
    pfnRawOpen = nullptr;
    pfnRawClose = nullptr;
    pfnRawRequest = nullptr;
    pfnRawIPMBRequest = nullptr;
    pfnInitKCSIO = nullptr;
    pfnUinitKCSIO = nullptr;
    pfnKCSIORequest = nullptr;
    pfnKCSIOSetIOTimeOut = nullptr;
    pfnKCSIOSetMessageTransferTimeOut = nullptr;
    pfnKCSIOSetWaitTimeBeforeReadRsp = nullptr;
}

bool TTalkToBMC::IsConnectToBMCOK()
{
    if (u8Interface == INTERFACE_OS_DRIVER) {
        if (hRawHandle == nullptr) {
            TBMCDebug("IsConnectToBMCOK: Raw API is not available!\n");
            return false;
        }
        return true;
    }
    if (u8Interface == INTERFACE_KCS_IO) {
        return hKCSIOHandle != nullptr;
    }
    return false;
}
