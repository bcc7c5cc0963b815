// Clear SDR Repository: "CLR" and the action AAh erase the repository; action 00h
// asks how far the erase is. The erase itself happens at once, but the BMC reports it
// in progress for the configured number of status polls: the initiating answer says
// "in progress" unless that number is 0, then as many polls say so, and after them
// every answer says "completed".
#include "SimCommands.h"
#include "SimIpmiCodes.h"

namespace {

const uint16_t kRequestLength = 6;
const uint8_t kClr[3] = {0x43, 0x4C, 0x52};  // 'C', 'L', 'R'
const uint8_t kActionInitiate = 0xAA;
const uint8_t kActionStatus = 0x00;
const uint8_t kEraseInProgress = 0x00;
const uint8_t kEraseCompleted = 0x01;

uint8_t InitiateErase(sBmcSimState* psState)
{
    sSimRepository* psRepository = &psState->sRepository;
    SimEraseRepository(psRepository, SimNow(psState));
    psRepository->u16EraseRemaining = psRepository->u16ErasePolls;
    return (psRepository->u16ErasePolls > 0) ? kEraseInProgress : kEraseCompleted;
}

uint8_t PollErase(sSimRepository* psRepository)
{
    if (psRepository->u16EraseRemaining == 0) {
        return kEraseCompleted;
    }
    psRepository->u16EraseRemaining--;
    return kEraseInProgress;
}

}  // namespace

void SimClearSdrRepository(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    if (sRequest.u16Length != kRequestLength) {
        SimRefuse(psResponse, SIM_CC_REQUEST_LENGTH_INVALID);
        return;
    }
    if (!SimReservationValid(psState, SimRequestWord(sRequest, 0))) {
        SimRefuse(psResponse, SIM_CC_INVALID_RESERVATION);
        return;
    }
    const uint8_t* pu8Data = sRequest.pu8Data;
    uint8_t u8Action = pu8Data[5];
    if (pu8Data[2] != kClr[0] || pu8Data[3] != kClr[1] || pu8Data[4] != kClr[2] ||
        (u8Action != kActionInitiate && u8Action != kActionStatus)) {
        SimRefuse(psResponse, SIM_CC_INVALID_DATA_FIELD);
        return;
    }
    SimPutByte(psResponse, (u8Action == kActionInitiate) ? InitiateErase(psState) : PollErase(&psState->sRepository));
}
