// Get SDR Repository Info and Reserve SDR Repository.
#include <cstring>

#include "SimCommands.h"
#include "SimIpmiCodes.h"

namespace {

const uint8_t kSdrVersion = 0x51;  // IPMI 1.5 / 2.0 SDR format
const uint32_t kFreeSpaceLimit = 0xFFFE;  // FFFFh would mean "unspecified"

uint16_t ReportedRecordCount(const sSimRepository* psRepository)
{
    int64_t i64Count = static_cast<int64_t>(psRepository->vsRecords.size()) + psRepository->i32CountOffset;
    if (i64Count < 0) {
        return 0;
    }
    return (i64Count > 0xFFFF) ? 0xFFFF : static_cast<uint16_t>(i64Count);
}

uint16_t ReportedFreeSpace(const sSimRepository* psRepository)
{
    uint32_t u32Free = SimRepositoryFree(psRepository);
    return static_cast<uint16_t>(u32Free > kFreeSpaceLimit ? kFreeSpaceLimit : u32Free);
}

}  // namespace

void SimGetSdrRepositoryInfo(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    if (sRequest.u16Length != 0) {
        SimRefuse(psResponse, SIM_CC_REQUEST_LENGTH_INVALID);
        return;
    }
    const sSimRepository* psRepository = &psState->sRepository;
    uint8_t u8Support = static_cast<uint8_t>(psRepository->u8SupportBits & ~BMCSIM_SUPPORT_OVERFLOW);
    if (psRepository->bOverflow) {
        u8Support |= BMCSIM_SUPPORT_OVERFLOW;
    }
    SimPutByte(psResponse, kSdrVersion);
    SimPutWord(psResponse, ReportedRecordCount(psRepository));
    SimPutWord(psResponse, ReportedFreeSpace(psRepository));
    SimPutDword(psResponse, psRepository->u32AdditionTime);
    SimPutDword(psResponse, psRepository->u32EraseTime);
    SimPutByte(psResponse, u8Support);
}

// A new reservation cancels the one before, and with it any partial add in progress.
void SimReserveSdrRepository(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    if (sRequest.u16Length != 0) {
        SimRefuse(psResponse, SIM_CC_REQUEST_LENGTH_INVALID);
        return;
    }
    uint16_t u16ID = static_cast<uint16_t>(psState->u16LastReservationID + 1);
    if (u16ID == 0) {
        u16ID = 1;
    }
    psState->u16LastReservationID = u16ID;
    psState->sRepository.u16ReservationID = u16ID;
    memset(&psState->sRepository.sPartial, 0, sizeof(psState->sRepository.sPartial));
    SimPutWord(psResponse, u16ID);
}

int SimReservationValid(const sBmcSimState* psState, uint16_t u16ReservationID)
{
    return (u16ReservationID != 0 && u16ReservationID == psState->sRepository.u16ReservationID) ? 1 : 0;
}
