// App commands: Get Device ID.
#include "SimCommands.h"
#include "SimIpmiCodes.h"

namespace {

// Device ID 20h, revision 1 without device SDRs, firmware 1.00 and available,
// IPMI 2.0, sensor + SDR repository + FRU inventory device, manufacturer 000000h,
// product 0001h.
const uint8_t kDeviceID[] = {0x20, 0x01, 0x01, 0x00, 0x02, 0x0B, 0x00, 0x00, 0x00, 0x01, 0x00};

}  // namespace

void SimGetDeviceID(sBmcSimState* /*psState*/, const sSimRequest& sRequest, sSimResponse* psResponse)
{
    if (sRequest.u16Length != 0) {
        SimRefuse(psResponse, SIM_CC_REQUEST_LENGTH_INVALID);
        return;
    }
    SimPutBytes(psResponse, kDeviceID, sizeof(kDeviceID));
}
