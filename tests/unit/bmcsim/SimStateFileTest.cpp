// The simulator's state file: a full round trip, refusal of damaged files, atomic saving.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "SimStateFile.h"
#include "SimTestHelpers.h"
#include "TestSupport.h"

namespace {

// A state with something in every part of the file.
void FillState(sBmcSimState* psState)
{
    SimInitState(psState);
    psState->bFixedClock = true;
    psState->u32Clock = 1700000000;
    strcpy(psState->sLan.achUser, "operator one");  // blanks survive
    psState->sLan.u32CipherMask = 0x20008;
    psState->sRoute = sSimRouteInfo{true, 0xCA2, 2, {1, 2, 3}};
    psState->sRepository.u32Capacity = 4000;
    psState->sRepository.u8SupportBits = 0x22;
    psState->sRepository.i32CountOffset = -3;
    psState->sRepository.u16ErasePolls = 4;
    psState->sInitAgent.vu8Sequence = {0, 0, 2};
    AddRecord(psState, MakeRecord(0x01, 40));
    AddRecord(psState, MakeRecord(0x12, 5));
    uint16_t u16Res = Reserve(psState);
    std::vector<uint8_t> vu8Record = MakeRecord(0x02, 30);
    Storage(psState, SIM_CMD_PARTIAL_ADD_SDR, AddPiece(u16Res, 0, vu8Record, 0, 16, 0));
    SimPutFru(psState, 0, std::vector<uint8_t>(300, 0x5A));
    SimPutFru(psState, 7, {});
    psState->vsFaults.push_back(sSimFault{eSimFaultLanFlood, BMCSIM_ANY, 0x23, 4, true, 0, 1});
    psState->vsFaults.push_back(sSimFault{eSimFaultCompletionCode, 0x0A, 0x25, 2, false, 0xC4, 0});
}

TEST(SimStateFileTest, TextRoundTripKeepsEverything)
{
    sBmcSimState sState;
    FillState(&sState);
    ASSERT_TRUE(sState.sRepository.sPartial.bActive);
    std::string sText = SimStateToText(sState);
    sBmcSimState sLoaded;
    sSimError sError;
    ASSERT_EQ(SimStateFromText(sText, &sLoaded, &sError), 1) << sError.achText;
    EXPECT_EQ(SimStateToText(sLoaded), sText);
    EXPECT_STREQ(sLoaded.sLan.achUser, "operator one");
    EXPECT_EQ(sLoaded.sRepository.vsRecords.size(), 2u);
    EXPECT_EQ(sLoaded.vsLog.size(), sState.vsLog.size());
    // The loaded BMC carries on where the saved one stopped: the partial add completes.
    std::vector<uint8_t> vu8Record = MakeRecord(0x02, 30);
    EXPECT_EQ(Storage(&sLoaded, SIM_CMD_PARTIAL_ADD_SDR,
                      AddPiece(sLoaded.sRepository.u16ReservationID, 3, vu8Record, 16, 14, 1)).u8Code, 0);
}

TEST(SimStateFileTest, DamagedTextIsRefused)
{
    sBmcSimState sState;
    FillState(&sState);
    std::string sGood = SimStateToText(sState);
    struct {
        const char* pchCase;
        std::string sText;
    } asCases[] = {
        {"empty", ""},
        {"other version", "tavrin-bmcsim-state 2\nend\n"},
        {"no end line", sGood.substr(0, sGood.size() - 4)},
        {"cut in a line", sGood.substr(0, sGood.size() / 2)},
        {"text after the end", sGood + "sdr 9 0900510103aabbcc\n"},
        {"unknown item", "tavrin-bmcsim-state 1\nsensors 4\nend\n"},
        {"record length not as in its header", "tavrin-bmcsim-state 1\nsdr 9 0900510104aabbcc\nend\n"},
        {"odd hex", "tavrin-bmcsim-state 1\nfru 1 abc\nend\n"},
        {"record ID FFFFh", "tavrin-bmcsim-state 1\nsdr 65535 0900510103aabbcc\nend\n"},
        {"number out of range", "tavrin-bmcsim-state 1\nclock 2 0\nend\n"},
        {"field missing", "tavrin-bmcsim-state 1\nclock 1\nend\n"},
        {"unknown fault kind", "tavrin-bmcsim-state 1\nfault crash 10 35 1 0 0 0\nend\n"},
    };
    for (const auto& sCase : asCases) {
        sBmcSimState sLoaded;
        sSimError sError;
        EXPECT_EQ(SimStateFromText(sCase.sText, &sLoaded, &sError), 0) << sCase.pchCase;
    }
}

TEST(SimStateFileTest, SaveReplacesTheFileAndLeavesNoTemporary)
{
    TempDir sDir;
    std::string sPath = sDir.File("bmc.state");
    sBmcSimState sState;
    FillState(&sState);
    sSimError sError;
    ASSERT_EQ(SimSaveState(sPath.c_str(), sState, &sError), 1) << sError.achText;
    sState.sRepository.vsRecords.clear();
    ASSERT_EQ(SimSaveState(sPath.c_str(), sState, &sError), 1) << sError.achText;
    sBmcSimState sLoaded;
    ASSERT_EQ(SimLoadState(sPath.c_str(), &sLoaded, &sError), 1) << sError.achText;
    EXPECT_TRUE(sLoaded.sRepository.vsRecords.empty());
    size_t uFiles = 0;
    for (const auto& sEntry : std::filesystem::directory_iterator(sDir.Path())) {
        (void)sEntry;
        uFiles++;
    }
    EXPECT_EQ(uFiles, 1u);

    EXPECT_EQ(SimLoadState(sDir.File("missing").c_str(), &sLoaded, &sError), 0);
    EXPECT_NE(std::string(sError.achText).find("missing"), std::string::npos);
    EXPECT_EQ(SimSaveState(sDir.File("no/such/dir").c_str(), sState, &sError), 0);
}

}  // namespace
