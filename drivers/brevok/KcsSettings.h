// What the caller of libbrevok chooses: the register spacing and the three time limits.
#ifndef TAVRIN_DRIVERS_BREVOK_KCSSETTINGS_H
#define TAVRIN_DRIVERS_BREVOK_KCSSETTINGS_H

#include <cstdint>

#include "KcsRegisters.h"
#include "channel/RouteLibraryApi.h"

enum {
    KCS_DEFAULT_REGISTER_TIMEOUT_S = 5,
    KCS_DEFAULT_TRANSFER_TIMEOUT_S = 30,
    KCS_DEFAULT_WAIT_BEFORE_READ_MS = 0,
};

// Distance of the status/command register from the data register: 1, 2 or 4 bytes;
// 0 for a spacing that has none (Reserved).
unsigned int KcsStatusRegisterOffset(RegisterSpacing eSpacing);

void KcsDefaultTimeLimits(sKcsTimeLimits* psLimits);

// The setters' byte values: register and transfer time-outs in seconds (1-255),
// the wait before reading the response in milliseconds (0-255). 0 or EINVAL.
int KcsSetRegisterTimeOut(sKcsTimeLimits* psLimits, uint8_t u8Seconds);
int KcsSetTransferTimeOut(sKcsTimeLimits* psLimits, uint8_t u8Seconds);
int KcsSetWaitBeforeRead(sKcsTimeLimits* psLimits, uint8_t u8Milliseconds);

#endif
