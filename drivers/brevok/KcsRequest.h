// An IPMI request over KCS: the message NetFn/LUN, command, data goes to the BMC, and
// the response NetFn/LUN, command, completion code, data comes back.
#ifndef TAVRIN_DRIVERS_BREVOK_KCSREQUEST_H
#define TAVRIN_DRIVERS_BREVOK_KCSREQUEST_H

#include <cstdint>

#include "KcsRegisters.h"

enum {
    KCS_REQUEST_BUFFER_SIZE = 2 + 255,
    KCS_RESPONSE_BUFFER_SIZE = 3 + 255,
};

// The length goes in as the room of pu8Response and comes back as the number of
// response bytes behind the completion code. 0, or an errno value: those of
// KcsTransfer, and EPROTO for a response that is too short or answers another
// NetFn or command. With EMSGSIZE the bytes that fit are delivered, the completion
// code is not.
int KcsRequest(const sKcsRegisterAccess* psRegisters, const sKcsTimeLimits* psLimits, uint8_t u8NetFnLun,
               uint8_t u8Command, const uint8_t* pu8Request, uint8_t u8RequestLength,
               uint8_t* pu8CompletionCode, uint8_t* pu8Response, uint16_t* pu16ResponseLength);

#endif
