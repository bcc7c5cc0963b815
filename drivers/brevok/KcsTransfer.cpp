// KCS transfers as in IPMI 2.0, section 9.15: write phase (WRITE_START, data bytes,
// WRITE_END, last byte), read phase (READ for every byte until the BMC is idle), and
// the error exit with GET_STATUS/ABORT.
#include "KcsTransfer.h"

#include <cerrno>
#include <cstdint>

namespace {

enum { KCS_POLL_INTERVAL_US = 10 };

struct sKcsSession {
    const sKcsRegisterAccess* psRegisters;
    uint64_t u64RegisterTimeOutUs;
    uint64_t u64DeadlineUs;  // end of the whole transfer
};

uint64_t AddSaturated(uint64_t u64A, uint64_t u64B)
{
    return (u64A > UINT64_MAX - u64B) ? UINT64_MAX : u64A + u64B;
}

uint64_t Now(const sKcsSession* psSession)
{
    return psSession->psRegisters->pfnNowUs(psSession->psRegisters->pvContext);
}

uint8_t ReadStatus(const sKcsSession* psSession)
{
    return psSession->psRegisters->pfnReadStatus(psSession->psRegisters->pvContext);
}

uint8_t ReadData(const sKcsSession* psSession)
{
    return psSession->psRegisters->pfnReadData(psSession->psRegisters->pvContext);
}

void WriteData(const sKcsSession* psSession, uint8_t u8Value)
{
    psSession->psRegisters->pfnWriteData(psSession->psRegisters->pvContext, u8Value);
}

void WriteCommand(const sKcsSession* psSession, uint8_t u8Value)
{
    psSession->psRegisters->pfnWriteCommand(psSession->psRegisters->pvContext, u8Value);
}

// Polls the status register until (status & u8Mask) == u8Wanted, within the register
// time-out and the end of the transfer. 0 with the status, or ETIMEDOUT.
int WaitStatus(const sKcsSession* psSession, uint8_t u8Mask, uint8_t u8Wanted, uint8_t* pu8Status)
{
    uint64_t u64LimitUs = AddSaturated(Now(psSession), psSession->u64RegisterTimeOutUs);
    if (u64LimitUs > psSession->u64DeadlineUs) {
        u64LimitUs = psSession->u64DeadlineUs;
    }
    for (;;) {
        uint8_t u8Status = ReadStatus(psSession);
        if ((u8Status & u8Mask) == u8Wanted) {
            *pu8Status = u8Status;
            return 0;
        }
        if (Now(psSession) >= u64LimitUs) {
            return ETIMEDOUT;
        }
        psSession->psRegisters->pfnSleepUs(psSession->psRegisters->pvContext, KCS_POLL_INTERVAL_US);
    }
}

int WaitIbfClear(const sKcsSession* psSession, uint8_t* pu8Status)
{
    return WaitStatus(psSession, KCS_STATUS_IBF, 0, pu8Status);
}

int WaitObfSet(const sKcsSession* psSession)
{
    uint8_t u8Status = 0;
    return WaitStatus(psSession, KCS_STATUS_OBF, KCS_STATUS_OBF, &u8Status);
}

// Waits for IBF to clear and checks the state the BMC is in: 0, ETIMEDOUT or EIO.
int WaitIbfInState(const sKcsSession* psSession, uint8_t u8State)
{
    uint8_t u8Status = 0;
    int iResult = WaitIbfClear(psSession, &u8Status);
    if (iResult != 0) {
        return iResult;
    }
    return ((u8Status & KCS_STATE_MASK) == u8State) ? 0 : EIO;
}

void ClearObf(const sKcsSession* psSession)
{
    if ((ReadStatus(psSession) & KCS_STATUS_OBF) != 0) {
        (void)ReadData(psSession);
    }
}

int WritePhase(const sKcsSession* psSession, const uint8_t* pu8Request, size_t uLength)
{
    uint8_t u8Status = 0;
    int iResult = WaitIbfClear(psSession, &u8Status);
    if (iResult != 0) {
        return iResult;
    }
    ClearObf(psSession);
    WriteCommand(psSession, KCS_CONTROL_WRITE_START);
    for (size_t i = 0; i + 1 < uLength; i++) {
        iResult = WaitIbfInState(psSession, KCS_STATE_WRITE);
        if (iResult != 0) {
            return iResult;
        }
        ClearObf(psSession);
        WriteData(psSession, pu8Request[i]);
    }
    iResult = WaitIbfInState(psSession, KCS_STATE_WRITE);
    if (iResult != 0) {
        return iResult;
    }
    ClearObf(psSession);
    WriteCommand(psSession, KCS_CONTROL_WRITE_END);
    iResult = WaitIbfInState(psSession, KCS_STATE_WRITE);
    if (iResult != 0) {
        return iResult;
    }
    ClearObf(psSession);
    WriteData(psSession, pu8Request[uLength - 1]);
    return 0;
}

// Reads bytes while the BMC is in the read state; the bytes beyond uSize are read
// and dropped, so that the interface still ends idle.
int ReadPhase(const sKcsSession* psSession, uint8_t* pu8Response, size_t uSize, size_t* puLength)
{
    size_t uCount = 0;
    for (int iByte = 0; iByte < KCS_MAX_READ_BYTES; iByte++) {
        uint8_t u8Status = 0;
        int iResult = WaitIbfClear(psSession, &u8Status);
        if (iResult != 0) {
            return iResult;
        }
        uint8_t u8State = u8Status & KCS_STATE_MASK;
        if (u8State != KCS_STATE_READ && u8State != KCS_STATE_IDLE) {
            return EIO;
        }
        iResult = WaitObfSet(psSession);
        if (iResult != 0) {
            return iResult;
        }
        if (u8State == KCS_STATE_IDLE) {
            (void)ReadData(psSession);  // the dummy byte that ends the response
            *puLength = (uCount < uSize) ? uCount : uSize;
            return (uCount <= uSize) ? 0 : EMSGSIZE;
        }
        uint8_t u8Byte = ReadData(psSession);
        if (uCount < uSize) {
            pu8Response[uCount] = u8Byte;
        }
        uCount++;
        WriteData(psSession, KCS_CONTROL_READ);
    }
    return EIO;
}

// One attempt of the error exit: 0 when the interface ended idle, ETIMEDOUT, or EIO
// when it answered in a wrong state.
int ErrorExitOnce(const sKcsSession* psSession, uint8_t* pu8StatusCode)
{
    uint8_t u8Status = 0;
    int iResult = WaitIbfClear(psSession, &u8Status);
    if (iResult != 0) {
        return iResult;
    }
    WriteCommand(psSession, KCS_CONTROL_GET_STATUS_ABORT);
    iResult = WaitIbfClear(psSession, &u8Status);
    if (iResult != 0) {
        return iResult;
    }
    ClearObf(psSession);
    WriteData(psSession, 0x00);
    iResult = WaitIbfInState(psSession, KCS_STATE_READ);
    if (iResult == 0) {
        iResult = WaitObfSet(psSession);
    }
    if (iResult != 0) {
        return iResult;
    }
    *pu8StatusCode = ReadData(psSession);
    WriteData(psSession, KCS_CONTROL_READ);
    iResult = WaitIbfInState(psSession, KCS_STATE_IDLE);
    if (iResult == 0) {
        iResult = WaitObfSet(psSession);
    }
    if (iResult != 0) {
        return iResult;
    }
    (void)ReadData(psSession);
    return 0;
}

}  // namespace

int KcsErrorExit(const sKcsRegisterAccess* psRegisters, const sKcsTimeLimits* psLimits, uint8_t* pu8StatusCode)
{
    if (psRegisters == nullptr || psLimits == nullptr || pu8StatusCode == nullptr) {
        return EINVAL;
    }
    // A recovery of its own: only the register time-out bounds it.
    const sKcsSession sSession = {psRegisters, psLimits->u64RegisterTimeOutUs, UINT64_MAX};
    int iResult = EIO;
    for (int iAttempt = 0; iAttempt < KCS_ERROR_EXIT_ATTEMPTS && iResult == EIO; iAttempt++) {
        iResult = ErrorExitOnce(&sSession, pu8StatusCode);
    }
    return iResult;
}

int KcsTransfer(const sKcsRegisterAccess* psRegisters, const sKcsTimeLimits* psLimits, const uint8_t* pu8Request,
                size_t uRequestLength, uint8_t* pu8Response, size_t uResponseSize, size_t* puResponseLength)
{
    if (psRegisters == nullptr || psLimits == nullptr || pu8Request == nullptr || uRequestLength == 0 ||
        pu8Response == nullptr || puResponseLength == nullptr) {
        return EINVAL;
    }
    uint64_t u64StartUs = psRegisters->pfnNowUs(psRegisters->pvContext);
    const sKcsSession sSession = {psRegisters, psLimits->u64RegisterTimeOutUs,
                                  AddSaturated(u64StartUs, psLimits->u64TransferTimeOutUs)};
    int iResult = WritePhase(&sSession, pu8Request, uRequestLength);
    if (iResult == 0) {
        if (psLimits->u64WaitBeforeReadUs > 0) {
            psRegisters->pfnSleepUs(psRegisters->pvContext, static_cast<uint32_t>(psLimits->u64WaitBeforeReadUs));
        }
        iResult = ReadPhase(&sSession, pu8Response, uResponseSize, puResponseLength);
    }
    if (iResult == ETIMEDOUT || iResult == EIO) {
        uint8_t u8StatusCode = KCS_ERROR_NONE;
        (void)KcsErrorExit(psRegisters, psLimits, &u8StatusCode);
    }
    return iResult;
}

bool KcsInterfacePresent(const sKcsRegisterAccess* psRegisters)
{
    return psRegisters->pfnReadStatus(psRegisters->pvContext) != 0xFF;
}
