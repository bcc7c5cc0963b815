// Fault injection and the exchange log of the simulated BMC.
#include <gtest/gtest.h>

#include "SimFaults.h"
#include "SimLog.h"
#include "SimTestHelpers.h"

namespace {

class SimFaultTest : public ::testing::Test {
protected:
    void SetUp() override { SimInitState(&m_sState); }

    void AddFault(eSimFaultKind eKind, uint16_t u16NetFn, uint16_t u16Command, uint32_t u32Nth, bool bAlways,
                  uint32_t u32Value = 0)
    {
        m_sState.vsFaults.push_back(sSimFault{eKind, u16NetFn, u16Command, u32Nth, bAlways, u32Value, 0});
    }

    sSimExchangeResult Exchange(eSimRoute eRoute, uint8_t u8Command, const sSimLanLogin* psLogin = nullptr)
    {
        sSimRequest sRequest = {SIM_NETFN_STORAGE, u8Command, nullptr, 0};
        sSimExchangeResult sResult;
        SimExchange(&m_sState, eRoute, sRequest, psLogin, &sResult);
        return sResult;
    }

    sBmcSimState m_sState;
};

TEST_F(SimFaultTest, CompletionCodeHitsTheNthMatchingExchangeOnceOrFromThenOn)
{
    AddFault(eSimFaultCompletionCode, SIM_NETFN_STORAGE, SIM_CMD_RESERVE_SDR_REPOSITORY, 2, false, 0xC0);
    AddFault(eSimFaultCompletionCode, BMCSIM_ANY, SIM_CMD_GET_SDR_REPOSITORY_INFO, 3, true, 0xD5);
    std::vector<uint8_t> vu8Codes;
    for (int i = 0; i < 4; i++) {
        vu8Codes.push_back(Exchange(eSimRouteDriver, SIM_CMD_RESERVE_SDR_REPOSITORY).sResponse.u8CompletionCode);
        vu8Codes.push_back(Exchange(eSimRouteKcs, SIM_CMD_GET_SDR_REPOSITORY_INFO).sResponse.u8CompletionCode);
    }
    EXPECT_EQ(vu8Codes, (std::vector<uint8_t>{0, 0, 0xC0, 0, 0, 0xD5, 0, 0xD5}));
    // The refused reservation was not made: three were, the last is ID 3.
    EXPECT_EQ(m_sState.sRepository.u16ReservationID, 3);
    EXPECT_EQ(m_sState.vsFaults[0].u32Seen, 4u);
}

TEST_F(SimFaultTest, NoDataExecutesAndErrnoDoesNot)
{
    AddFault(eSimFaultNoData, SIM_NETFN_STORAGE, SIM_CMD_RESERVE_SDR_REPOSITORY, 1, false);
    AddFault(eSimFaultErrno, SIM_NETFN_STORAGE, SIM_CMD_RESERVE_SDR_REPOSITORY, 2, false, 110);
    sSimExchangeResult sFirst = Exchange(eSimRouteDriver, SIM_CMD_RESERVE_SDR_REPOSITORY);
    EXPECT_TRUE(sFirst.bAnswered);
    EXPECT_EQ(sFirst.sResponse.u8CompletionCode, 0);
    EXPECT_EQ(sFirst.sResponse.u16Length, 0);
    EXPECT_EQ(m_sState.sRepository.u16ReservationID, 1);
    sSimExchangeResult sSecond = Exchange(eSimRouteDriver, SIM_CMD_RESERVE_SDR_REPOSITORY);
    EXPECT_FALSE(sSecond.bAnswered);
    EXPECT_EQ(sSecond.eFault, eSimFaultErrno);
    EXPECT_EQ(sSecond.u32Errno, 110u);
    EXPECT_EQ(m_sState.sRepository.u16ReservationID, 1);
}

TEST_F(SimFaultTest, LanFaultsCountLanExchangesOnly)
{
    AddFault(eSimFaultLanLostReply, BMCSIM_ANY, BMCSIM_ANY, 2, false);
    EXPECT_EQ(Exchange(eSimRouteDriver, SIM_CMD_RESERVE_SDR_REPOSITORY).eFault, eSimFaultNone);
    sSimLanLogin sLogin = {"admin", "admin", 3};
    EXPECT_EQ(Exchange(eSimRouteLan, SIM_CMD_RESERVE_SDR_REPOSITORY, &sLogin).eFault, eSimFaultNone);
    sSimExchangeResult sLost = Exchange(eSimRouteLan, SIM_CMD_RESERVE_SDR_REPOSITORY, &sLogin);
    EXPECT_EQ(sLost.eFault, eSimFaultLanLostReply);
    EXPECT_TRUE(sLost.bAnswered);  // the BMC did it; only the reply is lost
    EXPECT_EQ(m_sState.sRepository.u16ReservationID, 3);
}

TEST_F(SimFaultTest, LanLoginIsCheckedAfterFaultsThatStopTheRequest)
{
    m_sState.sLan.u32CipherMask = 1u << 3;
    AddFault(eSimFaultLanNoStart, BMCSIM_ANY, BMCSIM_ANY, 1, false);
    sSimLanLogin sWrong = {"admin", "wrong", 3};
    EXPECT_EQ(Exchange(eSimRouteLan, SIM_CMD_RESERVE_SDR_REPOSITORY, &sWrong).eFault, eSimFaultLanNoStart);
    EXPECT_EQ(Exchange(eSimRouteLan, SIM_CMD_RESERVE_SDR_REPOSITORY, &sWrong).eFault, eSimFaultAuth);
    sSimLanLogin sCipher = {"admin", "admin", 17};
    EXPECT_EQ(Exchange(eSimRouteLan, SIM_CMD_RESERVE_SDR_REPOSITORY, &sCipher).eFault, eSimFaultCipher);
    EXPECT_EQ(m_sState.sRepository.u16ReservationID, 0);
}

TEST_F(SimFaultTest, LogKeepsEveryExchangeInOneLine)
{
    AddFault(eSimFaultErrno, SIM_NETFN_STORAGE, SIM_CMD_GET_SDR, 1, false, 5);
    uint8_t au8Get[] = {0x01, 0x00, 0x00, 0x00, 0x00, 0x05};
    sSimRequest sGet = {SIM_NETFN_STORAGE, SIM_CMD_GET_SDR, au8Get, sizeof(au8Get)};
    sSimExchangeResult sResult;
    Exchange(eSimRouteKcs, SIM_CMD_RESERVE_SDR_REPOSITORY);
    SimExchange(&m_sState, eSimRouteLan, sGet, nullptr, &sResult);
    SimExchange(&m_sState, eSimRouteIpmb, sGet, nullptr, &sResult);
    ASSERT_EQ(m_sState.vsLog.size(), 3u);
    EXPECT_EQ(SimFormatLogLine(m_sState.vsLog[0]),
              "seq=1 route=kcs netfn=0a cmd=22 reqlen=0 req=- cc=00 rsplen=2 rsp=0100 fault=none");
    EXPECT_EQ(SimFormatLogLine(m_sState.vsLog[1]),
              "seq=2 route=lan netfn=0a cmd=23 reqlen=6 req=010000000005 cc=-- rsplen=0 rsp=- fault=errno");
    EXPECT_EQ(SimFormatLogLine(m_sState.vsLog[2]),
              "seq=3 route=ipmb netfn=0a cmd=23 reqlen=6 req=010000000005 cc=cb rsplen=0 rsp=- fault=none");
}

TEST_F(SimFaultTest, LogDropsTheOldestBeyondItsLimit)
{
    for (int i = 0; i < BMCSIM_LOG_LIMIT + 2; i++) {
        Exchange(eSimRouteDirect, SIM_CMD_GET_SDR_REPOSITORY_INFO);
    }
    ASSERT_EQ(m_sState.vsLog.size(), static_cast<size_t>(BMCSIM_LOG_LIMIT));
    EXPECT_EQ(m_sState.vsLog.front().u32Sequence, 3u);
}

}  // namespace
