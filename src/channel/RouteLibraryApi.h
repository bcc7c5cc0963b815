// The functions of the two route libraries, libsarnic.so (OS IPMI driver) and
// libbrevok.so (direct KCS port I/O), as Tavrin looks them up with dlsym. Every
// implementation of either library (real driver or simulated BMC) exports exactly
// these C symbols.
#ifndef TAVRIN_CHANNEL_ROUTELIBRARYAPI_H
#define TAVRIN_CHANNEL_ROUTELIBRARYAPI_H

#include <cstdint>

// Register spacing of the KCS interface, as the port I/O library receives it.
enum RegisterSpacing {
    ByteBoundary = 0,
    ThirtyTwoBitBoundary = 1,
    SixteenBitBoundary = 2,
    Reserved = 3,
};

typedef void* TRouteHandle;

// Requests: byte of NetFn << 2 | LUN, command, request bytes and their number, then
// the completion code, the response (without the completion code) and the address of
// its length, which goes in as the room of the buffer and comes back as the number of
// bytes. 0 for success, otherwise an errno value.
typedef TRouteHandle (*TRawOpen)(void);
typedef void (*TRawClose)(TRouteHandle hHandle);
typedef int (*TRawRequest)(TRouteHandle hHandle, uint8_t u8NetFnLun, uint8_t u8Command,
                           uint8_t* pu8Request, uint8_t u8RequestLength, uint8_t* pu8CompletionCode,
                           uint8_t* pu8Response, uint16_t* pu16ResponseLength);
typedef int (*TRawIPMBRequest)(TRouteHandle hHandle, uint8_t u8TargetAddress, uint8_t u8NetFnLun,
                               uint8_t u8Command, uint8_t* pu8Request, uint8_t u8RequestLength,
                               uint8_t* pu8CompletionCode, uint8_t* pu8Response,
                               uint16_t* pu16ResponseLength);

typedef TRouteHandle (*TInitKCSIO)(unsigned int uPortAddress, RegisterSpacing eSpacing);
typedef void (*TUinitKCSIO)(TRouteHandle hHandle);
typedef TRawRequest TKCSIORequest;
typedef int (*TKCSIOSetTimeValue)(TRouteHandle hHandle, uint8_t u8Value);

extern "C" {
TRouteHandle RawOpen(void);
void RawClose(TRouteHandle hHandle);
int RawRequest(TRouteHandle hHandle, uint8_t u8NetFnLun, uint8_t u8Command, uint8_t* pu8Request,
               uint8_t u8RequestLength, uint8_t* pu8CompletionCode, uint8_t* pu8Response,
               uint16_t* pu16ResponseLength);
int RawIPMBRequest(TRouteHandle hHandle, uint8_t u8TargetAddress, uint8_t u8NetFnLun, uint8_t u8Command,
                   uint8_t* pu8Request, uint8_t u8RequestLength, uint8_t* pu8CompletionCode,
                   uint8_t* pu8Response, uint16_t* pu16ResponseLength);

TRouteHandle InitKCSIO(unsigned int uPortAddress, RegisterSpacing eSpacing);
void UinitKCSIO(TRouteHandle hHandle);
int KCSIORequest(TRouteHandle hHandle, uint8_t u8NetFnLun, uint8_t u8Command, uint8_t* pu8Request,
                 uint8_t u8RequestLength, uint8_t* pu8CompletionCode, uint8_t* pu8Response,
                 uint16_t* pu16ResponseLength);
int KCSIOSetIOTimeOut(TRouteHandle hHandle, uint8_t u8Value);
int KCSIOSetMessageTransferTimeOut(TRouteHandle hHandle, uint8_t u8Value);
int KCSIOSetWaitTimeBeforeReadRsp(TRouteHandle hHandle, uint8_t u8Value);
}

#endif
