#include <algorithm>
#include <functional>

#include "FakeSdrBmc.h"
#include "repository/SDRRepositoryCommands.h"
#include "repository/SDRTransfer.h"

namespace {

using Commands = RepositoryTest;

TEST(SDRRepositoryInfo, DecodesCountsAndSupportBits)
{
    uint8_t au8Response[IPMI_RESPONSE_DATA_SIZE] = {0x51, 0x34, 0x12, 0x78, 0x56, 0, 0, 0, 0, 0, 0, 0, 0, 0xE5};
    SDRRepositoryInfo s = {};
    SetRepositoryInfo(au8Response, &s);
    EXPECT_EQ((std::vector<int>{0x51, 0x1234, 0x5678, 1, 3, 0, 1, 0, 1}),
              (std::vector<int>{s.u8SDRVersion, s.u16RecordCount, s.u16FreeSpace, s.bOverflow, s.u8UpdateSupport,
                                s.bDeleteSupported, s.bPartialAddSupported, s.bReserveSupported, s.bAllocationInfoSupported}));
}

TEST_F(Commands, OperationSupportPerMode)
{
    const char* pchOverflow = "SDR could not be written due to lack of space in SDR Repository. \n";
    const char* pchNoAdd = "Partial Add SDR command is not supported. \n";
    const char* pchNoReserve = "Reserve SDR command is not supported. \n";
    const struct { uint8_t u8Mode, u8Support; eState eExpected; const char *pchOut, *pchErr; } asCases[] = {
        {0, 0x86, eStateInfoOK, pchOverflow, ""},             {0, 0x02, eStateNotSupported, "", pchNoAdd},
        {0, 0x80, eStateNotSupported, pchOverflow, pchNoAdd}, {0, 0x04, eStateNotSupported, "", pchNoReserve},
        {1, 0x82, eStateInfoOK, "", ""},                      {1, 0x04, eStateNotSupported, "", pchNoReserve},
    };
    for (const auto& sCase : asCases) {
        SCOPED_TRACE(testing::Message() << "mode " << int{sCase.u8Mode} << " support " << int{sCase.u8Support});
        m_sBmc.u8Support = sCase.u8Support;
        SDRRepositoryInfo sInfo = {};
        Capture();
        EXPECT_EQ(sCase.eExpected, GetSDRRepositoryInfoCommand(&sInfo, sCase.u8Mode));
        EndCapture();
        EXPECT_EQ(sCase.pchOut, m_sOut);
        EXPECT_EQ(sCase.pchErr, m_sErr);
    }
}

TEST_F(Commands, RefusedExchangeIsReportedWithItsCompletionCode)
{
    SDRRepositoryInfo sInfo = {};
    uint16_t u16ID = 0;
    const std::string sCause = "<ERROR> Error in executing IPMI command because of: Failure to ";
    const struct { uint8_t u8Command; std::function<eState(SDREntry*)> fnCall; eState eExpected; std::string sErr; } asCases[] = {
        {IPMI_CMD_GET_SDR_REPOSITORY_INFO, [&](SDREntry*) { return GetSDRRepositoryInfoCommand(&sInfo, 1); },
         eStateInfoFailed, sCause + "check SDR repository info.\n\ncc = C3 \n"},
        {IPMI_CMD_RESERVE_SDR_REPOSITORY, [&](SDREntry*) { return ReserveSDRCommand(&u16ID); }, eStateFailed,
         sCause + "reserve SDR repository.\ncc = C3 \n"},
        {IPMI_CMD_GET_SDR, [&](SDREntry* psE) { return GetSDRCommand(1, 0, &u16ID, psE, "upload"); }, eStateFailed,
         sCause + "get data from SDR repository.\ncc = C3 \n"},
        {IPMI_CMD_GET_SDR, [&](SDREntry* psE) { return GetSDRCommand(1, 0, &u16ID, psE, "backup"); }, eStateFailed,
         "Executing IPMI command failed because of: Failure to get data from SDR repository.\ncc = C3 \n"},
        {IPMI_CMD_PARTIAL_ADD_SDR, [&](SDREntry* psE) { return PartialAddCommand(1, psE); }, eStateFailed,
         sCause + "add data to SDR repository.\ncc = C3 \n"},
        {IPMI_CMD_RUN_INITIALIZATION_AGENT, [&](SDREntry*) { return RunInitializationAgentCommand(); }, eStateFailed,
         "<ERROR> Error in executing IPMI command: Failure to Run Initialization Agent Command.\ncc = C3 \n"},
    };
    for (const auto& sCase : asCases) {
        SDREntry sEntry = {0x1234, 1, 5, 0, {}};
        m_sBmc.vFailures = {{sCase.u8Command, m_sBmc.aiExchanges[sCase.u8Command] + 1, 0xC3}};
        Capture();
        EXPECT_EQ(sCase.eExpected, sCase.fnCall(&sEntry));
        EndCapture();
        EXPECT_EQ(sCase.sErr, m_sErr);
        EXPECT_EQ("", m_sOut);
        EXPECT_EQ(0x1234, sEntry.u16RecordID);  // a refused chunk keeps the ID answered before
    }
}

TEST_F(Commands, RecordsCrossInChunksOfSixteen)
{
    const struct { uint8_t u8Body; std::vector<Bytes> vAdds; Bytes vReads; } asCases[] = {
        // Partial Adds as offset, in-progress byte, request length; Get SDRs as bytes asked for
        {0, {{0, 1, 11}}, {5}},
        {11, {{0, 1, 22}}, {5, 11}},
        {27, {{0, 0, 22}, {16, 1, 22}}, {5, 16, 11}},
        {28, {{0, 0, 22}, {16, 0, 22}, {32, 1, 7}}, {5, 16, 12}},
        {96, {{0, 0, 22}, {16, 0, 22}, {32, 0, 22}, {48, 0, 22}, {64, 0, 22}, {80, 0, 22}, {96, 1, 11}},
         {5, 16, 16, 16, 16, 16, 16}},
    };
    for (const auto& sCase : asCases) {
        SCOPED_TRACE(testing::Message() << "body " << int{sCase.u8Body});
        m_sBmc = FakeSdrBmc();
        SetList(G_psLocalSDREntryList, {MakeRecord(0x0042, 0x01, sCase.u8Body, 0x80)});
        uint16_t u16Count = 1;
        Capture();
        EXPECT_EQ(eStatePartialAddLast, DownloadSDRHandler(1, G_psLocalSDREntryList, "download"));
        EXPECT_EQ(eStateGetSDRLast, UploadSDRHandler(&u16Count, G_psRepositorySDREntryList, "upload"));
        EndCapture();
        std::vector<Bytes> vAdds;
        for (const FakeExchange& sAdd : m_sBmc.Logged(IPMI_CMD_PARTIAL_ADD_SDR)) {
            vAdds.push_back({sAdd.vRequest[4], sAdd.vRequest[5], static_cast<uint8_t>(sAdd.vRequest.size())});
            // The first chunk asks for a new record, the later ones carry the BMC's ID.
            EXPECT_EQ(sAdd.vRequest[4] == 0 ? 0 : 0x0101, sAdd.vRequest[2] | sAdd.vRequest[3] << 8);
        }
        EXPECT_EQ(sCase.vAdds, vAdds);
        Bytes vReads;
        for (const FakeExchange& sGet : m_sBmc.Logged(IPMI_CMD_GET_SDR)) vReads.push_back(sGet.vRequest[5]);
        EXPECT_EQ(sCase.vReads, vReads);
        EXPECT_EQ(std::vector<Bytes>{MakeRecord(0x0101, 0x01, sCase.u8Body, 0x80)}, m_sBmc.vRecords);
        EXPECT_EQ(m_sBmc.vRecords[0], Holder(G_psRepositorySDREntryList, 0));
        EXPECT_EQ(0x0101, G_psLocalSDREntryList[0].u16RecordID);
        EXPECT_EQ(0x0101, G_psRepositorySDREntryList[0].u16RecordID);
    }
}

TEST_F(Commands, ErasePollsThreeTimesAtMost)
{
    const struct { std::deque<uint8_t> dProgress; int iRefused; eState eExpected; size_t uExchanges; } asCases[] = {
        {{0x01}, 0, eStateEraseCompleted, 1},       {{0x09}, 0, eStateEraseCompleted, 1},
        {{0xF1}, 0, eStateEraseCompleted, 1},       {{0x00, 0x02, 0x01}, 0, eStateEraseCompleted, 3},
        {{0x00, 0x01}, 2, eStateEraseCompleted, 3},  // a refused poll counts as one
        {{0x00, 0x00, 0x02, 0x00, 0x01}, 0, eStateFailed, 4}, {{}, 1, eStateFailed, 1},
    };
    for (const auto& sCase : asCases) {
        m_sBmc = FakeSdrBmc();
        m_sBmc.dEraseProgress = sCase.dProgress;
        m_sBmc.vFailures = {{IPMI_CMD_CLEAR_SDR_REPOSITORY, sCase.iRefused, 0xC0}};
        Capture();
        EXPECT_EQ(sCase.eExpected, ToClearSDR());
        EndCapture();
        const std::vector<FakeExchange> vClears = m_sBmc.Logged(IPMI_CMD_CLEAR_SDR_REPOSITORY);
        ASSERT_EQ(sCase.uExchanges, vClears.size());
        for (size_t i = 0; i < vClears.size(); i++) {
            EXPECT_EQ((Bytes{1, 0, 'C', 'L', 'R', i == 0 ? uint8_t{0xAA} : uint8_t{0x00}}), vClears[i].vRequest);
        }
        EXPECT_EQ(sCase.eExpected == eStateFailed
                      ? "\n<ERROR> Error in executing IPMI command because of: Failure to clear SDR.\n" : "",
                  m_sErr);
    }
}

TEST_F(Commands, InitializationAgentPollsUntilItsStatusChanges)
{
    const struct { uint32_t u32Busy; uint8_t u8Final; eState eExpected; const char* pchOut; } asCases[] = {
        {0, 1, eStateInitAgentCompleted, ""}, {0, 2, eStateFailed, ""}, {4, 2, eStateFailed, ""},
        {2999, 1, eStateInitAgentCompleted, ""}, {3000, 1, eStateInitAgentCompleted, "(please wait)... "},
        // A BMC that says "in progress" for ever: the agent fails after 30,000 polls.
        {30000, 1, eStateInitAgentCompleted, "(please wait)... "}, {0xFFFFFFFF, 1, eStateFailed, "(please wait)... "},
    };
    for (const auto& sCase : asCases) {
        m_sBmc = FakeSdrBmc();
        m_sBmc.u32AgentBusy = sCase.u32Busy;
        m_sBmc.u8AgentFinal = sCase.u8Final;
        Capture();
        EXPECT_EQ(sCase.eExpected, RunInitializationAgentCommand());
        EndCapture();
        EXPECT_EQ(sCase.pchOut, m_sOut);
        const std::vector<FakeExchange> vRuns = m_sBmc.Logged(IPMI_CMD_RUN_INITIALIZATION_AGENT);
        ASSERT_EQ(std::min<uint32_t>(sCase.u32Busy, SDR_INIT_AGENT_POLL_LIMIT) + 1, vRuns.size());
        EXPECT_EQ(Bytes{1}, vRuns.front().vRequest);
        EXPECT_EQ(Bytes{sCase.u32Busy ? uint8_t{0} : uint8_t{1}}, vRuns.back().vRequest);
    }
}

}  // namespace
