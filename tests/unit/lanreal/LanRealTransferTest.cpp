// tavrin -v and -d over the LAN against ipmi_sim, whose repository holds the records of
// the example files but takes no Partial Add SDR.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "BinarySDRWriter.h"
#include "IpmiSimServer.h"
#include "TestSupport.h"

namespace {

RunResult TavrinOverLan(const std::vector<std::string>& vOperation, const std::string& sWorkDir = SourceDir() + "/examples")
{
    std::vector<std::string> vArgv = {BuildDir() + "/tavrin"};
    vArgv.insert(vArgv.end(), vOperation.begin(), vOperation.end());
    vArgv.insert(vArgv.end(), {"-n", "lanplus", "-H", IpmiSimServer::kHost, "-U", IpmiSimServer::kUserName, "-P",
                               IpmiSimServer::kPassword, "-C", std::to_string(IpmiSimServer::kCipherSuite)});
    RunOptions sOptions;
    sOptions.sWorkDir = sWorkDir;
    return RunProgram(vArgv, sOptions);
}

TEST(LanRealTransfer, VerifiesAndIsRefusedADownloadThatWouldChangeNothing)
{
    TAVRIN_REQUIRE_IPMI_SIM();
    IpmiSimServer sSim;
    ASSERT_TRUE(sSim.Start(ExampleRecordSet())) << sSim.Failure();

    RunResult sVerify = TavrinOverLan({"-v", "sample-v1.sdr"});
    EXPECT_EQ(0, sVerify.iStatus) << sVerify.sErr;
    EXPECT_NE(std::string::npos, sVerify.sOut.find("Verify SDR file sample-v1.sdr with SDR repository successful! \n"));

    RunResult sDownload = TavrinOverLan({"-d", "sample-v1.sdr"});
    EXPECT_EQ(1, sDownload.iStatus);
    EXPECT_EQ("Partial Add SDR command is not supported. \n", sDownload.sErr);
    EXPECT_EQ(std::string::npos, sDownload.sOut.find("Backup data"));

    RunResult sAgain = TavrinOverLan({"-v", "sample-v1.sdr"});
    EXPECT_EQ(0, sAgain.iStatus) << sAgain.sErr;
}

TEST(LanRealTransfer, UploadsTheRepositoryIntoAFileThatTestsAndVerifies)
{
    TAVRIN_REQUIRE_IPMI_SIM();
    IpmiSimServer sSim;
    ASSERT_TRUE(sSim.Start(TextExampleRecordSet())) << sSim.Failure();
    TempDir sDir;
    RunResult sUpload = TavrinOverLan({"-u", "up.sdr", "encoding=utf16"}, sDir.Path());
    ASSERT_EQ(0, sUpload.iStatus) << sUpload.sErr;
    EXPECT_EQ("", sUpload.sErr);
    EXPECT_NE(std::string::npos, sUpload.sOut.find("The SDR data has been saved in file up.sdr! \n"));
    RunResult sTest = TavrinOverLan({"-t", "up.sdr"}, sDir.Path());
    EXPECT_EQ(0, sTest.iStatus) << sTest.sErr;
    RunResult sVerify = TavrinOverLan({"-v", "up.sdr"}, sDir.Path());
    EXPECT_EQ(0, sVerify.iStatus) << sVerify.sErr;
}

}  // namespace
