// The KCS system interface as the SMS side sees it (IPMI 2.0, section 9): a data
// register and a status/command register, reached through sKcsRegisterAccess so that
// the state machine runs unchanged against port I/O or a simulated BMC.
#ifndef TAVRIN_DRIVERS_BREVOK_KCSREGISTERS_H
#define TAVRIN_DRIVERS_BREVOK_KCSREGISTERS_H

#include <cstdint>

struct sKcsRegisterAccess {
    void* pvContext;
    uint8_t (*pfnReadData)(void* pvContext);                    // Data_Out
    uint8_t (*pfnReadStatus)(void* pvContext);                  // Status
    void (*pfnWriteData)(void* pvContext, uint8_t u8Value);     // Data_In
    void (*pfnWriteCommand)(void* pvContext, uint8_t u8Value);  // Command
    uint64_t (*pfnNowUs)(void* pvContext);                      // a monotonic clock
    void (*pfnSleepUs)(void* pvContext, uint32_t u32Microseconds);
};

// The three time limits of a transfer, in microseconds.
struct sKcsTimeLimits {
    uint64_t u64RegisterTimeOutUs;  // one wait for IBF to clear or OBF to be set
    uint64_t u64TransferTimeOutUs;  // a whole request with its response
    uint64_t u64WaitBeforeReadUs;   // pause after the last request byte
};

// Status register bits.
enum {
    KCS_STATUS_OBF = 0x01,
    KCS_STATUS_IBF = 0x02,
    KCS_STATUS_SMS_ATN = 0x04,
    KCS_STATUS_CD = 0x08,
    KCS_STATE_MASK = 0xC0,
    KCS_STATE_IDLE = 0x00,
    KCS_STATE_READ = 0x40,
    KCS_STATE_WRITE = 0x80,
    KCS_STATE_ERROR = 0xC0,
};

// Control codes: the first three go to the command register, READ to the data register.
enum {
    KCS_CONTROL_GET_STATUS_ABORT = 0x60,
    KCS_CONTROL_WRITE_START = 0x61,
    KCS_CONTROL_WRITE_END = 0x62,
    KCS_CONTROL_READ = 0x68,
};

// Interface status codes delivered by GET_STATUS/ABORT.
enum {
    KCS_ERROR_NONE = 0x00,
    KCS_ERROR_ABORTED = 0x01,
    KCS_ERROR_ILLEGAL_CONTROL_CODE = 0x02,
    KCS_ERROR_LENGTH = 0x06,
    KCS_ERROR_UNSPECIFIED = 0xFF,
};

#endif
