#include "KcsSettings.h"

#include <cerrno>

namespace {
const uint64_t kMicrosecondsPerSecond = 1000000;
const uint64_t kMicrosecondsPerMillisecond = 1000;
}  // namespace

unsigned int KcsStatusRegisterOffset(RegisterSpacing eSpacing)
{
    switch (eSpacing) {
    case ByteBoundary:
        return 1;
    case SixteenBitBoundary:
        return 2;
    case ThirtyTwoBitBoundary:
        return 4;
    default:
        return 0;
    }
}

void KcsDefaultTimeLimits(sKcsTimeLimits* psLimits)
{
    psLimits->u64RegisterTimeOutUs = KCS_DEFAULT_REGISTER_TIMEOUT_S * kMicrosecondsPerSecond;
    psLimits->u64TransferTimeOutUs = KCS_DEFAULT_TRANSFER_TIMEOUT_S * kMicrosecondsPerSecond;
    psLimits->u64WaitBeforeReadUs = KCS_DEFAULT_WAIT_BEFORE_READ_MS * kMicrosecondsPerMillisecond;
}

int KcsSetRegisterTimeOut(sKcsTimeLimits* psLimits, uint8_t u8Seconds)
{
    if (psLimits == nullptr || u8Seconds == 0) {
        return EINVAL;
    }
    psLimits->u64RegisterTimeOutUs = u8Seconds * kMicrosecondsPerSecond;
    return 0;
}

int KcsSetTransferTimeOut(sKcsTimeLimits* psLimits, uint8_t u8Seconds)
{
    if (psLimits == nullptr || u8Seconds == 0) {
        return EINVAL;
    }
    psLimits->u64TransferTimeOutUs = u8Seconds * kMicrosecondsPerSecond;
    return 0;
}

int KcsSetWaitBeforeRead(sKcsTimeLimits* psLimits, uint8_t u8Milliseconds)
{
    if (psLimits == nullptr) {
        return EINVAL;
    }
    psLimits->u64WaitBeforeReadUs = u8Milliseconds * kMicrosecondsPerMillisecond;
    return 0;
}
