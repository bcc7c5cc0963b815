// FRU inventory devices of the simulated BMC: area info, reads short at the end of the
// area, writes that must lie inside it.
#include <gtest/gtest.h>

#include "SimTestHelpers.h"

namespace {

class SimFruTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        SimInitState(&m_sState);
        std::vector<uint8_t> vu8Area(0x51);
        for (size_t i = 0; i < vu8Area.size(); i++) {
            vu8Area[i] = static_cast<uint8_t>(i);
        }
        SimPutFru(&m_sState, 3, vu8Area);
    }
    sBmcSimState m_sState;
};

TEST_F(SimFruTest, AreaInfoGivesSizeAndByteAccess)
{
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_GET_FRU_INVENTORY_AREA_INFO, {3}).vu8Data,
              (std::vector<uint8_t>{0x51, 0x00, 0x00}));
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_GET_FRU_INVENTORY_AREA_INFO, {4}).u8Code, SIM_CC_NOT_PRESENT);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_GET_FRU_INVENTORY_AREA_INFO, {3, 0}).u8Code,
              SIM_CC_REQUEST_LENGTH_INVALID);
}

TEST_F(SimFruTest, ReadsAreShortAtTheEndAndRefusedBeyondIt)
{
    sAnswer sRead = Storage(&m_sState, SIM_CMD_READ_FRU_DATA, {3, 0x10, 0x00, 16});
    ASSERT_EQ(sRead.u8Code, 0);
    EXPECT_EQ(sRead.vu8Data.size(), 17u);
    EXPECT_EQ(sRead.vu8Data[0], 16);
    EXPECT_EQ(sRead.vu8Data[1], 0x10);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_READ_FRU_DATA, {3, 0x50, 0x00, 16}).vu8Data,
              (std::vector<uint8_t>{1, 0x50}));

    struct {
        std::vector<uint8_t> vu8Request;
        uint8_t u8Code;
    } asRefusals[] = {
        {{3, 0x51, 0x00, 16}, SIM_CC_PARAMETER_OUT_OF_RANGE},
        {{3, 0x00, 0x01, 1}, SIM_CC_PARAMETER_OUT_OF_RANGE},
        {{3, 0x00, 0x00, 100}, SIM_CC_CANNOT_RETURN_COUNT},
        {{9, 0x00, 0x00, 16}, SIM_CC_NOT_PRESENT},
        {{3, 0x00, 0x00}, SIM_CC_REQUEST_LENGTH_INVALID},
    };
    for (const auto& sRefusal : asRefusals) {
        EXPECT_EQ(Storage(&m_sState, SIM_CMD_READ_FRU_DATA, sRefusal.vu8Request).u8Code, sRefusal.u8Code);
    }
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_READ_FRU_DATA, {3, 0x00, 0x00, 99}).vu8Data.size(), 1u + 0x51u);
}

TEST_F(SimFruTest, WritesLandInsideTheAreaOrNotAtAll)
{
    sAnswer sWrite = Storage(&m_sState, SIM_CMD_WRITE_FRU_DATA, {3, 0x4E, 0x00, 0xA1, 0xA2, 0xA3});
    EXPECT_EQ(sWrite.u8Code, 0);
    EXPECT_EQ(sWrite.vu8Data, std::vector<uint8_t>{3});
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_READ_FRU_DATA, {3, 0x4D, 0x00, 16}).vu8Data,
              (std::vector<uint8_t>{4, 0x4D, 0xA1, 0xA2, 0xA3}));

    EXPECT_EQ(Storage(&m_sState, SIM_CMD_WRITE_FRU_DATA, {3, 0x50, 0x00, 0xB1, 0xB2}).u8Code,
              SIM_CC_PARAMETER_OUT_OF_RANGE);
    EXPECT_EQ(m_sState.vsFru[0].vu8Data[0x50], 0xA3);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_WRITE_FRU_DATA, {7, 0x00, 0x00, 0xB1}).u8Code, SIM_CC_NOT_PRESENT);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_WRITE_FRU_DATA, {3, 0x00}).u8Code, SIM_CC_REQUEST_LENGTH_INVALID);
}

}  // namespace
