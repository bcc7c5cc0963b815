// The KCS state machine of libbrevok against a simulated BMC.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "KcsRequest.h"
#include "KcsTransfer.h"
#include "SimulatedKcsBmc.h"

namespace {

const uint64_t kRegisterLimitUs = 1000;

class KcsRequestTest : public ::testing::Test {
protected:
    int Request(std::vector<uint8_t> vData = {})
    {
        u8CompletionCode = 0xFF;
        u16Length = u16Room;
        return KcsRequest(sBmc.Registers(), &sLimits, 0x28, 0x23, vData.data(), static_cast<uint8_t>(vData.size()),
                          &u8CompletionCode, au8Response, &u16Length);
    }
    SimulatedKcsBmc sBmc;
    sKcsTimeLimits sLimits = {kRegisterLimitUs, 1000 * kRegisterLimitUs, 0};
    uint8_t u8CompletionCode = 0xFF;
    uint8_t au8Response[100] = {};
    uint16_t u16Room = sizeof(au8Response);
    uint16_t u16Length = 0;
    void SetUp() override { sBmc.vResponse = {0x2C, 0x23, 0x00}; }
};

struct sResponseCase {
    const char* pchName;
    std::vector<uint8_t> vMessage;  // as the BMC sends it
    uint16_t u16Room;
    int iResult;
    uint8_t u8CompletionCode;
    std::vector<uint8_t> vResponse;  // the bytes delivered; not checked when empty after a failure
};

void PrintTo(const sResponseCase& sCase, std::ostream* pOut)
{
    *pOut << sCase.pchName;
}

class KcsResponses : public KcsRequestTest, public ::testing::WithParamInterface<sResponseCase> {};

// Whatever the response, the request goes out whole, the interface ends idle and
// no byte is written before the BMC took the one before.
TEST_P(KcsResponses, AreCheckedAndDelivered)
{
    const sResponseCase& sCase = GetParam();
    sBmc.vResponse = sCase.vMessage;
    u16Room = sCase.u16Room;
    EXPECT_EQ(sCase.iResult, Request({0x01, 0x02, 0x03}));
    EXPECT_EQ((std::vector<uint8_t>{0x28, 0x23, 0x01, 0x02, 0x03}), sBmc.vReceived);
    EXPECT_EQ(sCase.u8CompletionCode, u8CompletionCode);
    if (sCase.iResult == 0 || !sCase.vResponse.empty()) {
        EXPECT_EQ(sCase.vResponse, std::vector<uint8_t>(au8Response, au8Response + u16Length));
    }
    EXPECT_TRUE(sBmc.Idle());
    EXPECT_EQ(0, sBmc.iAborts);
    EXPECT_EQ(0, sBmc.iProtocolViolations);
}

INSTANTIATE_TEST_SUITE_P(
    KcsTransfer, KcsResponses,
    ::testing::Values(
        sResponseCase{"FullTransfer", {0x2C, 0x23, 0x00, 0x10, 0x20, 0x30}, 100, 0, 0x00, {0x10, 0x20, 0x30}},
        sResponseCase{"CompletionCodeOnly", {0x2C, 0x23, 0xC5}, 100, 0, 0xC5, {}},
        sResponseCase{"OtherCommand", {0x2C, 0x24, 0x00}, 100, EPROTO, 0xFF, {}},
        sResponseCase{"RequestNetFn", {0x28, 0x23, 0x00}, 100, EPROTO, 0xFF, {}},
        sResponseCase{"NoCompletionCode", {0x2C, 0x23}, 100, EPROTO, 0xFF, {}},
        sResponseCase{"LongerThanRoom", {0x2C, 0x23, 0x00, 1, 2, 3, 4, 5}, 2, EMSGSIZE, 0xFF, {1, 2}},
        sResponseCase{"BeyondDriverBuffer", std::vector<uint8_t>(KCS_RESPONSE_BUFFER_SIZE + 1, 0x2C), 100, EMSGSIZE,
                      0xFF, {}}),
    [](const ::testing::TestParamInfo<sResponseCase>& sInfo) { return std::string(sInfo.param.pchName); });

TEST_F(KcsRequestTest, ErrorStateIsAbortedAndInterfaceRecovers)
{
    sBmc.iErrorAfterBytes = 2;
    sBmc.iAbortsInWrongState = 1;  // the first error exit fails and is repeated
    EXPECT_EQ(EIO, Request({0x01, 0x02}));
    EXPECT_EQ(2, sBmc.iAborts);
    EXPECT_TRUE(sBmc.Idle());
    EXPECT_EQ(0xFF, u8CompletionCode);

    sBmc.iErrorAfterBytes = -1;
    EXPECT_EQ(0, Request({0x01, 0x02}));
    EXPECT_EQ(0, sBmc.iProtocolViolations);

    sBmc.iErrorAfterBytes = 0;
    sBmc.iAbortsInWrongState = 100;  // the error exit gives up
    EXPECT_EQ(EIO, Request());
    EXPECT_EQ(2 + KCS_ERROR_EXIT_ATTEMPTS, sBmc.iAborts);
}

TEST_F(KcsRequestTest, StuckInputBufferTimesOut)
{
    sBmc.bStuckIbf = true;
    EXPECT_EQ(ETIMEDOUT, Request());
    // The request and the error exit each give up after one register time-out.
    EXPECT_GE(sBmc.u64NowUs, kRegisterLimitUs);
    EXPECT_LE(sBmc.u64NowUs, 2 * kRegisterLimitUs + 100);
}

// Every byte takes 0.4 register time-outs: no single wait runs out, the whole may.
TEST_F(KcsRequestTest, TransferLimitBoundsTheWhole)
{
    sBmc.u64ByteDelayUs = kRegisterLimitUs * 4 / 10;
    sLimits.u64TransferTimeOutUs = 3 * kRegisterLimitUs;
    EXPECT_EQ(ETIMEDOUT, Request({0x01, 0x02, 0x03, 0x04}));
    EXPECT_TRUE(sBmc.Idle());

    sLimits.u64TransferTimeOutUs = 100 * kRegisterLimitUs;
    sLimits.u64WaitBeforeReadUs = 70 * kRegisterLimitUs;
    uint64_t u64StartUs = sBmc.u64NowUs;
    EXPECT_EQ(0, Request({0x01, 0x02, 0x03, 0x04}));
    EXPECT_GE(sBmc.u64NowUs - u64StartUs, sLimits.u64WaitBeforeReadUs);
}

}  // namespace
