#include <unistd.h>

#include <cstdio>

#include "FakeSdrBmc.h"
#include "repository/SDRCompare.h"
#include "repository/SDRTransfer.h"

namespace {

using Transfer = RepositoryTest;

const std::vector<Bytes> kOld = {MakeRecord(0x0010, 0x01, 12, 0x10), MakeRecord(0x0011, 0x02, 30, 0x40)};
const std::vector<Bytes> kNew = {MakeRecord(0x0001, 0x12, 0), MakeRecord(0x0002, 0x01, 20, 0x90),
                                 MakeRecord(0x0003, 0x08, 40, 0xA0)};  // 1, 2 and 3 chunks
const std::string kAddRefused =
    "<ERROR> Error in executing IPMI command because of: Failure to add data to SDR repository.\ncc = C5 \n";
const std::string kFailed = "Failure to download SDR data!\n\n";
const FakeFailure kThirdAdd = {IPMI_CMD_PARTIAL_ADD_SDR, 3, 0xC5};
enum eContent { eOld, eNew, eFirstNew, eEmpty };

TEST_F(Transfer, DownloadOutcomes)
{
    const struct { const char* pchName; size_t uOld; bool bUsable; uint16_t u16Count; int iBias;
                   std::vector<FakeFailure> vFailures; uint8_t u8Agent; int iResult; eContent eAfter; std::string sErr; } asCases[] = {
        {"empty, good", 0, false, 3, 0, {}, 1, 1, eNew, ""},
        {"empty, failed", 0, false, 3, 0, {kThirdAdd}, 1, 0, eFirstNew, kAddRefused + kFailed},
        {"backup, good", 2, true, 3, 0, {}, 1, 1, eNew, ""},
        {"backup, good, agent fails", 2, true, 3, 0, {}, 2, 1, eNew,
         "<ERROR> Error in executing IPMI command: Failure to Run Initialization Agent Command.\ncc = 0 \n"},
        {"backup, failed, restored", 2, true, 3, 0, {kThirdAdd}, 1, 0, eOld, kAddRefused + kFailed},
        {"backup, no records, restored", 2, true, 0, 0, {}, 1, 0, eOld, kFailed},
        {"backup, failed, restore fails", 2, true, 3, 0, {kThirdAdd, {IPMI_CMD_PARTIAL_ADD_SDR, 4, 0xC5}}, 1, 0,
         eEmpty, kAddRefused + kFailed + kAddRefused + "Restore SDR Repository Failed. \n"},
        {"count disagrees, good", 2, false, 3, 1, {}, 1, 1, eNew, "SDR Record: needs 3h, Got 2h. \n"},
        {"get refused, failed", 2, false, 3, 0, {{IPMI_CMD_GET_SDR, 2, 0xC5}, kThirdAdd}, 1, 0, eFirstNew,
         "Executing IPMI command failed because of: Failure to get data from SDR repository.\ncc = C5 \n" +
             kAddRefused + kFailed},
        {"reserve refused, good", 2, false, 3, 0, {{IPMI_CMD_RESERVE_SDR_REPOSITORY, 1, 0xC5}}, 1, 1, eNew,
         "<ERROR> Error in executing IPMI command because of: Failure to reserve SDR repository.\ncc = C5 \n"},
    };
    for (const auto& sCase : asCases) {
        SCOPED_TRACE(sCase.pchName);
        m_sBmc = FakeSdrBmc();
        m_sBmc.vRecords.assign(kOld.begin(), kOld.begin() + sCase.uOld);
        m_sBmc.iCountBias = sCase.iBias;
        m_sBmc.vFailures = sCase.vFailures;
        m_sBmc.u8AgentFinal = sCase.u8Agent;
        SetList(G_psLocalSDREntryList, kNew);
        Capture();
        EXPECT_EQ(sCase.iResult, DoSDRAddToBMC(sCase.u16Count));
        EndCapture();
        // Only a failed restore leaves the back-up file, and names it.
        const std::vector<std::string> vKept = BackupFiles();
        ASSERT_EQ(sCase.bUsable && sCase.eAfter == eEmpty ? 1u : 0u, vKept.size());
        EXPECT_EQ(sCase.sErr + (vKept.empty() ? "" : "The SDR Repository back-up is kept in file " + vKept[0] +
                                                         "; download it with -d to restore. \n"),
                  m_sErr);
        for (const std::string& sName : vKept) std::remove(sName.c_str());
        const std::vector<Bytes> vAfter[] = {kOld, kNew, {kNew[0]}, {}};
        EXPECT_EQ(WithoutIDs(vAfter[sCase.eAfter]), WithoutIDs(m_sBmc.vRecords));
        const std::pair<bool, const char*> aPieces[] = {
            {sCase.uOld != 0, "Backup data from SDR Repository. \n"
                              "The back-up data will restore the SDR Repository if downloading is failed. \n"},
            {sCase.bUsable, "Backup data from SDR Repository Successful. \n\nThere are"},
            {sCase.uOld != 0 && !sCase.bUsable, "Warning: Backup data from SDR Repository Failed. \nWarning: The SDR "
                                                "Repository may have invalid SDR record if downloading is failed. \n\n"},
            {sCase.bUsable && sCase.iResult == 0, "Restore SDR Repository. \nThere are 2h SDR records to restore! \n"},
            {sCase.iResult == 1, "Download SDR data Successful. (3h SDR records downloaded!) \n"
                                 "Run Initialization Agent Command... "},
            {sCase.iResult == 1 && sCase.u8Agent == 1, "Command... Completed! \n"},
            {sCase.u8Agent != 1, "Command... Failed! \n"},
            {false, "Lack of space"},
        };
        for (const auto& sPiece : aPieces) EXPECT_EQ(sPiece.first, m_sOut.find(sPiece.second) != std::string::npos) << sPiece.second;
    }
}

TEST_F(Transfer, FailedDownloadRestoresTheBackup)
{
    m_sBmc.vRecords = kOld;
    m_sBmc.vFailures = {kThirdAdd};
    SetList(G_psLocalSDREntryList, kNew);
    Capture();
    EXPECT_EQ(0, DoSDRAddToBMC(3));
    EndCapture();
    EXPECT_EQ("Backup data from SDR Repository. \n"
              "The back-up data will restore the SDR Repository if downloading is failed. \n"
              "    Start to backup SDR record ID 0010h, type 1h ... \n"
              "    Start to backup SDR record ID 0011h, type 2h ... \n"
              "Backup data from SDR Repository Successful. \n\n"
              "There are 3h SDR records to download! \n"
              "    Start to download # 0h SDR record  ... \n"
              "    Start to download # 1h SDR record  ... \n"
              "Restore SDR Repository. \n"
              "There are 2h SDR records to restore! \n"
              "    Start to restore # 0h SDR record  ... \n"
              "    Start to restore # 1h SDR record  ... \n"
              "Restore SDR Repository Successful. \n", m_sOut);
    // A reservation for each record read, for each erase and for each record added.
    EXPECT_EQ(2u + 1 + 2 + 1 + 2, m_sBmc.Logged(IPMI_CMD_RESERVE_SDR_REPOSITORY).size());
}

TEST_F(Transfer, FreeSpaceIsOnlyAWarningAndOnlyBeforeABackup)
{
    for (size_t uOld : {0, 2}) {
        m_sBmc = FakeSdrBmc();
        m_sBmc.vRecords.assign(kOld.begin(), kOld.begin() + uOld);
        m_sBmc.u16FreeSpace = 74;  // the new records need 5 + 25 + 45
        SetList(G_psLocalSDREntryList, kNew);
        Capture();
        EXPECT_EQ(1, DoSDRAddToBMC(3));
        EndCapture();
        EXPECT_EQ(uOld != 0, m_sOut.rfind("Lack of space in the SDR Repository, required=75, free space=74. \n"
                                          "Backup data from SDR Repository. \n", 0) == 0);
    }
    for (uint16_t u16I = 0; u16I < 300; u16I++) G_psLocalSDREntryList[u16I].u8RecordLength = 0xF0;
    EXPECT_EQ(300 * 0xF0 - 0x10000, GetRequiredSDRSize(300));  // wraps at 16 bits
}

TEST_F(Transfer, UploadFollowsTheChainAndChecksTheCount)
{
    const struct { const char* pchName; std::vector<Bytes> vRecords; int iBias; uint16_t u16Reply; bool bRising;
                   uint16_t u16LastNext; int iResult; std::string sErr; } asCases[] = {
        {"whole", kOld, 0, 0, false, 0xFFFF, 1, ""},
        {"empty", {}, 0, 0, false, 0xFFFF, 0, "The SDR repository is empty.\n"},
        {"count too high", kOld, 1, 0, false, 0xFFFF, 0, "SDR Record: needs 3h, Got 2h. \n"},
        {"count too low", kOld, -1, 0, false, 0xFFFF, 0, "SDR Record: needs 1h, Got 2h. \n"},
        {"long record", {kOld[0], MakeRecord(0x12, 1, 97)}, 0, 0, false, 0xFFFF, 0, "<ERROR> SDR record ID 0012h is longer than 101 bytes. \n"},
        {"longest header", {MakeRecord(0x13, 1, 255)}, 0, 0, false, 0xFFFF, 0, "<ERROR> SDR record ID 0013h is longer than 101 bytes. \n"},
        {"short replies", {MakeRecord(0x14, 1, 20, 0x30)}, 0, 7, false, 0xFFFF, 1, ""},
        {"chain longer than the list", {MakeRecord(0, 1, 3)}, 0, 0, true, 0xFFFF, 0, "The SDR record count exceeds FFFFh records. \n"},
        // A chain that comes back to a record already read would be read round and round.
        {"chain back to the last", kOld, 0, 0, false, 0x0011, 0, "<ERROR> The chain of SDR records loops back to record ID 0011h. \n"},
        {"chain back to the first", kOld, 0, 0, false, 0x0010, 0, "<ERROR> The chain of SDR records loops back to record ID 0010h. \n"},
        {"chain back to the start", kOld, 0, 0, false, 0x0000, 0, "<ERROR> The chain of SDR records loops back to record ID 0000h. \n"},
    };
    for (const auto& sCase : asCases) {
        SCOPED_TRACE(sCase.pchName);
        m_sBmc = FakeSdrBmc();
        m_sBmc.vRecords = sCase.vRecords;
        m_sBmc.iCountBias = sCase.iBias;
        m_sBmc.u16GetSDRReplyLength = sCase.u16Reply;
        m_sBmc.bRisingChain = sCase.bRising;
        m_sBmc.u16LastNextID = sCase.u16LastNext;
        std::fill_n(G_psRepositorySDREntryList[0].au8RecordData, SDR_RECORD_DATA_SIZE, 0xEE);
        uint16_t u16Count = 0;
        Capture();
        EXPECT_EQ(sCase.iResult, DoSDRGetFromBMC(&u16Count));
        EndCapture();
        EXPECT_EQ(sCase.sErr, m_sErr);
        const std::vector<FakeExchange> vGets = m_sBmc.Logged(IPMI_CMD_GET_SDR);
        EXPECT_EQ(vGets.empty(), m_sBmc.Logged(IPMI_CMD_RESERVE_SDR_REPOSITORY).empty());
        if (sCase.iResult == 0) continue;
        ASSERT_EQ(sCase.vRecords.size(), u16Count);
        std::vector<Bytes> vExpected = sCase.vRecords;
        if (sCase.u16Reply != 0) std::fill(vExpected[0].begin() + 10, vExpected[0].begin() + 21, 0);  // not received
        for (size_t i = 0; i < u16Count; i++) EXPECT_EQ(vExpected[i], Holder(G_psRepositorySDREntryList, i));
        // Record ID 0 asks for the first record, then the chain's next ID.
        EXPECT_EQ(0, vGets.front().vRequest[2] | vGets.front().vRequest[3] << 8);
        EXPECT_EQ(0x0011 * (u16Count - 1), vGets.back().vRequest[2] | vGets.back().vRequest[3] << 8);
    }
}

TEST_F(Transfer, ABackUpFileThatCannotBeWrittenIsNotMentioned)
{
    TempDir sGone;  // a working directory that is gone: no file can be created in it
    ASSERT_EQ(0, chdir(sGone.Path().c_str()));
    ASSERT_EQ(0, rmdir(sGone.Path().c_str()));
    m_sBmc.vRecords = kOld;
    m_sBmc.vFailures = {kThirdAdd, {IPMI_CMD_PARTIAL_ADD_SDR, 4, 0xC5}};
    SetList(G_psLocalSDREntryList, kNew);
    Capture();
    EXPECT_EQ(0, DoSDRAddToBMC(3));
    EndCapture();
    EXPECT_EQ(kAddRefused + kFailed + kAddRefused + "Restore SDR Repository Failed. \n", m_sErr);
}

Bytes Changed(Bytes vRecord, size_t uByte)
{
    vRecord[uByte] ^= 0x5A;
    return vRecord;
}

TEST_F(Transfer, ComparePairsRecordsByPositionIgnoringIDs)
{
    const Bytes vA = MakeRecord(0x0001, 0x01, 20), vB = MakeRecord(0x0002, 0x02, 8, 0x40);
    const Bytes vA2 = MakeRecord(0x0101, 0x01, 20), vB2 = MakeRecord(0x0102, 0x02, 8, 0x40);
    const Bytes vEmpty = MakeRecord(SDR_EMPTY_RECORD_ID, 0x01, 3);
    const struct { const char* pchName; std::vector<Bytes> vFile, vBMC; int iResult; const char* pchErr; } asCases[] = {
        {"other IDs", {vA, vB}, {vA2, vB2}, 1, ""},
        {"other order", {vA, vB}, {vB2, vA2}, 0, "<ERROR> Different record type in record 0!\n"},
        {"other count", {vA, vB}, {vA2, vB2, vB2}, 0, "Record number different: in file is 2, in BMC is 3\n"},
        {"other length", {vA, vB}, {vA2, MakeRecord(0x0102, 0x02, 9, 0x40)}, 0, "Different record length in record 1!\n"},
        {"other data", {vA, vB}, {vA2, Changed(vB2, 7)}, 0, "<ERROR> Different record data in record 1, 7  byte!\n"},
        {"other version", {vA, vB}, {Changed(vA2, 2), vB2}, 0, "<ERROR> Different record data in record 0, 2  byte!\n"},
        {"empty holder skipped", {vA, vEmpty, vB}, {vA2, vB2, vA2}, 1, ""},
        {"empty holder shifts pairs", {vEmpty, vA, vA}, {vA2, vB2, vA2}, 0, "<ERROR> Different record type in record 2!\n"},
    };
    for (const auto& sCase : asCases) {
        SCOPED_TRACE(sCase.pchName);
        SetList(G_psLocalSDREntryList, sCase.vFile);
        SetList(G_psRepositorySDREntryList, sCase.vBMC);
        Capture();
        EXPECT_EQ(sCase.iResult, SDRCompare(static_cast<uint16_t>(sCase.vFile.size()), static_cast<uint16_t>(sCase.vBMC.size())));
        EndCapture();
        EXPECT_EQ(sCase.pchErr, m_sErr);
    }
}

}  // namespace
