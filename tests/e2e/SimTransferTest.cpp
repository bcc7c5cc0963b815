// -d and -v of binary SDR files against the simulated BMC, on all three routes: what
// the user sees, what crosses the wire, and what the repository holds afterwards.
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <tuple>

#include "BinarySDRWriter.h"
#include "SimSession.h"

namespace {

// Two records that no example file holds: the repository's content before a download.
const char* const kOldRecords[] = {"400051c005570100aabb", "410051c006570100ccddee"};

// Record lines without the record IDs, which the BMC assigns on every download.
std::string Contents(const std::string& sRecords)
{
    std::istringstream sLines(sRecords);
    std::string sResult;
    for (std::string sLine; std::getline(sLines, sLine);) {
        size_t uType = sLine.find("type=");
        size_t uData = sLine.find("data=");
        sResult += sLine.substr(uType, uData - uType) + sLine.substr(uData + 5 + 4) + "\n";
    }
    return sResult;
}

std::string ContentsOf(const std::vector<TRecord>& vRecords)
{
    std::string sResult;
    for (const TRecord& v : vRecords) {
        char achHead[32];
        snprintf(achHead, sizeof(achHead), "type=%02x len=%zu ", v[3], v.size());
        sResult += achHead;
        for (size_t i = 2; i < v.size(); i++) {
            snprintf(achHead, sizeof(achHead), "%02x", v[i]);
            sResult += achHead;
        }
        sResult += "\n";
    }
    return sResult;
}

bool Has(const std::string& sText, const std::string& sPart)
{
    return sText.find(sPart) != std::string::npos;
}

class RoundTripTest : public ::testing::TestWithParam<std::tuple<Route, int, bool>> {};

TEST_P(RoundTripTest, DownloadsThenVerifies)
{
    const Route eRoute = std::get<0>(GetParam());
    const std::string sFile = "sample-v" + std::to_string(std::get<1>(GetParam())) + ".sdr";
    const bool bFull = std::get<2>(GetParam());
    SimSession sBmc;
    if (bFull) {
        for (const char* pch : kOldRecords) ASSERT_EQ(0, sBmc.Sim({"sdr-add", pch}).iStatus);
    }
    RunResult sDownload = sBmc.Tavrin(eRoute, {"-d", sFile});
    ASSERT_EQ(0, sDownload.iStatus) << sDownload.sErr;
    EXPECT_EQ("", sDownload.sErr);
    EXPECT_EQ(bFull, Has(sDownload.sOut, "Backup data from SDR Repository Successful. \n\n"));
    EXPECT_TRUE(Has(sDownload.sOut, "There are 6h SDR records to download! \n"));
    EXPECT_TRUE(Has(sDownload.sOut, "Download SDR data Successful. (6h SDR records downloaded!) \n"
                                    "Run Initialization Agent Command... Completed! \n"));
    EXPECT_EQ(ContentsOf(ExampleRecordSet()), Contents(sBmc.Records()));

    RunResult sVerify = sBmc.Tavrin(eRoute, {"-v", sFile});
    EXPECT_EQ(0, sVerify.iStatus) << sVerify.sErr;
    EXPECT_TRUE(Has(sVerify.sOut, "Verify SDR file " + sFile + " with SDR repository successful! \n\n"));
}

INSTANTIATE_TEST_SUITE_P(RoutesVersionsAndRepositories, RoundTripTest,
                         ::testing::Combine(::testing::Values(Route::Driver, Route::KcsIO, Route::Lan),
                                            ::testing::Values(0, 1, 2), ::testing::Bool()),
                         [](const auto& i) {
                             return std::string(RouteName(std::get<0>(i.param))) + "V" +
                                    std::to_string(std::get<1>(i.param)) + (std::get<2>(i.param) ? "Full" : "Empty");
                         });

TEST(DownloadExchanges, UseOneReservationPerRecordAndChunksOfSixteenBytes)
{
    SimSession sBmc;
    ASSERT_EQ(0, sBmc.Tavrin(Route::Driver, {"-d", "sample-v1.sdr"}).iStatus);
    std::vector<SimExchange> vLog = sBmc.Log();
    std::vector<TRecord> vRecords = ExampleRecordSet();

    // Info, then the erase under a reservation of its own, then the records, then the agent.
    ASSERT_GE(vLog.size(), 4u);
    EXPECT_EQ(0x20, vLog[0].iCommand);
    EXPECT_EQ(0x22, vLog[1].iCommand);
    EXPECT_EQ(0x27, vLog[2].iCommand);
    EXPECT_EQ(0x2C, vLog.back().iCommand);

    size_t uRecord = 0, uOffset = 0;
    uint16_t u16Reservation = 0, u16RecordID = 0;
    for (const SimExchange& s : vLog) {
        if (s.iCommand == 0x22 && uOffset == 0 && uRecord < vRecords.size() && &s > &vLog[2]) {
            u16Reservation = static_cast<uint16_t>(s.vResponse[0] | (s.vResponse[1] << 8));
        }
        if (s.iCommand != 0x25) continue;
        ASSERT_LT(uRecord, vRecords.size());
        const TRecord& vRecord = vRecords[uRecord];
        size_t uChunk = s.vRequest.size() - 6;
        EXPECT_LE(uChunk, 16u);
        EXPECT_EQ(u16Reservation, s.vRequest[0] | (s.vRequest[1] << 8));
        EXPECT_EQ(uOffset == 0 ? 0 : u16RecordID, s.vRequest[2] | (s.vRequest[3] << 8));
        EXPECT_EQ(uOffset, s.vRequest[4]);
        bool bLast = uOffset + uChunk == vRecord.size();
        EXPECT_EQ(bLast ? 1 : 0, s.vRequest[5]);
        EXPECT_EQ(TRecord(vRecord.begin() + uOffset, vRecord.begin() + uOffset + uChunk),
                  TRecord(s.vRequest.begin() + 6, s.vRequest.end()));
        u16RecordID = static_cast<uint16_t>(s.vResponse[0] | (s.vResponse[1] << 8));
        uOffset = bLast ? 0 : uOffset + uChunk;
        uRecord += bLast ? 1 : 0;
    }
    EXPECT_EQ(vRecords.size(), uRecord);
    size_t uReservations = 0;
    for (const SimExchange& s : vLog) uReservations += (s.iCommand == 0x22) ? 1 : 0;
    EXPECT_EQ(vRecords.size() + 1, uReservations);  // one per record, one for the erase
}

TEST(DownloadExchanges, IntoAFullRepositoryUseExactlyThePrescribedExchanges)
{
    SimSession sBmc;
    ASSERT_EQ(0, sBmc.Sim({"sdr-load", sBmc.File("sample-v1.sdr")}).iStatus);
    sBmc.ClearLog();
    ASSERT_EQ(0, sBmc.Tavrin(Route::Driver, {"-d", "sample-v2.sdr"}).iStatus);
    std::map<int, int> mCounts;
    for (const SimExchange& s : sBmc.Log()) mCounts[s.iCommand]++;
    // Six records of 19, 57, 58, 43, 29 and 16 bytes, backed up then written; the
    // simulator reports the erase in progress once and the agent busy once.
    const std::map<int, int> mExpected = {{0x20, 1}, {0x22, 6 + 1 + 6}, {0x23, 6 + 15}, {0x25, 16}, {0x27, 3}, {0x2C, 2}};
    EXPECT_EQ(mExpected, mCounts);
}

// A repository holding the old records, with settings and faults applied, then -d.
struct OutcomeCase {
    const char* pchName;
    bool bOldRecords;
    std::vector<std::vector<std::string>> vSimSetup;
    const char* pchFile;
    int iStatus;
    std::vector<std::string> vOut;     // parts of standard output, in no particular order
    std::vector<std::string> vNotOut;  // texts that must not appear on standard output
    std::vector<std::string> vErr;
    enum { eOld, eNew, eAny } eAfter;  // what the repository holds afterwards
};

const std::string kWarnBackup =
    "Warning: Backup data from SDR Repository Failed. \n"
    "Warning: The SDR Repository may have invalid SDR record if downloading is failed. \n\n";

class DownloadOutcomeTest : public ::testing::TestWithParam<OutcomeCase> {};

TEST_P(DownloadOutcomeTest, EndsAsTheOutcomeTableSays)
{
    const OutcomeCase& c = GetParam();
    SimSession sBmc;
    if (c.bOldRecords) {
        for (const char* pch : kOldRecords) ASSERT_EQ(0, sBmc.Sim({"sdr-add", pch}).iStatus);
    }
    WriteFileBytes(sBmc.File("empty.sdr"), BuildBinarySDRFile(1, {}));
    for (const auto& vArgs : c.vSimSetup) ASSERT_EQ(0, sBmc.Sim(vArgs).iStatus) << vArgs[0];
    std::string sBefore = Contents(sBmc.Records());

    RunResult s = sBmc.Tavrin(Route::Driver, {"-d", c.pchFile});
    EXPECT_EQ(c.iStatus, s.iStatus);
    for (const std::string& sPart : c.vOut) EXPECT_TRUE(Has(s.sOut, sPart)) << sPart << "\n---\n" << s.sOut;
    for (const std::string& sPart : c.vNotOut) EXPECT_FALSE(Has(s.sOut, sPart)) << sPart;
    for (const std::string& sPart : c.vErr) EXPECT_TRUE(Has(s.sErr, sPart)) << sPart << "\n---\n" << s.sErr;
    if (c.eAfter == OutcomeCase::eOld) {
        EXPECT_EQ(sBefore, Contents(sBmc.Records()));
    } else if (c.eAfter == OutcomeCase::eNew) {
        EXPECT_EQ(ContentsOf(ExampleRecordSet()), Contents(sBmc.Records()));
    }
}

const std::vector<std::string> kPartialAddFails = {"fault", "0x0a", "0x25", "4", "cc", "0xc4"};
const std::vector<std::string> kBackupReadFails = {"fault", "0x0a", "0x23", "2", "cc", "0xc5"};

INSTANTIATE_TEST_SUITE_P(
    Rows, DownloadOutcomeTest,
    ::testing::Values(
        OutcomeCase{"UsableBackupFailedDownloadIsRestored", true, {kPartialAddFails}, "sample-v1.sdr", 1,
                    {"Backup data from SDR Repository Successful. \n\n", "Restore SDR Repository. \n",
                     "There are 2h SDR records to restore! \n", "Restore SDR Repository Successful. \n"},
                    {"Run Initialization Agent"},
                    {"<ERROR> Error in executing IPMI command because of: Failure to add data to SDR repository.\n"
                     "cc = C4 \nFailure to download SDR data!\n\n"},
                    OutcomeCase::eOld},
        OutcomeCase{"UnusableBackupFailedDownloadIsNotRestored", true, {kBackupReadFails, kPartialAddFails},
                    "sample-v1.sdr", 1, {kWarnBackup}, {"Restore SDR Repository"},
                    {"Executing IPMI command failed because of: Failure to get data from SDR repository.\ncc = C5 \n",
                     "Failure to download SDR data!\n\n"},
                    OutcomeCase::eAny},
        OutcomeCase{"UnusableBackupGoodDownload", true, {kBackupReadFails}, "sample-v1.sdr", 0,
                    {kWarnBackup, "Download SDR data Successful. (6h SDR records downloaded!) \n"}, {}, {},
                    OutcomeCase::eNew},
        OutcomeCase{"EmptyRepositoryFailedDownload", false, {kPartialAddFails}, "sample-v1.sdr", 1, {},
                    {"Backup data", "Restore SDR Repository"}, {"Failure to download SDR data!\n\n"}, OutcomeCase::eAny},
        OutcomeCase{"FailedAgentStillSucceeds", true, {{"set", "init-agent", "0,2"}}, "sample-v1.sdr", 0,
                    {"Run Initialization Agent Command... Failed! \n"},
                    {},
                    {"<ERROR> Error in executing IPMI command: Failure to Run Initialization Agent Command.\ncc = 0 \n"},
                    OutcomeCase::eNew},
        OutcomeCase{"NoRecordsErasesThenRestores", true, {}, "empty.sdr", 1,
                    {"There are 0h SDR records to download! \n", "Restore SDR Repository Successful. \n"}, {},
                    {"Failure to download SDR data!\n\n"}, OutcomeCase::eOld},
        OutcomeCase{"LackOfSpaceOnlyWarnsAndTheAttemptIsMade", true, {{"set", "free-space", "10"}}, "sample-v1.sdr",
                    1,
                    {"Lack of space in the SDR Repository, required=222, free space=10. \n",
                     "Backup data from SDR Repository Successful. \n\n", "Restore SDR Repository Successful. \n"},
                    {}, {"cc = C4 \nFailure to download SDR data!\n\n"}, OutcomeCase::eOld},
        OutcomeCase{"NoPartialAddIsRefused", true, {{"set", "support", "0x02"}}, "sample-v1.sdr", 1, {},
                    {"Backup data"}, {"Partial Add SDR command is not supported. \n"}, OutcomeCase::eOld},
        OutcomeCase{"CountDisagreeingWithChainSpoilsTheBackup", true, {{"set", "count-offset", "1"}}, "sample-v1.sdr",
                    0, {kWarnBackup}, {}, {"SDR Record: needs 3h, Got 2h. \n"}, OutcomeCase::eNew}),
    [](const ::testing::TestParamInfo<OutcomeCase>& i) { return std::string(i.param.pchName); });

TEST(Verify, ReportsAnEmptyRepositoryAndMissingReserveSupport)
{
    SimSession sBmc;
    RunResult sEmpty = sBmc.Tavrin(Route::Driver, {"-v", "sample-v0.sdr"});
    EXPECT_EQ(1, sEmpty.iStatus);
    EXPECT_TRUE(Has(sEmpty.sErr, "The SDR repository is empty.\n"
                                 "Failure to verify the SDR data! (Cannot Get SDR from BMC)\n"));
    for (const char* pch : kOldRecords) sBmc.Sim({"sdr-add", pch});
    RunResult sDifferent = sBmc.Tavrin(Route::Lan, {"-v", "sample-v0.sdr"});
    EXPECT_EQ(1, sDifferent.iStatus);
    EXPECT_EQ("Record number different: in file is 6, in BMC is 2\nFailure to verify the SDR data! (different SDR)\n",
              sDifferent.sErr);
    sBmc.Sim({"set", "support", "0x04"});
    RunResult sNoReserve = sBmc.Tavrin(Route::Driver, {"-v", "sample-v0.sdr"});
    EXPECT_EQ(1, sNoReserve.iStatus);
    EXPECT_TRUE(Has(sNoReserve.sErr, "Reserve SDR command is not supported. \n"));
}

TEST(LocalRoutes, NeedTwoResponseBytesButForThreeCommands)
{
    SimSession sBmc;
    for (const char* pch : kOldRecords) sBmc.Sim({"sdr-add", pch});
    // A Reserve answered with no data fails locally; a Clear answered so succeeds.
    sBmc.Sim({"fault", "0x0a", "0x22", "1", "nodata"});
    RunResult sReserve = sBmc.Tavrin(Route::Driver, {"-v", "sample-v0.sdr"});
    EXPECT_EQ(1, sReserve.iStatus);
    EXPECT_TRUE(Has(sReserve.sErr, "<ERROR> Error in executing IPMI command because of: "
                                   "Failure to reserve SDR repository.\ncc = 0 \n"));
    sBmc.Sim({"fault-clear"});
    sBmc.Sim({"fault", "0x0a", "0x27", "1", "nodata"});
    EXPECT_EQ(0, sBmc.Tavrin(Route::Driver, {"-d", "sample-v0.sdr"}).iStatus);
}

TEST(LanRoute, RetriesARefusalAndReportsAWrongLogin)
{
    SimSession sBmc;
    sBmc.Sim({"fault", "0x0a", "0x22", "2", "cc", "0xc5"});
    RunResult sRetried = sBmc.Tavrin(Route::Lan, {"-d", "sample-v2.sdr"});
    EXPECT_EQ(0, sRetried.iStatus) << sRetried.sErr;
    std::vector<SimExchange> vLog = sBmc.Log();
    size_t uRefused = 0;
    while (uRefused + 1 < vLog.size() && vLog[uRefused].iCompletionCode != 0xC5) uRefused++;
    ASSERT_LT(uRefused + 1, vLog.size());
    EXPECT_EQ(0x22, vLog[uRefused].iCommand);  // the same request again, at once, and it works
    EXPECT_EQ(0x22, vLog[uRefused + 1].iCommand);
    EXPECT_EQ(0, vLog[uRefused + 1].iCompletionCode);

    sBmc.Sim({"user", "admin", "other"});
    RunResult sLogin = sBmc.Tavrin(Route::Lan, {"-v", "sample-v2.sdr"});
    EXPECT_EQ(1, sLogin.iStatus);
    EXPECT_EQ("\n\nGet Device ID failed. Please check LAN+ configuration.\n\n", sLogin.sErr);
}

// LAN failures injected by the ipmitool look-alike during a download into a repository
// holding the old records.
struct LanFaultCase {
    const char* pchName;
    std::vector<std::string> vFault;
    int iStatus;
    std::vector<std::string> vOut;
};

class LanFaultTest : public ::testing::TestWithParam<LanFaultCase> {};

TEST_P(LanFaultTest, EndsAsTheRetryRulesSay)
{
    const LanFaultCase& c = GetParam();
    SimSession sBmc;
    for (const char* pch : kOldRecords) sBmc.Sim({"sdr-add", pch});
    std::vector<std::string> vFault = {"fault"};
    vFault.insert(vFault.end(), c.vFault.begin(), c.vFault.end());
    ASSERT_EQ(0, sBmc.Sim(vFault).iStatus);
    RunResult s = sBmc.Tavrin(Route::Lan, {"-d", "sample-v2.sdr"});
    EXPECT_EQ(c.iStatus, s.iStatus) << s.sErr;
    for (const std::string& sPart : c.vOut) EXPECT_TRUE(Has(s.sOut, sPart)) << sPart << "\n---\n" << s.sOut;
}

INSTANTIATE_TEST_SUITE_P(
    Faults, LanFaultTest,
    ::testing::Values(
        // A refusal that did nothing is simply sent again.
        LanFaultCase{"TimeoutIsRetried", {"0x0a", "0x25", "2", "lan-timeout"}, 0, {"Download SDR data Successful."}},
        // More than 256 bytes: the first 256 hold the answer, the rest is never read.
        LanFaultCase{"FloodIsCutAt256Bytes", {"0x0a", "0x22", "1", "lan-flood"}, 0, {"Download SDR data Successful."}},
        // A chunk that was written although the reply was lost is sent twice; the BMC
        // refuses the repeat every time, the download fails and the back-up comes back.
        LanFaultCase{"LostReplyEndsInARestore", {"0x0a", "0x25", "2", "lan-lost-reply"}, 1,
                     {"Restore SDR Repository Successful. \n"}}),
    [](const ::testing::TestParamInfo<LanFaultCase>& i) { return std::string(i.param.pchName); });

TEST(LocalRoutes, AMissingRouteLibraryIsAnInitializationError)
{
    SimSession sBmc;
    sBmc.Sim({"set", "open-refused", "1"});
    RunResult s = sBmc.Tavrin(Route::KcsIO, {"-v", "sample-v2.sdr"});
    EXPECT_EQ(1, s.iStatus);
    EXPECT_EQ("\n\nKCS initialization error. Please check configuration.\n\n"
              "\nNote: If the option, -msgintf kcsio, is used,\n      make sure KCS driver modules are not loaded!\n\n",
              s.sErr);
}

}  // namespace
