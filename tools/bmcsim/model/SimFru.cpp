// FRU inventory devices, addressed by FRU ID and accessed by bytes: Get FRU Inventory
// Area Info, Read FRU Data (short at the end of the area) and Write FRU Data.
#include <cstring>

#include "SimCommands.h"
#include "SimIpmiCodes.h"

namespace {

const uint8_t kAccessByBytes = 0x00;
const uint16_t kReadRequestLength = 4;
const uint16_t kWriteHeadLength = 3;  // FRU ID, offset
const uint16_t kCountSize = 1;

// The addressed device, or null with the refusal already set.
sSimFruDevice* AddressedDevice(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    sSimFruDevice* psDevice = SimFindFru(psState, sRequest.pu8Data[0]);
    if (psDevice == nullptr) {
        SimRefuse(psResponse, SIM_CC_NOT_PRESENT);
    }
    return psDevice;
}

}  // namespace

void SimGetFruInventoryAreaInfo(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    if (sRequest.u16Length != 1) {
        SimRefuse(psResponse, SIM_CC_REQUEST_LENGTH_INVALID);
        return;
    }
    const sSimFruDevice* psDevice = AddressedDevice(psState, sRequest, psResponse);
    if (psDevice == nullptr) {
        return;
    }
    SimPutWord(psResponse, static_cast<uint16_t>(psDevice->vu8Data.size()));
    SimPutByte(psResponse, kAccessByBytes);
}

void SimReadFruData(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    if (sRequest.u16Length != kReadRequestLength) {
        SimRefuse(psResponse, SIM_CC_REQUEST_LENGTH_INVALID);
        return;
    }
    const sSimFruDevice* psDevice = AddressedDevice(psState, sRequest, psResponse);
    if (psDevice == nullptr) {
        return;
    }
    uint16_t u16Offset = SimRequestWord(sRequest, 1);
    uint8_t u8Count = sRequest.pu8Data[3];
    size_t uSize = psDevice->vu8Data.size();
    if (u16Offset >= uSize) {
        SimRefuse(psResponse, SIM_CC_PARAMETER_OUT_OF_RANGE);
        return;
    }
    if (u8Count > BMCSIM_RESPONSE_DATA_MAX - kCountSize) {
        SimRefuse(psResponse, SIM_CC_CANNOT_RETURN_COUNT);
        return;
    }
    uint16_t u16Left = static_cast<uint16_t>(uSize - u16Offset);
    uint8_t u8Returned = (u8Count > u16Left) ? static_cast<uint8_t>(u16Left) : u8Count;
    SimPutByte(psResponse, u8Returned);
    SimPutBytes(psResponse, psDevice->vu8Data.data() + u16Offset, u8Returned);
}

// A write must lie wholly inside the area; nothing is written otherwise.
void SimWriteFruData(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    if (sRequest.u16Length < kWriteHeadLength) {
        SimRefuse(psResponse, SIM_CC_REQUEST_LENGTH_INVALID);
        return;
    }
    sSimFruDevice* psDevice = AddressedDevice(psState, sRequest, psResponse);
    if (psDevice == nullptr) {
        return;
    }
    uint16_t u16Offset = SimRequestWord(sRequest, 1);
    uint16_t u16Count = static_cast<uint16_t>(sRequest.u16Length - kWriteHeadLength);
    size_t uSize = psDevice->vu8Data.size();
    if (u16Offset >= uSize || u16Count > uSize - u16Offset) {
        SimRefuse(psResponse, SIM_CC_PARAMETER_OUT_OF_RANGE);
        return;
    }
    if (u16Count > 0) {
        memcpy(psDevice->vu8Data.data() + u16Offset, sRequest.pu8Data + kWriteHeadLength, u16Count);
    }
    SimPutByte(psResponse, static_cast<uint8_t>(u16Count));
}

void SimExecutePartial(sBmcSimState* psState, const sSimRequest& sRequest, uint32_t u32Bytes,
                       sSimResponse* psResponse)
{
    const bool bRead = sRequest.u8Command == IPMI_CMD_READ_FRU_DATA && sRequest.u16Length == kReadRequestLength;
    const bool bWrite = sRequest.u8Command == IPMI_CMD_WRITE_FRU_DATA && sRequest.u16Length >= kWriteHeadLength &&
                        sRequest.u16Length <= BMCSIM_REQUEST_DATA_MAX;
    if (sRequest.u8NetFn != SIM_NETFN_STORAGE || sRequest.pu8Data == nullptr || (!bRead && !bWrite)) {
        SimExecuteCommand(psState, sRequest, psResponse);
        return;
    }
    uint8_t au8Data[BMCSIM_REQUEST_DATA_MAX];
    memcpy(au8Data, sRequest.pu8Data, sRequest.u16Length);
    sSimRequest sCut = sRequest;
    sCut.pu8Data = au8Data;
    if (bRead && au8Data[3] > u32Bytes) {
        au8Data[3] = static_cast<uint8_t>(u32Bytes);
    }
    if (bWrite && uint32_t{sRequest.u16Length} - kWriteHeadLength > u32Bytes) {
        sCut.u16Length = static_cast<uint16_t>(kWriteHeadLength + u32Bytes);
    }
    SimExecuteCommand(psState, sCut, psResponse);
}
