// A fresh simulated BMC, and the bookkeeping of its repository and FRU devices.
#include "BmcSimState.h"

#include <cstring>
#include <ctime>

#include "SimIpmiCodes.h"

namespace {

const uint32_t kDefaultCapacity = 0x8000;
const uint16_t kDefaultErasePolls = 1;
const uint32_t kAllCipherSuites = 0xFFFFFFFFu;

void InitRepository(sSimRepository* psRepository)
{
    psRepository->vsRecords.clear();
    psRepository->u32Capacity = kDefaultCapacity;
    psRepository->u8SupportBits = BMCSIM_SUPPORT_DEFAULT;
    psRepository->bOverflow = false;
    psRepository->i32CountOffset = 0;
    psRepository->u32AdditionTime = 0;
    psRepository->u32EraseTime = 0;
    psRepository->u16ReservationID = 0;
    psRepository->u16NextRecordID = 1;
    psRepository->u16ErasePolls = kDefaultErasePolls;
    psRepository->u16EraseRemaining = 0;
    memset(&psRepository->sPartial, 0, sizeof(psRepository->sPartial));
}

void CopyText(char* pchTarget, const char* pchSource)
{
    memset(pchTarget, 0, BMCSIM_TEXT_MAX);
    strncpy(pchTarget, pchSource, BMCSIM_TEXT_MAX - 1);
}

}  // namespace

void SimInitState(sBmcSimState* psState)
{
    InitRepository(&psState->sRepository);
    psState->vsFru.clear();
    psState->sInitAgent.vu8Sequence = {0, 1};
    psState->sInitAgent.u32Position = 0;
    CopyText(psState->sLan.achUser, "admin");
    CopyText(psState->sLan.achPassword, "admin");
    psState->sLan.u32CipherMask = kAllCipherSuites;
    psState->sRoute.bOpenRefused = false;
    psState->sRoute.u32KcsPort = 0;
    psState->sRoute.i32KcsSpacing = -1;
    memset(psState->sRoute.au8KcsTimeouts, 0, sizeof(psState->sRoute.au8KcsTimeouts));
    psState->bFixedClock = false;
    psState->u32Clock = 0;
    psState->u16LastReservationID = 0;
    psState->vsFaults.clear();
    psState->vsLog.clear();
    psState->u32NextLogSequence = 1;
}

uint32_t SimNow(const sBmcSimState* psState)
{
    return psState->bFixedClock ? psState->u32Clock : static_cast<uint32_t>(time(nullptr));
}

uint32_t SimRepositoryUsed(const sSimRepository* psRepository)
{
    uint32_t u32Used = 0;
    for (const sSimSdrRecord& sRecord : psRepository->vsRecords) {
        u32Used += sRecord.u16Length;
    }
    return u32Used;
}

uint32_t SimRepositoryFree(const sSimRepository* psRepository)
{
    uint32_t u32Used = SimRepositoryUsed(psRepository);
    return (u32Used >= psRepository->u32Capacity) ? 0 : psRepository->u32Capacity - u32Used;
}

int SimFindRecord(const sSimRepository* psRepository, uint16_t u16RecordID)
{
    for (size_t i = 0; i < psRepository->vsRecords.size(); i++) {
        if (psRepository->vsRecords[i].u16RecordID == u16RecordID) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

uint16_t SimNextFreeRecordID(const sSimRepository* psRepository)
{
    uint16_t u16Candidate = psRepository->u16NextRecordID;
    for (uint32_t u32Tries = 0; u32Tries < 0x10000; u32Tries++, u16Candidate++) {
        if (u16Candidate == SIM_SDR_FIRST_RECORD_ID || u16Candidate == SIM_SDR_LAST_RECORD_ID) {
            continue;
        }
        if (SimFindRecord(psRepository, u16Candidate) < 0) {
            return u16Candidate;
        }
    }
    return 0;
}

int SimAppendRecord(sSimRepository* psRepository, uint16_t u16RecordID, const uint8_t* pu8Data,
                    uint16_t u16Length)
{
    if (u16Length < BMCSIM_SDR_HEADER_SIZE || u16Length > BMCSIM_SDR_RECORD_MAX ||
        u16Length != pu8Data[4] + BMCSIM_SDR_HEADER_SIZE) {
        return 0;
    }
    if (u16RecordID == SIM_SDR_FIRST_RECORD_ID || u16RecordID == SIM_SDR_LAST_RECORD_ID ||
        SimFindRecord(psRepository, u16RecordID) >= 0 || u16Length > SimRepositoryFree(psRepository)) {
        return 0;
    }
    sSimSdrRecord sRecord;
    memset(&sRecord, 0, sizeof(sRecord));
    sRecord.u16RecordID = u16RecordID;
    sRecord.u16Length = u16Length;
    memcpy(sRecord.au8Data, pu8Data, u16Length);
    sRecord.au8Data[0] = static_cast<uint8_t>(u16RecordID & 0xFF);
    sRecord.au8Data[1] = static_cast<uint8_t>(u16RecordID >> 8);
    psRepository->vsRecords.push_back(sRecord);
    if (u16RecordID >= psRepository->u16NextRecordID) {
        psRepository->u16NextRecordID = static_cast<uint16_t>(u16RecordID + 1);
    }
    return 1;
}

void SimEraseRepository(sSimRepository* psRepository, uint32_t u32Now)
{
    psRepository->vsRecords.clear();
    psRepository->bOverflow = false;
    psRepository->u32EraseTime = u32Now;
    psRepository->u16NextRecordID = 1;
    memset(&psRepository->sPartial, 0, sizeof(psRepository->sPartial));
}

sSimFruDevice* SimFindFru(sBmcSimState* psState, uint8_t u8FruID)
{
    for (sSimFruDevice& sDevice : psState->vsFru) {
        if (sDevice.u8FruID == u8FruID) {
            return &sDevice;
        }
    }
    return nullptr;
}

void SimPutFru(sBmcSimState* psState, uint8_t u8FruID, const std::vector<uint8_t>& vu8Data)
{
    sSimFruDevice* psDevice = SimFindFru(psState, u8FruID);
    if (psDevice != nullptr) {
        psDevice->vu8Data = vu8Data;
        return;
    }
    size_t uAt = 0;
    while (uAt < psState->vsFru.size() && psState->vsFru[uAt].u8FruID < u8FruID) {
        uAt++;
    }
    psState->vsFru.insert(psState->vsFru.begin() + static_cast<long>(uAt), sSimFruDevice{u8FruID, vu8Data});
}
