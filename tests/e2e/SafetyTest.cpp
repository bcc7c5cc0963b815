// What a user can't break by accident: an SDR replace that is interrupted or killed,
// and option values that a shell would have read as commands. Signals come from the
// simulated BMC at a chosen exchange, so nothing here depends on timing.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <sstream>

#include "SimSession.h"

namespace {

const char* const kOldRecords[] = {"400051c005570100aabb", "410051c006570100ccddee"};
const std::string kInterrupted = "<ERROR> Interrupted. \nFailure to download SDR data!\n\n";
const std::string kRestored = "Restore SDR Repository Successful. \n";

bool Has(const std::string& sText, const std::string& sPart)
{
    return sText.find(sPart) != std::string::npos;
}

std::vector<std::string> BackupFiles(const SimSession& sBmc)
{
    std::vector<std::string> vNames;
    for (const auto& sEntry : std::filesystem::directory_iterator(sBmc.Dir())) {
        std::string sName = sEntry.path().filename().string();
        if (sName.rfind("sdr-backup-", 0) == 0) vNames.push_back(sName);
    }
    return vNames;
}

// The old records in the repository and the given faults set; returns the records.
std::string PrepareOldRepository(const SimSession& sBmc, const std::vector<std::vector<std::string>>& vFaults)
{
    for (const char* pch : kOldRecords) EXPECT_EQ(0, sBmc.Sim({"sdr-add", pch}).iStatus);
    for (std::vector<std::string> vFault : vFaults) {
        vFault.insert(vFault.begin(), "fault");
        EXPECT_EQ(0, sBmc.Sim(vFault).iStatus);
    }
    return sBmc.RecordsWithoutIDs();
}

// The records of sample-v1.sdr as a repository holds them.
std::string NewRecords()
{
    SimSession sBmc;
    EXPECT_EQ(0, sBmc.Sim({"sdr-load", sBmc.File("sample-v1.sdr")}).iStatus);
    return sBmc.RecordsWithoutIDs();
}

// A signal sent to tavrin at one exchange of a download of sample-v1.sdr (six records
// in 16 Partial Add chunks) into a repository of two records (one chunk each).
struct InterruptCase {
    const char* pchName;
    Route eRoute;
    std::vector<std::vector<std::string>> vFaults;
    int iStatus;        // -1: ended by the signal
    bool bInterrupted;  // the download failed for it (with status 1, the back-up is restored)
    bool bNewRecords;   // the repository holds the file's records; else the old ones
};

class InterruptTest : public ::testing::TestWithParam<InterruptCase> {};

TEST_P(InterruptTest, LeavesTheOldRecordsOrTheNewOnesNeverAMix)
{
    const InterruptCase& c = GetParam();
    SimSession sBmc;
    const std::string sOld = PrepareOldRepository(sBmc, c.vFaults);
    RunResult s = sBmc.Tavrin(c.eRoute, {"-d", "sample-v1.sdr"});
    EXPECT_EQ(c.iStatus, s.iStatus) << s.sErr;
    EXPECT_EQ(c.bInterrupted, Has(s.sErr, kInterrupted)) << s.sErr;
    EXPECT_EQ(c.iStatus == 1, Has(s.sOut, kRestored));
    EXPECT_FALSE(Has(s.sErr, "Restore SDR Repository Failed."));
    EXPECT_EQ(c.bNewRecords ? NewRecords() : sOld, sBmc.RecordsWithoutIDs());
    EXPECT_TRUE(BackupFiles(sBmc).empty());  // the repository holds a whole set again
}

const std::vector<std::string> kDownloadFails = {"0x0a", "0x25", "4", "cc", "0xc4"};

INSTANTIATE_TEST_SUITE_P(
    Points, InterruptTest,
    ::testing::Values(
        InterruptCase{"SigintAfterTheErase", Route::Driver, {{"0x0a", "0x27", "1", "signal", "2"}}, 1, true, false},
        InterruptCase{"SigquitMidRecord", Route::Driver, {{"0x0a", "0x25", "1", "signal", "3"}}, 1, true, false},
        InterruptCase{"SigtermAfterTheLastChunk", Route::Driver, {{"0x0a", "0x25", "16", "signal", "15"}}, 1, true,
                      false},
        InterruptCase{"SighupOverTheLan", Route::Lan, {{"0x0a", "0x25", "3", "signal", "1"}}, 1, true, false},
        // The restore runs to its end; the download had failed already.
        InterruptCase{"SigintDuringTheRestore", Route::Driver, {kDownloadFails, {"0x0a", "0x25", "6", "signal", "2"}},
                      1, false, false},
        // Outside the replace, signals act as usual.
        InterruptCase{"SigintDuringTheBackUp", Route::Driver, {{"0x0a", "0x23", "1", "signal", "2"}}, -1, false,
                      false},
        InterruptCase{"SigintDuringTheAgent", Route::Driver, {{"0x0a", "0x2c", "1", "signal", "2"}}, -1, false,
                      true}),
    [](const ::testing::TestParamInfo<InterruptCase>& i) { return std::string(i.param.pchName); });

// Two ways to lose the repository's records, a kill after the erase and a failed
// restore, and the file that brings them back.
TEST(KeptBackup, DownloadsBackToTheOldRecords)
{
    const std::vector<std::string> kLosses[] = {{"0x0a", "0x27", "1", "signal", "9"},
                                                {"0x0a", "0x25", "4", "cc", "0xc4", "always"}};
    for (const std::vector<std::string>& vFault : kLosses) {
        SCOPED_TRACE(vFault[3]);
        SimSession sBmc;
        const std::string sOld = PrepareOldRepository(sBmc, {vFault});
        RunResult s = sBmc.Tavrin(Route::Driver, {"-d", "sample-v1.sdr"});
        const std::vector<std::string> vKept = BackupFiles(sBmc);
        ASSERT_EQ(1u, vKept.size());
        struct stat sStat;
        ASSERT_EQ(0, stat(sBmc.File(vKept[0]).c_str(), &sStat));
        EXPECT_EQ(0600u, sStat.st_mode & 0777u);
        EXPECT_EQ(vFault[3] == "cc", Has(s.sErr, "Restore SDR Repository Failed. \nThe SDR Repository back-up is kept "
                                                 "in file " + vKept[0] + "; download it with -d to restore. \n"));
        EXPECT_NE(sOld, sBmc.RecordsWithoutIDs());
        ASSERT_EQ(0, sBmc.Sim({"fault-clear"}).iStatus);
        RunResult sBack = sBmc.Tavrin(Route::Driver, {"-d", vKept[0]});
        EXPECT_EQ(0, sBack.iStatus) << sBack.sErr;
        EXPECT_TRUE(Has(sBack.sOut, "Recognize SDR File as binary format version 1 (2 records) \n"));
        EXPECT_EQ(sOld, sBmc.RecordsWithoutIDs());
    }
}

// A stand-in in front of the simulator's ipmitool that records every call's words, and
// what the process list shows of its caller, tavrin, while it runs.
void PutRecorder(const std::string& sDir)
{
    std::filesystem::create_directory(sDir);
    WriteFileText(sDir + "/ipmitool", "#!/bin/sh\n"
                                      "d=$(dirname \"$0\")\n"
                                      "printf '%s\\0' \"$@\" >> \"$d/words\"; printf '\\1' >> \"$d/words\"\n"
                                      "cat /proc/$PPID/cmdline >> \"$d/cmdline\" 2>/dev/null\n"
                                      "exec \"" + BuildDir() + "/sim/bin/ipmitool\" \"$@\"\n");
    std::filesystem::permissions(sDir + "/ipmitool", std::filesystem::perms::owner_all);
}

// Each call's words, split at the separators that the recorder wrote.
std::vector<std::vector<std::string>> RecordedCalls(const std::string& sDir)
{
    std::vector<std::vector<std::string>> vCalls;
    std::istringstream sCalls(ReadFileText(sDir + "/words"));
    for (std::string sCall; std::getline(sCalls, sCall, '\1');) {
        std::istringstream sWords(sCall);
        vCalls.emplace_back();
        for (std::string sWord; std::getline(sWords, sWord, '\0');) vCalls.back().push_back(sWord);
    }
    return vCalls;
}

std::string PrintableAscii()
{
    std::string s;
    for (char ch = ' '; ch <= '~'; ch++) s += ch;
    return s + "\n";
}

TEST(LanValues, ReachIpmitoolWholeAndAsNothingElse)
{
    const std::string sAll = PrintableAscii();  // 96 characters, blank and line feed included
    const std::pair<std::string, std::string> kLogins[] = {
        {sAll.substr(0, 24), sAll.substr(24, 24)},
        {sAll.substr(48, 24), sAll.substr(72, 24)},
        {"a$(touch owned1)`touch owned2`", "b;touch owned3 #|touch owned4&>owned5"},
    };
    for (const auto& sLogin : kLogins) {
        SCOPED_TRACE(sLogin.first + " / " + sLogin.second);
        SimSession sBmc;
        const std::string sRecorder = sBmc.File("recorder");
        PutRecorder(sRecorder);
        sBmc.PutFirstOnPath(sRecorder);
        ASSERT_EQ(0, sBmc.Sim({"user", sLogin.first, sLogin.second}).iStatus);
        RunResult s = sBmc.Tavrin(Route::Driver, {"-v", "sample-v1.sdr", "-n", "lanplus", "-H", "127.000.0.010", "-U",
                                                  sLogin.first, "-P", sLogin.second, "-C", "3"});
        // The login worked: the BMC was reached and found empty.
        EXPECT_EQ(1, s.iStatus);
        EXPECT_EQ("The SDR repository is empty.\nFailure to verify the SDR data! (Cannot Get SDR from BMC)\n", s.sErr);
        const std::vector<std::string> vHead = {"-C", "3", "-I", "lanplus", "-U", sLogin.first, "-P", sLogin.second,
                                                "-H", "127.0.0.10", "raw"};
        std::vector<std::vector<std::string>> vCalls = RecordedCalls(sRecorder);
        ASSERT_EQ(3u, vCalls.size());  // -V, Get Device ID, Get SDR Repository Info
        EXPECT_EQ(std::vector<std::string>{"-V"}, vCalls[0]);
        for (size_t i = 1; i < vCalls.size(); i++) {
            EXPECT_EQ(vHead, std::vector<std::string>(vCalls[i].begin(), vCalls[i].begin() + vHead.size()));
        }
        // No shell read the values, and the process list never showed the password.
        for (const auto& sEntry : std::filesystem::directory_iterator(sBmc.Dir())) {
            EXPECT_EQ(std::string::npos, sEntry.path().filename().string().find("owned"));
        }
        const std::string sCmdLine = ReadFileText(sRecorder + "/cmdline");
        EXPECT_TRUE(Has(sCmdLine, sLogin.first));
        EXPECT_FALSE(Has(sCmdLine, sLogin.second));
    }
}

}  // namespace
