// Fault injection in the simulated BMC: the exchange a fault hits, on the routes that can
// show it, and the LAN login, checked after the faults that keep a request from the BMC.
// How Tavrin fares under the faults is in tests/e2e.
#include <gtest/gtest.h>

#include "SimTestHelpers.h"

namespace {

TEST(SimFaultTest, FaultsHitTheirExchangeOnTheRoutesThatCanShowThem)
{
    sBmcSimState sState;
    SimInitState(&sState);
    sState.sLan.u32CipherMask = 1u << 3;
    sState.vsFaults = {{eSimFaultCompletionCode, BMCSIM_ANY, IPMI_CMD_GET_SDR_REPOSITORY_INFO, 2, true, 0xC0, 0},
                       {eSimFaultLanNoStart, BMCSIM_ANY, BMCSIM_ANY, 1, false, 0, 0}};
    // The fault, and the completion code or -1 for no answer.
    auto Exchange = [&](eSimRoute eRoute, uint8_t u8Command, const char* pchPassword = "admin", int iCipher = 3) {
        sSimRequest sRequest = {SIM_NETFN_STORAGE, u8Command, nullptr, 0};
        sSimLanLogin sLogin = {"admin", pchPassword, iCipher};
        sSimExchangeResult sResult;
        SimExchange(&sState, eRoute, sRequest, eRoute == eSimRouteLan ? &sLogin : nullptr, &sResult);
        return std::make_pair(sResult.eFault, sResult.bAnswered ? sResult.sResponse.u8CompletionCode : -1);
    };
    const uint8_t kInfo = IPMI_CMD_GET_SDR_REPOSITORY_INFO, kReserve = IPMI_CMD_RESERVE_SDR_REPOSITORY;
    EXPECT_EQ(Exchange(eSimRouteDriver, kInfo), std::make_pair(eSimFaultNone, 0));  // not counted by LAN faults
    EXPECT_EQ(Exchange(eSimRouteKcs, kInfo), std::make_pair(eSimFaultCompletionCode, 0xC0));
    EXPECT_EQ(Exchange(eSimRouteIpmb, kInfo), std::make_pair(eSimFaultCompletionCode, 0xC0));  // and from then on
    EXPECT_EQ(Exchange(eSimRouteLan, kReserve, "wrong"), std::make_pair(eSimFaultLanNoStart, -1));
    EXPECT_EQ(Exchange(eSimRouteLan, kReserve, "wrong"), std::make_pair(eSimFaultAuth, -1));
    EXPECT_EQ(Exchange(eSimRouteLan, kReserve, "admin", 17), std::make_pair(eSimFaultCipher, -1));
    EXPECT_EQ(sState.vsLog.size(), 6u);
}

}  // namespace
