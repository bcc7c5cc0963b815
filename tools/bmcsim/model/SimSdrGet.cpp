// Get SDR: one record, or a part of it, and the ID of the record after it.
#include "SimCommands.h"
#include "SimIpmiCodes.h"

namespace {

const uint16_t kRequestLength = 6;
const uint8_t kWholeRecord = 0xFF;
const uint16_t kNextIDSize = 2;

// Record ID 0000h means the first record.
int LookUpRecord(const sSimRepository* psRepository, uint16_t u16RecordID)
{
    if (u16RecordID == SIM_SDR_FIRST_RECORD_ID) {
        return psRepository->vsRecords.empty() ? -1 : 0;
    }
    return SimFindRecord(psRepository, u16RecordID);
}

uint16_t NextRecordID(const sSimRepository* psRepository, int iIndex)
{
    size_t uNext = static_cast<size_t>(iIndex) + 1;
    return (uNext < psRepository->vsRecords.size()) ? psRepository->vsRecords[uNext].u16RecordID
                                                      : static_cast<uint16_t>(SIM_SDR_LAST_RECORD_ID);
}

}  // namespace

// The reservation is checked whenever one is given or the read starts inside a record:
// IPMI requires it for partial reads and allows 0000h for a read from offset 0.
void SimGetSdr(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    if (sRequest.u16Length != kRequestLength) {
        SimRefuse(psResponse, SIM_CC_REQUEST_LENGTH_INVALID);
        return;
    }
    uint16_t u16Reservation = SimRequestWord(sRequest, 0);
    uint16_t u16RecordID = SimRequestWord(sRequest, 2);
    uint8_t u8Offset = sRequest.pu8Data[4];
    uint8_t u8Count = sRequest.pu8Data[5];
    if ((u16Reservation != 0 || u8Offset != 0) && !SimReservationValid(psState, u16Reservation)) {
        SimRefuse(psResponse, SIM_CC_INVALID_RESERVATION);
        return;
    }
    const sSimRepository* psRepository = &psState->sRepository;
    int iIndex = LookUpRecord(psRepository, u16RecordID);
    if (iIndex < 0) {
        SimRefuse(psResponse, SIM_CC_NOT_PRESENT);
        return;
    }
    const sSimSdrRecord& sRecord = psRepository->vsRecords[static_cast<size_t>(iIndex)];
    if (u8Offset >= sRecord.u16Length) {
        SimRefuse(psResponse, SIM_CC_PARAMETER_OUT_OF_RANGE);
        return;
    }
    uint16_t u16Left = static_cast<uint16_t>(sRecord.u16Length - u8Offset);
    uint16_t u16Count = (u8Count == kWholeRecord || u8Count > u16Left) ? u16Left : u8Count;
    if (u16Count > BMCSIM_RESPONSE_DATA_MAX - kNextIDSize ||
        (u8Count != kWholeRecord && u8Count > BMCSIM_RESPONSE_DATA_MAX - kNextIDSize)) {
        SimRefuse(psResponse, SIM_CC_CANNOT_RETURN_COUNT);
        return;
    }
    SimPutWord(psResponse, NextRecordID(psRepository, iIndex));
    SimPutBytes(psResponse, sRecord.au8Data + u8Offset, u16Count);
}
