// Which handler answers which NetFn and command.
#include "SimCommands.h"
#include "SimIpmiCodes.h"

namespace {

typedef void (*TSimHandler)(sBmcSimState*, const sSimRequest&, sSimResponse*);

struct sSimCommandEntry {
    uint8_t u8NetFn;
    uint8_t u8Command;
    TSimHandler pfnHandler;
};

const sSimCommandEntry kCommands[] = {
    {SIM_NETFN_APP, IPMI_CMD_GET_DEVICE_ID, SimGetDeviceID},
    {SIM_NETFN_STORAGE, IPMI_CMD_GET_FRU_INVENTORY_AREA_INFO, SimGetFruInventoryAreaInfo},
    {SIM_NETFN_STORAGE, IPMI_CMD_READ_FRU_DATA, SimReadFruData},
    {SIM_NETFN_STORAGE, IPMI_CMD_WRITE_FRU_DATA, SimWriteFruData},
    {SIM_NETFN_STORAGE, IPMI_CMD_GET_SDR_REPOSITORY_INFO, SimGetSdrRepositoryInfo},
    {SIM_NETFN_STORAGE, IPMI_CMD_RESERVE_SDR_REPOSITORY, SimReserveSdrRepository},
    {SIM_NETFN_STORAGE, IPMI_CMD_GET_SDR, SimGetSdr},
    {SIM_NETFN_STORAGE, IPMI_CMD_PARTIAL_ADD_SDR, SimPartialAddSdr},
    {SIM_NETFN_STORAGE, IPMI_CMD_CLEAR_SDR_REPOSITORY, SimClearSdrRepository},
    {SIM_NETFN_STORAGE, IPMI_CMD_RUN_INITIALIZATION_AGENT, SimRunInitializationAgent},
};

}  // namespace

void SimExecuteCommand(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    psResponse->u8CompletionCode = SIM_CC_OK;
    psResponse->u16Length = 0;
    if (sRequest.u16Length > 0 && sRequest.pu8Data == nullptr) {
        SimRefuse(psResponse, SIM_CC_REQUEST_LENGTH_INVALID);
        return;
    }
    if (sRequest.u16Length > BMCSIM_REQUEST_DATA_MAX) {
        SimRefuse(psResponse, SIM_CC_REQUEST_TOO_LONG);
        return;
    }
    for (const sSimCommandEntry& sEntry : kCommands) {
        if (sEntry.u8NetFn == sRequest.u8NetFn && sEntry.u8Command == sRequest.u8Command) {
            sEntry.pfnHandler(psState, sRequest, psResponse);
            return;
        }
    }
    SimRefuse(psResponse, SIM_CC_INVALID_COMMAND);
}
