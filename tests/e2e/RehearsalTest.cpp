// "tavrin-bmcsim run": tavrin runs against the simulated BMC without any set-up, and a
// command line that needed a BMC but made no exchange with the simulator fails loudly.
#include <gtest/gtest.h>

#include <unistd.h>

#include <string>
#include <vector>

#include "TestSupport.h"

namespace {

const char kWarning[] = "NOT A REHEARSAL: the command made no exchange with the simulated BMC.";
const std::vector<std::string> kLan = {"-n", "lanplus", "-H", "127.0.0.1", "-U", "admin", "-P", "secret", "-C", "3"};

struct RunCase {
    const char* pchName;
    bool bStateExists;
    bool bRecordsLoaded;
    std::vector<std::string> vCommand;  // "tavrin" stands for the built one
    int iStatus;
    bool bWarned;
};

class RehearsalTest : public ::testing::TestWithParam<RunCase> {};

TEST_P(RehearsalTest, RunsTheCommandAndJudgesIt)
{
    const RunCase& c = GetParam();
    TempDir sDir;
    std::string sSim = BuildDir() + "/sim/bin/tavrin-bmcsim";
    std::string sState = sDir.File("bmc.state");
    WriteFileBytes(sDir.File("new.sdr"), ReadFileBytes(SourceDir() + "/examples/sample-v2.sdr"));
    if (c.bStateExists) {
        ASSERT_EQ(0, RunProgram({sSim, "--state", sState, "init", "admin", "secret"}).iStatus);
    }
    if (c.bRecordsLoaded) {
        ASSERT_EQ(0, RunProgram({sSim, "--state", sState, "sdr-load", sDir.File("new.sdr")}).iStatus);
    }
    std::vector<std::string> vArgv = {sSim, "--state", sState, "run", "--"};
    for (const std::string& sWord : c.vCommand) vArgv.push_back(sWord == "tavrin" ? BuildDir() + "/tavrin" : sWord);
    RunOptions sOptions;
    sOptions.sWorkDir = sDir.Path();
    RunResult s = RunProgram(vArgv, sOptions);
    EXPECT_EQ(c.iStatus, s.iStatus) << s.sErr;
    EXPECT_EQ(c.bWarned, s.sErr.find(kWarning) != std::string::npos) << s.sErr;
    EXPECT_NE(0, access(sDir.File("ran").c_str(), F_OK)) << "a command ran without its simulated BMC";
}

std::vector<std::string> Lan(std::vector<std::string> vCommand)
{
    vCommand.insert(vCommand.end(), kLan.begin(), kLan.end());
    return vCommand;
}

INSTANTIATE_TEST_SUITE_P(
    Commands, RehearsalTest,
    ::testing::Values(RunCase{"VerifyOnTheDriverRoute", true, true, {"tavrin", "-v", "new.sdr"}, 0, false},
                      RunCase{"VerifyOverTheLan", true, true, Lan({"tavrin", "-v", "new.sdr"}), 0, false},
                      RunCase{"FailedVerifyKeepsItsStatus", true, false, {"tavrin", "-v", "new.sdr"}, 1, false},
                      RunCase{"TestNeedsNoBmc", true, false, {"tavrin", "-t", "new.sdr"}, 0, false},
                      RunCase{"HelpNeedsNoBmc", true, false, {"tavrin", "/h"}, 0, false},
                      RunCase{"FailureBeforeTheBmc", true, true, {"tavrin", "-d", "missing.sdr"}, 125, true},
                      RunCase{"SuccessWithoutTheSimulator", true, true, {"true", "-d", "new.sdr"}, 125, true},
                      RunCase{"NoStateRunsNothing", false, false, {"touch", "ran"}, 125, false},
                      RunCase{"NoCommand", true, false, {}, 2, false}),
    [](const ::testing::TestParamInfo<RunCase>& sInfo) { return std::string(sInfo.param.pchName); });

}  // namespace
