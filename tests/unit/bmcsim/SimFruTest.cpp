// FRU inventory devices of the simulated BMC: area info, reads short at the end of the
// area, writes that must lie wholly inside it.
#include <gtest/gtest.h>

#include "SimTestHelpers.h"

namespace {

TEST(SimFruTest, ReadsAreShortAtTheEndAndWritesStayInsideTheArea)
{
    sBmcSimState sState;
    SimInitState(&sState);
    TBytes vu8Area(0x51);
    for (size_t i = 0; i < vu8Area.size(); i++) vu8Area[i] = static_cast<uint8_t>(i);
    SimPutFru(&sState, 3, vu8Area);
    const uint8_t kInfo = IPMI_CMD_GET_FRU_INVENTORY_AREA_INFO, kRead = IPMI_CMD_READ_FRU_DATA,
                  kWrite = IPMI_CMD_WRITE_FRU_DATA, kC9 = SIM_CC_PARAMETER_OUT_OF_RANGE;
    RunSteps(&sState, {  // FRU ID, offset (low byte first), count or data
        {kInfo, {3}, 0, {0x51, 0x00, 0x00}},
        {kInfo, {4}, SIM_CC_NOT_PRESENT, {}},
        {kRead, {3, 0x10, 0x00, 3}, 0, {3, 0x10, 0x11, 0x12}},
        {kRead, {3, 0x50, 0x00, 2}, 0, {1, 0x50}},
        {kRead, {3, 0x00, 0x00, 99}, 0, {0x51, 0x00}, 1 + 0x51},
        {kRead, {3, 0x51, 0x00, 16}, kC9, {}},
        {kRead, {3, 0x00, 0x01, 1}, kC9, {}},
        {kRead, {3, 0x00, 0x00, 100}, SIM_CC_CANNOT_RETURN_COUNT, {}},
        {kRead, {3, 0x00, 0x00}, SIM_CC_REQUEST_LENGTH_INVALID, {}},
        {kWrite, {3, 0x4E, 0x00, 0xA1, 0xA2, 0xA3}, 0, {3}},
        {kWrite, {3, 0x50, 0x00, 0xB1, 0xB2}, kC9, {}},  // one byte too many: nothing is written
        {kWrite, {3, 0x00}, SIM_CC_REQUEST_LENGTH_INVALID, {}},
        {kRead, {3, 0x4D, 0x00, 16}, 0, {4, 0x4D, 0xA1, 0xA2, 0xA3}},
    });
}

}  // namespace
