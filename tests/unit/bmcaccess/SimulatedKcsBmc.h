// The BMC side of a KCS interface, in memory, behind sKcsRegisterAccess. It follows
// the IPMI 2.0 KCS state machine, keeps a simulated clock that moves only when the
// SMS side sleeps, and can be told to misbehave.
#ifndef TAVRIN_TESTS_BMCACCESS_SIMULATEDKCSBMC_H
#define TAVRIN_TESTS_BMCACCESS_SIMULATEDKCSBMC_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "KcsRegisters.h"

class SimulatedKcsBmc {
public:
    SimulatedKcsBmc();
    const sKcsRegisterAccess* Registers() const { return &m_sRegisters; }

    // Behaviour.
    std::vector<uint8_t> vResponse;    // the whole response message; empty: echo header, cc 0
    int iErrorAfterBytes = -1;         // enter the error state when this many bytes came in
    int iAbortsInWrongState = 0;       // error exits answered in the write state
    bool bStuckIbf = false;            // never takes a byte from the SMS
    uint64_t u64ByteDelayUs = 0;       // time to take each byte from the SMS

    // What happened.
    std::vector<uint8_t> vReceived;    // data bytes of the latest request
    int iAborts = 0;
    int iProtocolViolations = 0;       // writes while IBF was still set
    uint64_t u64NowUs = 0;
    uint64_t u64LastByteAtUs = 0;      // when the last request byte was taken
    uint64_t u64FirstReadAtUs = 0;     // when the SMS read the first response byte
    bool Idle() const { return (m_u8Status & KCS_STATE_MASK) == KCS_STATE_IDLE; }

private:
    enum ePhase { PHASE_IDLE, PHASE_WRITE, PHASE_READ, PHASE_ABORT, PHASE_ABORT_READ };

    void Write(bool bCommand, uint8_t u8Value);
    void TakePending();
    void TakeCommand(uint8_t u8Value);
    void TakeData(uint8_t u8Value);
    void Offer(uint8_t u8State, uint8_t u8Byte);

    static uint8_t ReadData(void* pvContext);
    static uint8_t ReadStatus(void* pvContext);
    static void WriteData(void* pvContext, uint8_t u8Value);
    static void WriteCommand(void* pvContext, uint8_t u8Value);
    static uint64_t NowUs(void* pvContext);
    static void SleepUs(void* pvContext, uint32_t u32Microseconds);

    sKcsRegisterAccess m_sRegisters;
    uint8_t m_u8Status = KCS_STATE_IDLE;
    uint8_t m_u8DataOut = 0;
    ePhase m_ePhase = PHASE_IDLE;
    bool m_bLastByteNext = false;
    bool m_bPendingCommand = false;
    uint8_t m_u8Pending = 0;
    uint64_t m_u64PendingDueUs = 0;
    std::vector<uint8_t> m_vReply;
    size_t m_uReplyIndex = 0;
};

#endif
