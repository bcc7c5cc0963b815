// Framing of an IPMI request and its response on the KCS interface.
#include "KcsRequest.h"

#include <cerrno>
#include <cstring>

#include "KcsTransfer.h"

namespace {

enum { KCS_RESPONSE_HEADER_SIZE = 3 };

// Checks that the response answers the request, splits the completion code from
// the data and copies the data into the caller's room.
int SplitResponse(uint8_t u8NetFnLun, uint8_t u8Command, const uint8_t* pu8Message, size_t uLength,
                  uint8_t* pu8CompletionCode, uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    if (uLength < KCS_RESPONSE_HEADER_SIZE) {
        return EPROTO;
    }
    uint8_t u8ResponseNetFn = static_cast<uint8_t>((u8NetFnLun >> 2) | 0x01);
    if ((pu8Message[0] >> 2) != u8ResponseNetFn || pu8Message[1] != u8Command) {
        return EPROTO;
    }
    size_t uDataLength = uLength - KCS_RESPONSE_HEADER_SIZE;
    if (uDataLength > *pu16ResponseLength) {
        memcpy(pu8Response, pu8Message + KCS_RESPONSE_HEADER_SIZE, *pu16ResponseLength);
        return EMSGSIZE;
    }
    memcpy(pu8Response, pu8Message + KCS_RESPONSE_HEADER_SIZE, uDataLength);
    *pu16ResponseLength = static_cast<uint16_t>(uDataLength);
    *pu8CompletionCode = pu8Message[2];
    return 0;
}

}  // namespace

int KcsRequest(const sKcsRegisterAccess* psRegisters, const sKcsTimeLimits* psLimits, uint8_t u8NetFnLun,
               uint8_t u8Command, const uint8_t* pu8Request, uint8_t u8RequestLength,
               uint8_t* pu8CompletionCode, uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    if (pu8CompletionCode == nullptr || pu8Response == nullptr || pu16ResponseLength == nullptr ||
        (pu8Request == nullptr && u8RequestLength > 0)) {
        return EINVAL;
    }
    uint8_t au8Message[KCS_REQUEST_BUFFER_SIZE];
    au8Message[0] = u8NetFnLun;
    au8Message[1] = u8Command;
    if (u8RequestLength > 0) {
        memcpy(au8Message + 2, pu8Request, u8RequestLength);
    }
    uint8_t au8Reply[KCS_RESPONSE_BUFFER_SIZE];
    size_t uReplyLength = 0;
    int iResult = KcsTransfer(psRegisters, psLimits, au8Message, 2u + u8RequestLength, au8Reply, sizeof(au8Reply),
                              &uReplyLength);
    if (iResult != 0) {
        return iResult;
    }
    return SplitResponse(u8NetFnLun, u8Command, au8Reply, uReplyLength, pu8CompletionCode, pu8Response,
                         pu16ResponseLength);
}
