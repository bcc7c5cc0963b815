// A rehearsal from a real BMC's records: the real ipmitool dumps the repository of
// ipmi_sim, tavrin-dump2sdr turns the dump into a binary SDR file, and tavrin and the
// simulated BMC take that file.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "IpmiSimServer.h"
#include "SampleRecords.h"
#include "TestSupport.h"

namespace {

const std::vector<std::string> kLan = {"-H", IpmiSimServer::kHost, "-U", IpmiSimServer::kUserName, "-P",
                                       IpmiSimServer::kPassword, "-C", std::to_string(IpmiSimServer::kCipherSuite)};

RunResult RunIn(const TempDir& sDir, std::vector<std::string> vArgv, const std::vector<std::string>& vTail = {})
{
    vArgv.insert(vArgv.end(), vTail.begin(), vTail.end());
    RunOptions sOptions;
    sOptions.sWorkDir = sDir.Path();
    return RunProgram(vArgv, sOptions);
}

TEST(LanRealDump, IpmitoolSdrDumpBecomesAFileForTavrinAndTheSimulatedBmc)
{
    TAVRIN_REQUIRE_IPMI_SIM();
    const std::vector<TRecord> vRecords = ExampleRecordSet();
    IpmiSimServer sBmc;
    ASSERT_TRUE(sBmc.Start(vRecords)) << sBmc.Failure();
    TempDir sDir;
    const std::string sCount = std::to_string(vRecords.size());

    std::vector<std::string> vDump = {"ipmitool", "-I", "lanplus"};
    vDump.insert(vDump.end(), kLan.begin(), kLan.end());
    RunResult s = RunIn(sDir, vDump, {"sdr", "dump", "bmc.dump"});
    ASSERT_EQ(0, s.iStatus) << s.sErr;
    s = RunIn(sDir, {BuildDir() + "/tavrin-dump2sdr", "bmc.dump", "bmc.sdr"});
    ASSERT_EQ(0, s.iStatus) << s.sErr;
    EXPECT_EQ("tavrin-dump2sdr: " + sCount + " records written to bmc.sdr (binary SDR file, format version 1).\n",
              s.sOut);

    s = RunIn(sDir, {BuildDir() + "/tavrin", "-t", "bmc.sdr"});
    EXPECT_EQ(0, s.iStatus) << s.sErr;
    EXPECT_NE(std::string::npos, s.sOut.find("binary format version 1 (" + sCount + " records)"));
    s = RunIn(sDir, {BuildDir() + "/tavrin", "-v", "bmc.sdr", "-n", "lanplus"}, kLan);
    EXPECT_EQ(0, s.iStatus) << s.sErr;

    const std::string sSim = BuildDir() + "/sim/bin/tavrin-bmcsim";
    ASSERT_EQ(0, RunIn(sDir, {sSim, "--state", "s", "init"}).iStatus);
    s = RunIn(sDir, {sSim, "--state", "s", "sdr-load", "bmc.sdr"});
    ASSERT_EQ(0, s.iStatus) << s.sErr;
    s = RunIn(sDir, {sSim, "--state", "s", "run", "--", BuildDir() + "/tavrin", "-v", "bmc.sdr"});
    EXPECT_EQ(0, s.iStatus) << s.sErr;
}

}  // namespace
