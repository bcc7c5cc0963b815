// Partial Add SDR: a record arrives in pieces under one reservation. The first piece
// (offset 0, record ID 0000h) carries the header, and the BMC answers the record ID it
// assigns; every later piece must carry that ID and continue where the last one ended.
// The piece flagged last commits the record.
#include <cstring>

#include "SimCommands.h"
#include "SimIpmiCodes.h"

namespace {

const uint16_t kHeadLength = 6;  // reservation, record ID, offset, in-progress byte
const uint8_t kInProgressMask = 0x0F;
const uint8_t kInProgress = 0x00;
const uint8_t kLastPiece = 0x01;

struct sPiece {
    uint16_t u16RecordID;
    uint8_t u8Offset;
    uint8_t u8Progress;
    const uint8_t* pu8Data;
    uint16_t u16Length;
};

void Discard(sSimPartialAdd* psPartial)
{
    memset(psPartial, 0, sizeof(*psPartial));
}

// The first piece: checks the header and room, and assigns the record ID.
uint8_t StartRecord(sSimRepository* psRepository, const sPiece& sPiece)
{
    if (sPiece.u16RecordID != SIM_SDR_FIRST_RECORD_ID || sPiece.u16Length < BMCSIM_SDR_HEADER_SIZE) {
        return SIM_CC_INVALID_DATA_FIELD;
    }
    uint16_t u16Expected = static_cast<uint16_t>(sPiece.pu8Data[4] + BMCSIM_SDR_HEADER_SIZE);
    if (sPiece.u16Length > u16Expected) {
        return SIM_CC_PARTIAL_ADD_LENGTH_MISMATCH;
    }
    uint16_t u16RecordID = SimNextFreeRecordID(psRepository);
    if (u16Expected > SimRepositoryFree(psRepository) || u16RecordID == 0) {
        psRepository->bOverflow = true;
        return SIM_CC_OUT_OF_SPACE;
    }
    sSimPartialAdd* psPartial = &psRepository->sPartial;
    Discard(psPartial);
    psPartial->bActive = true;
    psPartial->u16RecordID = u16RecordID;
    psPartial->u16Expected = u16Expected;
    memcpy(psPartial->au8Data, sPiece.pu8Data, sPiece.u16Length);
    psPartial->u16Received = sPiece.u16Length;
    return SIM_CC_OK;
}

// A later piece: same record, contiguous, within the length the header gave.
uint8_t ContinueRecord(sSimRepository* psRepository, const sPiece& sPiece)
{
    sSimPartialAdd* psPartial = &psRepository->sPartial;
    if (!psPartial->bActive || sPiece.u16RecordID != psPartial->u16RecordID ||
        sPiece.u8Offset != psPartial->u16Received) {
        return SIM_CC_INVALID_DATA_FIELD;
    }
    if (sPiece.u16Length > psPartial->u16Expected - psPartial->u16Received) {
        Discard(psPartial);
        return SIM_CC_PARTIAL_ADD_LENGTH_MISMATCH;
    }
    memcpy(psPartial->au8Data + psPartial->u16Received, sPiece.pu8Data, sPiece.u16Length);
    psPartial->u16Received = static_cast<uint16_t>(psPartial->u16Received + sPiece.u16Length);
    return SIM_CC_OK;
}

uint8_t CommitRecord(sBmcSimState* psState)
{
    sSimRepository* psRepository = &psState->sRepository;
    sSimPartialAdd* psPartial = &psRepository->sPartial;
    if (psPartial->u16Received != psPartial->u16Expected) {
        Discard(psPartial);
        return SIM_CC_PARTIAL_ADD_LENGTH_MISMATCH;
    }
    if (!SimAppendRecord(psRepository, psPartial->u16RecordID, psPartial->au8Data, psPartial->u16Received)) {
        psRepository->bOverflow = true;
        Discard(psPartial);
        return SIM_CC_OUT_OF_SPACE;
    }
    psRepository->u32AdditionTime = SimNow(psState);
    Discard(psPartial);
    return SIM_CC_OK;
}

}  // namespace

void SimPartialAddSdr(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    if (sRequest.u16Length < kHeadLength) {
        SimRefuse(psResponse, SIM_CC_REQUEST_LENGTH_INVALID);
        return;
    }
    if (!SimReservationValid(psState, SimRequestWord(sRequest, 0))) {
        SimRefuse(psResponse, SIM_CC_INVALID_RESERVATION);
        return;
    }
    sPiece sPiece = {SimRequestWord(sRequest, 2), sRequest.pu8Data[4],
                     static_cast<uint8_t>(sRequest.pu8Data[5] & kInProgressMask), sRequest.pu8Data + kHeadLength,
                     static_cast<uint16_t>(sRequest.u16Length - kHeadLength)};
    if (sPiece.u8Progress != kInProgress && sPiece.u8Progress != kLastPiece) {
        SimRefuse(psResponse, SIM_CC_INVALID_DATA_FIELD);
        return;
    }
    sSimRepository* psRepository = &psState->sRepository;
    uint8_t u8Code = (sPiece.u8Offset == 0) ? StartRecord(psRepository, sPiece) : ContinueRecord(psRepository, sPiece);
    uint16_t u16RecordID = psRepository->sPartial.u16RecordID;
    if (u8Code == SIM_CC_OK && sPiece.u8Progress == kLastPiece) {
        u8Code = CommitRecord(psState);
    }
    if (u8Code != SIM_CC_OK) {
        SimRefuse(psResponse, u8Code);
        return;
    }
    SimPutWord(psResponse, u16RecordID);
}
