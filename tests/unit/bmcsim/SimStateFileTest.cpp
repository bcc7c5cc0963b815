// The simulator's state file: a round trip through a saved file, and refusal of damaged
// text. Every run of the simulator's front ends in tests/e2e loads and saves it as well.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "SimStateFile.h"
#include "SimTestHelpers.h"
#include "TestSupport.h"

namespace {

// A state with something in every kind of line, a partial add among them.
void FillState(sBmcSimState* psState)
{
    SimInitState(psState);
    strcpy(psState->sLan.achUser, "operator one");  // blanks survive
    psState->sRoute = sSimRouteInfo{true, 0xCA2, 2, {1, 2, 3}};
    psState->sRepository.i32CountOffset = -3;
    psState->sInitAgent.vu8Sequence = {0, 0, 2};
    Append(psState, 7, MakeRecord(0x12, 5));
    Storage(psState, IPMI_CMD_RESERVE_SDR_REPOSITORY);
    Storage(psState, IPMI_CMD_PARTIAL_ADD_SDR, Piece(1, 0, MakeRecord(0x02, 30), 0, 16, 0));
    SimPutFru(psState, 0, TBytes(300, 0x5A));
    psState->vsFaults.push_back(sSimFault{eSimFaultLanFlood, BMCSIM_ANY, 0x23, 4, true, 0, 1});
}

TEST(SimStateFileTest, ASavedStateLoadsAsItWasAndDamagedTextIsRefused)
{
    TempDir sDir;
    std::string sPath = sDir.File("bmc.state");
    sBmcSimState sState, sLoaded;
    sSimError sError;
    SimInitState(&sState);
    ASSERT_EQ(SimSaveState(sPath.c_str(), sState, &sError), 1) << sError.achText;
    FillState(&sState);
    ASSERT_EQ(SimSaveState(sPath.c_str(), sState, &sError), 1) << sError.achText;  // replaces the first
    ASSERT_EQ(SimLoadState(sPath.c_str(), &sLoaded, &sError), 1) << sError.achText;
    EXPECT_EQ(SimStateToText(sLoaded), SimStateToText(sState));
    EXPECT_STREQ(sLoaded.sLan.achUser, "operator one");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(sDir.Path()), {}), 1);  // no temporary left
    // The partial add goes on where the saved BMC stopped.
    EXPECT_EQ(Storage(&sLoaded, IPMI_CMD_PARTIAL_ADD_SDR,
                      Piece(1, 8, MakeRecord(0x02, 30), 16, 14, 1)).u8Code, 0);
    // Damaged text is refused: cut short, another version, a record whose length is not as
    // in its header, odd hex.
    std::string sText = SimStateToText(sState);
    for (const std::string& sDamaged : {sText.substr(0, sText.size() / 2), std::string("tavrin-bmcsim-state 2\nend\n"),
                                        std::string("tavrin-bmcsim-state 1\nsdr 9 0900510104aabbcc\nend\n"),
                                        std::string("tavrin-bmcsim-state 1\nfru 1 abc\nend\n")}) {
        EXPECT_EQ(SimStateFromText(sDamaged, &sLoaded, &sError), 0) << sDamaged;
    }
}

}  // namespace
