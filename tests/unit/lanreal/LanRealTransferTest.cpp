// tavrin -v and -d over the LAN against ipmi_sim, whose repository holds the records of
// the example files but takes no Partial Add SDR.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "BinarySDRWriter.h"
#include "IpmiSimServer.h"
#include "TestSupport.h"

namespace {

RunResult TavrinOverLan(const std::vector<std::string>& vOperation)
{
    std::vector<std::string> vArgv = {BuildDir() + "/tavrin"};
    vArgv.insert(vArgv.end(), vOperation.begin(), vOperation.end());
    vArgv.insert(vArgv.end(), {"-n", "lanplus", "-H", IpmiSimServer::kHost, "-U", IpmiSimServer::kUserName, "-P",
                               IpmiSimServer::kPassword, "-C", std::to_string(IpmiSimServer::kCipherSuite)});
    RunOptions sOptions;
    sOptions.sWorkDir = SourceDir() + "/examples";
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

}  // namespace
