// The KCS state machine of libbrevok against a simulated BMC.
#include <gtest/gtest.h>

#include <cerrno>
#include <vector>

#include "KcsRequest.h"
#include "KcsSettings.h"
#include "KcsTransfer.h"
#include "SimulatedKcsBmc.h"

namespace {

const uint64_t kRegisterLimitUs = 1000;

class KcsRequestTest : public ::testing::Test {
protected:
    int Request(uint8_t u8NetFnLun, uint8_t u8Command, std::vector<uint8_t> vData = {})
    {
        u8CompletionCode = 0xFF;
        u16Length = u16Room;
        return KcsRequest(sBmc.Registers(), &sLimits, u8NetFnLun, u8Command, vData.data(),
                          static_cast<uint8_t>(vData.size()), &u8CompletionCode, au8Response, &u16Length);
    }
    SimulatedKcsBmc sBmc;
    sKcsTimeLimits sLimits = {kRegisterLimitUs, 1000 * kRegisterLimitUs, 0};
    uint8_t u8CompletionCode = 0xFF;
    uint8_t au8Response[100] = {};
    uint16_t u16Room = sizeof(au8Response);
    uint16_t u16Length = 0;
};

TEST_F(KcsRequestTest, WritesMessageAndReadsResponse)
{
    sBmc.vResponse = {0x2C, 0x23, 0x00, 0x10, 0x20, 0x30};
    ASSERT_EQ(0, Request(0x28, 0x23, {0x01, 0x02, 0x03}));
    EXPECT_EQ((std::vector<uint8_t>{0x28, 0x23, 0x01, 0x02, 0x03}), sBmc.vReceived);
    EXPECT_EQ(0x00, u8CompletionCode);
    ASSERT_EQ(3, u16Length);
    EXPECT_EQ(0x30, au8Response[2]);
    EXPECT_EQ(0, sBmc.iProtocolViolations);
    EXPECT_EQ(0, sBmc.iAborts);
    EXPECT_TRUE(sBmc.Idle());
}

TEST_F(KcsRequestTest, CompletionCodeAloneIsAResponse)
{
    sBmc.vResponse = {0x2C, 0x27, 0xC5};
    ASSERT_EQ(0, Request(0x28, 0x27));
    EXPECT_EQ(0xC5, u8CompletionCode);
    EXPECT_EQ(0, u16Length);
}

TEST_F(KcsRequestTest, ErrorStateIsAbortedAndInterfaceRecovers)
{
    sBmc.iErrorAfterBytes = 2;
    EXPECT_EQ(EIO, Request(0x28, 0x25, {0x01, 0x02}));
    EXPECT_EQ(1, sBmc.iAborts);
    EXPECT_TRUE(sBmc.Idle());
    EXPECT_EQ(0xFF, u8CompletionCode);

    sBmc.iErrorAfterBytes = -1;
    EXPECT_EQ(0, Request(0x28, 0x25, {0x01, 0x02}));
    EXPECT_EQ(0, sBmc.iProtocolViolations);
}

TEST_F(KcsRequestTest, ErrorExitIsRetriedAndBounded)
{
    sBmc.iErrorAfterBytes = 0;
    sBmc.iAbortsInWrongState = 2;
    EXPECT_EQ(EIO, Request(0x18, 0x01));
    EXPECT_EQ(3, sBmc.iAborts);
    EXPECT_TRUE(sBmc.Idle());

    SimulatedKcsBmc sStubborn;
    sStubborn.iErrorAfterBytes = 0;
    sStubborn.iAbortsInWrongState = 100;
    uint8_t u8Status = 0;
    const uint8_t au8Message[] = {0x18, 0x01};
    size_t uLength = 0;
    EXPECT_EQ(EIO, KcsTransfer(sStubborn.Registers(), &sLimits, au8Message, 2, au8Response, 10, &uLength));
    EXPECT_EQ(KCS_ERROR_EXIT_ATTEMPTS, sStubborn.iAborts);
    EXPECT_EQ(EIO, KcsErrorExit(sStubborn.Registers(), &sLimits, &u8Status));
}

TEST_F(KcsRequestTest, StuckInputBufferTimesOut)
{
    sBmc.bStuckIbf = true;
    sBmc.vResponse = {0x1C, 0x01, 0x00};
    EXPECT_EQ(ETIMEDOUT, Request(0x18, 0x01));
    // The request and the error exit each give up after one register time-out.
    EXPECT_GE(sBmc.u64NowUs, kRegisterLimitUs);
    EXPECT_LE(sBmc.u64NowUs, 2 * kRegisterLimitUs + 100);
}

struct sSlowCase {
    uint64_t u64TransferLimitUs;
    int iResult;
};

void PrintTo(const sSlowCase& sCase, std::ostream* pOut)
{
    *pOut << sCase.u64TransferLimitUs << " us";
}

class SlowBmc : public KcsRequestTest, public ::testing::WithParamInterface<sSlowCase> {};

// Every byte takes 0.4 register time-outs: no single wait runs out, the whole may.
TEST_P(SlowBmc, TransferLimitBoundsTheWhole)
{
    sBmc.u64ByteDelayUs = kRegisterLimitUs * 4 / 10;
    sLimits.u64TransferTimeOutUs = GetParam().u64TransferLimitUs;
    EXPECT_EQ(GetParam().iResult, Request(0x28, 0x23, {0x01, 0x02, 0x03, 0x04}));
}

INSTANTIATE_TEST_SUITE_P(KcsTransfer, SlowBmc,
                         ::testing::Values(sSlowCase{3 * kRegisterLimitUs, ETIMEDOUT},
                                           sSlowCase{100 * kRegisterLimitUs, 0}));

TEST_F(KcsRequestTest, WaitsBeforeReadingResponse)
{
    sLimits.u64WaitBeforeReadUs = 7000;
    ASSERT_EQ(0, Request(0x18, 0x01));
    EXPECT_GE(sBmc.u64FirstReadAtUs - sBmc.u64LastByteAtUs, 7000u);
}

TEST_F(KcsRequestTest, ResponseMustAnswerTheRequest)
{
    sBmc.vResponse = {0x2C, 0x24, 0x00};  // another command
    EXPECT_EQ(EPROTO, Request(0x28, 0x23));
    sBmc.vResponse = {0x28, 0x23, 0x00};  // request NetFn
    EXPECT_EQ(EPROTO, Request(0x28, 0x23));
    sBmc.vResponse = {0x2C, 0x23};  // no completion code
    EXPECT_EQ(EPROTO, Request(0x28, 0x23));
    EXPECT_TRUE(sBmc.Idle());
}

TEST_F(KcsRequestTest, LongResponseIsCutAndReported)
{
    sBmc.vResponse = {0x2C, 0x23, 0x00, 1, 2, 3, 4, 5};
    u16Room = 2;
    EXPECT_EQ(EMSGSIZE, Request(0x28, 0x23));
    EXPECT_EQ(2, u16Length);
    EXPECT_EQ(2, au8Response[1]);
    EXPECT_EQ(0xFF, u8CompletionCode);
    EXPECT_TRUE(sBmc.Idle());

    sBmc.vResponse.assign(KCS_RESPONSE_BUFFER_SIZE + 5, 0x00);  // beyond the driver's own buffer
    sBmc.vResponse[0] = 0x2C;
    sBmc.vResponse[1] = 0x23;
    EXPECT_EQ(EMSGSIZE, Request(0x28, 0x23));
    EXPECT_TRUE(sBmc.Idle());
    EXPECT_EQ(0, sBmc.iAborts);
}

TEST(KcsSettings, SpacingOffsetsAndZeroTimeOuts)
{
    EXPECT_EQ(1u, KcsStatusRegisterOffset(ByteBoundary));
    EXPECT_EQ(2u, KcsStatusRegisterOffset(SixteenBitBoundary));
    EXPECT_EQ(4u, KcsStatusRegisterOffset(ThirtyTwoBitBoundary));
    EXPECT_EQ(0u, KcsStatusRegisterOffset(Reserved));
    sKcsTimeLimits sLimits;
    KcsDefaultTimeLimits(&sLimits);
    EXPECT_EQ(EINVAL, KcsSetRegisterTimeOut(&sLimits, 0));
    EXPECT_EQ(EINVAL, KcsSetTransferTimeOut(&sLimits, 0));
    EXPECT_EQ(0, KcsSetWaitBeforeRead(&sLimits, 0));
}

}  // namespace
