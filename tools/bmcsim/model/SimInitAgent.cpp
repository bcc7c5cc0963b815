// Run Initialization Agent: request 1 starts the agent, 0 asks for its status. The
// answers follow the configured status sequence from its start on every run request;
// the last status repeats.
#include <cstddef>

#include "SimCommands.h"
#include "SimIpmiCodes.h"

namespace {

const uint8_t kRunAgent = 0x01;
const uint8_t kGetStatus = 0x00;
const uint8_t kCompleted = 0x01;

uint8_t NextStatus(sSimInitAgent* psAgent)
{
    const std::vector<uint8_t>& vu8Sequence = psAgent->vu8Sequence;
    if (vu8Sequence.empty()) {
        return kCompleted;
    }
    size_t uAt = psAgent->u32Position < vu8Sequence.size() ? psAgent->u32Position : vu8Sequence.size() - 1;
    if (psAgent->u32Position < vu8Sequence.size()) {
        psAgent->u32Position++;
    }
    return vu8Sequence[uAt];
}

}  // namespace

void SimRunInitializationAgent(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    if (sRequest.u16Length != 1) {
        SimRefuse(psResponse, SIM_CC_REQUEST_LENGTH_INVALID);
        return;
    }
    uint8_t u8Action = sRequest.pu8Data[0];
    if (u8Action != kRunAgent && u8Action != kGetStatus) {
        SimRefuse(psResponse, SIM_CC_INVALID_DATA_FIELD);
        return;
    }
    if (u8Action == kRunAgent) {
        psState->sInitAgent.u32Position = 0;
    }
    SimPutByte(psResponse, NextStatus(&psState->sInitAgent));
}
