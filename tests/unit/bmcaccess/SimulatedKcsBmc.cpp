#include "SimulatedKcsBmc.h"

SimulatedKcsBmc::SimulatedKcsBmc()
    : m_sRegisters{this, ReadData, ReadStatus, WriteData, WriteCommand, NowUs, SleepUs}
{
}

void SimulatedKcsBmc::Write(bool bCommand, uint8_t u8Value)
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

// The BMC takes the byte in the input buffer once its time has come.
void SimulatedKcsBmc::TakePending()
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

void SimulatedKcsBmc::TakeCommand(uint8_t u8Value)
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

void SimulatedKcsBmc::TakeData(uint8_t u8Value)
{
    if (m_ePhase == PHASE_WRITE) {
        if (static_cast<int>(vReceived.size()) == iErrorAfterBytes) {
            m_u8Status |= KCS_STATE_ERROR;
            return;
        }
        vReceived.push_back(u8Value);
        if (m_bLastByteNext) {
            u64LastByteAtUs = u64NowUs;
            m_vReply = vResponse;
            if (m_vReply.empty()) {
                m_vReply = {static_cast<uint8_t>(vReceived[0] | 0x04), vReceived.size() > 1 ? vReceived[1] : uint8_t{0}, 0x00};
            }
            m_uReplyIndex = 0;
            m_ePhase = PHASE_READ;
            Offer(KCS_STATE_READ, m_vReply[0]);
        }
    } else if (m_ePhase == PHASE_READ && u8Value == KCS_CONTROL_READ) {
        if (++m_uReplyIndex < m_vReply.size()) {
            Offer(KCS_STATE_READ, m_vReply[m_uReplyIndex]);
        } else {
            m_ePhase = PHASE_IDLE;
            Offer(KCS_STATE_IDLE, 0x00);
        }
    } else if (m_ePhase == PHASE_ABORT && iAbortsInWrongState > 0) {
        iAbortsInWrongState--;  // stays in the write state
    } else if (m_ePhase == PHASE_ABORT) {
        m_ePhase = PHASE_ABORT_READ;
        Offer(KCS_STATE_READ, KCS_ERROR_ABORTED);
    } else if (m_ePhase == PHASE_ABORT_READ && u8Value == KCS_CONTROL_READ) {
        m_ePhase = PHASE_IDLE;
        Offer(KCS_STATE_IDLE, 0x00);
    } else {
        m_u8Status |= KCS_STATE_ERROR;
    }
}

void SimulatedKcsBmc::Offer(uint8_t u8State, uint8_t u8Byte)
{
    m_u8Status = static_cast<uint8_t>((m_u8Status & ~KCS_STATE_MASK) | u8State | KCS_STATUS_OBF);
    m_u8DataOut = u8Byte;
}

uint8_t SimulatedKcsBmc::ReadData(void* pvContext)
{
    SimulatedKcsBmc* psBmc = static_cast<SimulatedKcsBmc*>(pvContext);
    if (psBmc->m_ePhase == PHASE_READ && psBmc->m_uReplyIndex == 0 && psBmc->u64FirstReadAtUs == 0) {
        psBmc->u64FirstReadAtUs = psBmc->u64NowUs;
    }
    psBmc->m_u8Status &= static_cast<uint8_t>(~KCS_STATUS_OBF);
    return psBmc->m_u8DataOut;
}

uint8_t SimulatedKcsBmc::ReadStatus(void* pvContext)
{
    SimulatedKcsBmc* psBmc = static_cast<SimulatedKcsBmc*>(pvContext);
    psBmc->TakePending();
    return psBmc->m_u8Status;
}

void SimulatedKcsBmc::WriteData(void* pvContext, uint8_t u8Value)
{
    static_cast<SimulatedKcsBmc*>(pvContext)->Write(false, u8Value);
}

void SimulatedKcsBmc::WriteCommand(void* pvContext, uint8_t u8Value)
{
    static_cast<SimulatedKcsBmc*>(pvContext)->Write(true, u8Value);
}

uint64_t SimulatedKcsBmc::NowUs(void* pvContext)
{
    return static_cast<SimulatedKcsBmc*>(pvContext)->u64NowUs;
}

void SimulatedKcsBmc::SleepUs(void* pvContext, uint32_t u32Microseconds)
{
    static_cast<SimulatedKcsBmc*>(pvContext)->u64NowUs += u32Microseconds;
}
