// TTalkToBMC: the local end of the command channel. It loads one of the two route
// libraries at run time (libsarnic.so for the OS IPMI driver, libbrevok.so for direct
// KCS port I/O), looks up their exports by name and hands every request to them.
// Nothing here writes to a stream: failures are result values.
#ifndef TAVRIN_CHANNEL_TBMC_OSA_H
#define TAVRIN_CHANNEL_TBMC_OSA_H

#include <cstdint>

#include "channel/RouteLibraryApi.h"

// Route kinds a TTalkToBMC is built for.
enum {
    INTERFACE_OS_DRIVER = 0,  // libsarnic.so
    INTERFACE_LAN = 2,        // never built; Init refuses it
    INTERFACE_KCS_IO = 3,     // libbrevok.so
};

// System interface named on the first line of intf.ini.
enum SystemInterface {
    SysIntfNone = 0,
    SysIntfKCS = 1,
    SysIntfSMIC = 2,
    SysIntfBT = 3,
    SysIntfNULL = 4,
};

inline constexpr const char* S_pachSysIntfStr[] = {"", "KCS", "SMIC", "BT", "NULL"};
inline constexpr const char* S_pachRegSpaceStr[] = {"ByteBoundary", "ThirtyTwoBitBoundary",
                                                    "SixteenBitBoundary", "Reserved"};

// Status codes of the request operations and GetConfig (texts: ErrorMessage).
enum {
    BMC_STATUS_SUCCESS = 0,
    BMC_STATUS_CONFIG_INVALID = 1,
    BMC_STATUS_INTERFACE_NOT_SUPPORTED = 2,
    BMC_STATUS_NULL_ARGUMENT = 3,
    BMC_STATUS_NO_HANDLE = 4,
    BMC_STATUS_LIBRARY_NOT_LOADED = 5,
    BMC_STATUS_FUNCTION_MISSING = 6,
    BMC_STATUS_LIBRARY_CALL_FAILED = 7,
    BMC_STATUS_CONFIG_NOT_FOUND = 8,
};

enum {
    BMC_INI_PATH_SIZE = 256,
    BMC_DEFAULT_KCS_PORT = 0xCA8,
    BMC_DEFAULT_FIRMWARE_INFO_ADDRESS = 0x3000,
    BMC_NO_COMPLETION_CODE = 0xFF,
};

class TTalkToBMC {
public:
    explicit TTalkToBMC(uint8_t u8InterfaceKind);
    ~TTalkToBMC();
    TTalkToBMC(const TTalkToBMC&) = delete;
    TTalkToBMC& operator=(const TTalkToBMC&) = delete;

    // Loads the library of this kind and opens a handle. Kinds 0 and 3 ignore
    // pvParameter; kind 3 takes port and spacing from intf.ini, or the given ones
    // when the file is missing. A second Init never succeeds.
    bool Init(void* pvParameter, unsigned int uPortAddress, RegisterSpacing eSpacing);
    bool IsConnectToBMCOK();

    // One exchange. The length goes in as the room of pu8Response and comes back as
    // the number of response bytes (without the completion code). Returns a status code.
    int RequestBMC(uint8_t u8NetFn, uint8_t u8Command, uint8_t u8Lun, uint8_t* pu8Request,
                   uint8_t u8RequestLength, uint8_t* pu8Response, uint16_t* pu16ResponseLength);
    int RequestIPMB(uint8_t u8TargetAddress, uint8_t u8NetFn, uint8_t u8Command, uint8_t u8Lun,
                    uint8_t* pu8Request, uint8_t u8RequestLength, uint8_t* pu8Response,
                    uint16_t* pu16ResponseLength);

    uint8_t CompletionCode();
    void DumpRespData(const uint8_t* pu8Data, uint16_t u16Length);
    long GetAddressToFirmwareInfo();

    bool SetRegisterTimeOut(uint8_t u8Value);
    bool SetMessageTransferTimeOut(uint8_t u8Value);
    bool SetWaitTimeBeforeReadRsp(uint8_t u8Value);

    bool SaveIniFilePath(const char* pchPath);
    const char* ErrorMessage(int iStatusCode);

    // Reads intf.ini (or the saved path). Returns 0, 1 (invalid line), 3 (null
    // argument) or 8 (no such file); values of lines read before a fault stay written.
    int GetConfig(SystemInterface* peSysIntf, uint16_t* pu16PortAddress, RegisterSpacing* peSpacing,
                  long* plFirmwareInfoAddress);

private:
    bool InitRawRoute();
    bool InitKCSIORoute(unsigned int uPortAddress, RegisterSpacing eSpacing);
    bool LoadRouteLibrary(const char* pchLibrary, const char* const* ppchNames, void** ppvAddresses,
                          int iCount);
    void UnloadRouteLibrary();
    int FinishRequest(uint8_t u8NetFn, uint8_t u8Command, const uint8_t* pu8Response,
                      const uint16_t* pu16ResponseLength);

    char achIniFilePath[BMC_INI_PATH_SIZE];
    TRouteHandle hRawHandle;
    TRouteHandle hKCSIOHandle;
    TInitKCSIO pfnInitKCSIO;
    TUinitKCSIO pfnUinitKCSIO;
    TKCSIORequest pfnKCSIORequest;
    TKCSIOSetTimeValue pfnKCSIOSetIOTimeOut;
    TKCSIOSetTimeValue pfnKCSIOSetMessageTransferTimeOut;
    TKCSIOSetTimeValue pfnKCSIOSetWaitTimeBeforeReadRsp;
    uint8_t u8CompletionCode;
    long lFirmwareInfoAddress;
    uint8_t u8Interface;
    int iStatus;
    void* hLibrary;
    TRawOpen pfnRawOpen;
    TRawClose pfnRawClose;
    TRawRequest pfnRawRequest;
    TRawIPMBRequest pfnRawIPMBRequest;
};

// Trace sink of this class: takes printf-style arguments and discards them.
void TBMCDebug(const char* pchFormat, ...) __attribute__((format(printf, 1, 2)));

// Case-insensitive name lookups: KCS/SMIC/BT (1..3) and the four spacings (0..3).
// -1 for null or no match.
int ConvertIntfType(const char* pchText);
int ConvertRegSpace(const char* pchText);

// dlopen (RTLD_NOW, by bare name: the loader's search path decides), dlsym, dlclose.
void* OpenDllFile(const char* pchLibraryName);
void* GetDllFunction(void* hLibrary, const char* pchSymbol);
bool CloseDllFile(void* hLibrary);

#endif
