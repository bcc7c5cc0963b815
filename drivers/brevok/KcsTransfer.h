// The SMS side of the KCS state machine: one message written to the BMC and its
// response read back, with the error exit that brings the interface back to idle.
#ifndef TAVRIN_DRIVERS_BREVOK_KCSTRANSFER_H
#define TAVRIN_DRIVERS_BREVOK_KCSTRANSFER_H

#include <cstddef>
#include <cstdint>

#include "KcsRegisters.h"

enum {
    KCS_ERROR_EXIT_ATTEMPTS = 3,
    KCS_MAX_READ_BYTES = 1024,  // a BMC that never stops sending is broken
};

// Writes the request (at least one byte) and reads the response into pu8Response.
// 0, or: EINVAL for bad arguments; ETIMEDOUT when a register wait or the whole
// transfer ran out of time; EIO when the interface left the expected state;
// EMSGSIZE when the response was longer than uResponseSize (the bytes that fit are
// kept). After ETIMEDOUT and EIO the error exit has been run.
int KcsTransfer(const sKcsRegisterAccess* psRegisters, const sKcsTimeLimits* psLimits, const uint8_t* pu8Request,
                size_t uRequestLength, uint8_t* pu8Response, size_t uResponseSize, size_t* puResponseLength);

// GET_STATUS/ABORT, tried up to KCS_ERROR_EXIT_ATTEMPTS times while the interface
// answers in a wrong state. 0 with the interface's status code, ETIMEDOUT, or EIO.
int KcsErrorExit(const sKcsRegisterAccess* psRegisters, const sKcsTimeLimits* psLimits, uint8_t* pu8StatusCode);

// False when the status register reads as all ones: nothing answers at the port.
bool KcsInterfacePresent(const sKcsRegisterAccess* psRegisters);

#endif
