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
    const sKcsRegisterAccess* Registers() const { return &m_sRegisters; }
    bool Idle() const { return (m_u8Status & KCS_STATE_MASK) == KCS_STATE_IDLE; }

    // Behaviour.
    std::vector<uint8_t> vResponse;  // the whole response message
    int iErrorAfterBytes = -1;       // enter the error state when this many bytes came in
    int iAbortsInWrongState = 0;     // error exits answered in the write state
    bool bStuckIbf = false;          // never takes a byte from the SMS
    uint64_t u64ByteDelayUs = 0;     // time to take each byte from the SMS

    // What happened.
    std::vector<uint8_t> vReceived;  // data bytes of the latest request
    int iAborts = 0;
    int iProtocolViolations = 0;  // writes while IBF was still set
    uint64_t u64NowUs = 0;

private:
    enum ePhase { PHASE_IDLE, PHASE_WRITE, PHASE_READ, PHASE_ABORT, PHASE_ABORT_READ };

    static SimulatedKcsBmc* Bmc(void* pvContext) { return static_cast<SimulatedKcsBmc*>(pvContext); }

    // Register writes leave the byte in the input buffer (IBF set) ...
    void Write(bool bCommand, uint8_t u8Value)
    {
        if ((m_u8Status & KCS_STATUS_IBF) != 0) {
            iProtocolViolations++;
        }
        m_u8Status |= KCS_STATUS_IBF;
        m_bPendingCommand = bCommand;
        m_u8Pending = u8Value;
        m_u64PendingDueUs = u64NowUs + u64ByteDelayUs;
        TakePending();
    }

    // ... until the BMC takes it, once its time has come.
    void TakePending()
    {
        if ((m_u8Status & KCS_STATUS_IBF) == 0 || bStuckIbf || u64NowUs < m_u64PendingDueUs) {
            return;
        }
        m_u8Status &= static_cast<uint8_t>(~KCS_STATUS_IBF);
        if (m_bPendingCommand) {
            TakeCommand(m_u8Pending);
        } else {
            TakeData(m_u8Pending);
        }
    }

    void TakeCommand(uint8_t u8Value)
    {
        m_u8Status = static_cast<uint8_t>((m_u8Status & ~KCS_STATE_MASK) | KCS_STATE_WRITE);
        if (u8Value == KCS_CONTROL_WRITE_START) {
            m_ePhase = PHASE_WRITE;
            vReceived.clear();
            m_bLastByteNext = false;
        } else if (u8Value == KCS_CONTROL_WRITE_END && m_ePhase == PHASE_WRITE) {
            m_bLastByteNext = true;
        } else if (u8Value == KCS_CONTROL_GET_STATUS_ABORT) {
            m_ePhase = PHASE_ABORT;
            iAborts++;
        } else {
            m_u8Status |= KCS_STATE_ERROR;
        }
    }

    void TakeData(uint8_t u8Value)
    {
        if (m_ePhase == PHASE_WRITE && static_cast<int>(vReceived.size()) == iErrorAfterBytes) {
            m_u8Status |= KCS_STATE_ERROR;
        } else if (m_ePhase == PHASE_WRITE) {
            vReceived.push_back(u8Value);
            if (m_bLastByteNext) {
                m_uReplyIndex = 0;
                m_ePhase = PHASE_READ;
                Offer(KCS_STATE_READ, vResponse.empty() ? 0 : vResponse[0]);
            }
        } else if (m_ePhase == PHASE_READ && u8Value == KCS_CONTROL_READ && ++m_uReplyIndex < vResponse.size()) {
            Offer(KCS_STATE_READ, vResponse[m_uReplyIndex]);
        } else if (m_ePhase == PHASE_ABORT && iAbortsInWrongState > 0) {
            iAbortsInWrongState--;  // stays in the write state
        } else if (m_ePhase == PHASE_ABORT) {
            m_ePhase = PHASE_ABORT_READ;
            Offer(KCS_STATE_READ, KCS_ERROR_ABORTED);
        } else if ((m_ePhase == PHASE_READ || m_ePhase == PHASE_ABORT_READ) && u8Value == KCS_CONTROL_READ) {
            m_ePhase = PHASE_IDLE;
            Offer(KCS_STATE_IDLE, 0x00);
        } else {
            m_u8Status |= KCS_STATE_ERROR;
        }
    }

    void Offer(uint8_t u8State, uint8_t u8Byte)
    {
        m_u8Status = static_cast<uint8_t>((m_u8Status & ~KCS_STATE_MASK) | u8State | KCS_STATUS_OBF);
        m_u8DataOut = u8Byte;
    }

    sKcsRegisterAccess m_sRegisters{
        this,
        [](void* pvContext) {
            Bmc(pvContext)->m_u8Status &= static_cast<uint8_t>(~KCS_STATUS_OBF);
            return Bmc(pvContext)->m_u8DataOut;
        },
        [](void* pvContext) {
            Bmc(pvContext)->TakePending();
            return Bmc(pvContext)->m_u8Status;
        },
        [](void* pvContext, uint8_t u8Value) { Bmc(pvContext)->Write(false, u8Value); },
        [](void* pvContext, uint8_t u8Value) { Bmc(pvContext)->Write(true, u8Value); },
        [](void* pvContext) { return Bmc(pvContext)->u64NowUs; },
        [](void* pvContext, uint32_t u32Microseconds) { Bmc(pvContext)->u64NowUs += u32Microseconds; }};
    uint8_t m_u8Status = KCS_STATE_IDLE;
    uint8_t m_u8DataOut = 0;
    ePhase m_ePhase = PHASE_IDLE;
    bool m_bLastByteNext = false;
    bool m_bPendingCommand = false;
    uint8_t m_u8Pending = 0;
    uint64_t m_u64PendingDueUs = 0;
    size_t m_uReplyIndex = 0;
};

#endif
