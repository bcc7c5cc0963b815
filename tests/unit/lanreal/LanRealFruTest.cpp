// A raw FRU image downloaded into a FRU device of ipmi_sim over the LAN, uploaded to a FRU
// text file, read back and changed by the real ipmitool, and an image that ipmitool
// wrote, tested by tavrin.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "IpmiSimServer.h"
#include "TestSupport.h"

namespace {

const std::vector<std::string> kLogin = {"-H", IpmiSimServer::kHost, "-U", IpmiSimServer::kUserName, "-P",
                                         IpmiSimServer::kPassword, "-C", std::to_string(IpmiSimServer::kCipherSuite)};

RunResult Run(std::vector<std::string> vArgv, const std::vector<std::string>& vTail, const std::string& sDir = "")
{
    vArgv.insert(vArgv.end(), vTail.begin(), vTail.end());
    RunOptions sOptions;
    sOptions.sWorkDir = sDir;
    sOptions.vEnv = {{"TZ", "UTC"}};  // for the manufacturing date that ipmitool prints
    return RunProgram(vArgv, sOptions);
}

RunResult Ipmitool(std::vector<std::string> vCommand)
{
    vCommand.insert(vCommand.begin(), kLogin.begin(), kLogin.end());
    return Run({"ipmitool", "-I", "lanplus"}, vCommand);
}

RunResult Tavrin(const TempDir& sDir, std::vector<std::string> vOperation, const std::string& sProgram = "/tavrin")
{
    vOperation.insert(vOperation.end(), {"-n", "lanplus"});
    vOperation.insert(vOperation.end(), kLogin.begin(), kLogin.end());
    return Run({BuildDir() + sProgram}, vOperation, sDir.Path());
}

// The value that "ipmitool fru print" shows for the label, without the blanks around it.
std::string Printed(const std::string& sPrint, const std::string& sLabel)
{
    std::smatch sMatch;
    const bool bFound = std::regex_search(sPrint, sMatch, std::regex("\n " + sLabel + " *: ([^\n]*[^ \n]) *\n"));
    return bFound ? sMatch[1].str() : "(no " + sLabel + ")";
}

TEST(LanRealFru, DownloadIsWhatIpmitoolPrintsAndVerifyNoticesAChange)
{
    TAVRIN_REQUIRE_IPMI_SIM();
    TempDir sDir;
    const std::vector<uint8_t> vImage = ReadFileBytes(SourceDir() + "/examples/sample-server.fru");
    WriteFileBytes(sDir.File("server.fru"), vImage);
    IpmiSimServer sSim;
    // A device of exactly the image's size, so that what ipmitool reads out is the image.
    ASSERT_TRUE(sSim.Start({}, {{0, static_cast<uint16_t>(vImage.size()), {}}})) << sSim.Failure();

    RunResult sDownload = Tavrin(sDir, {"-d", "server.fru", "fruID=0"});
    ASSERT_EQ(0, sDownload.iStatus) << sDownload.sErr;
    RunResult sPrint = Ipmitool({"fru", "print", "0"});
    ASSERT_EQ(0, sPrint.iStatus) << sPrint.sErr;
    const std::vector<std::pair<std::string, std::string>> vFields = {
        {"Chassis Serial", "CS24A00017"},   {"Chassis Extra", "2024-05-17"},
        {"Board Mfg Date", "Fri May 17 08:30:00 2024 UTC"}, {"Board Mfg", "Tavrin Systems"},
        {"Board Product", "TS-4410 Server Board"}, {"Board Serial", "BS24A00123"},
        {"Product Manufacturer", "Tavrin Systems"}, {"Product Name", "TS-4410 Rack Server"},
        {"Product Serial", "2405170042"}};
    for (const auto& sField : vFields) EXPECT_EQ(sField.second, Printed(sPrint.sOut, sField.first)) << sPrint.sOut;
    RunResult sVerify = Tavrin(sDir, {"-v", "server.fru", "fruID=0"});
    EXPECT_EQ(0, sVerify.iStatus) << sVerify.sErr;
    // The device uploaded to a FRU text file, which passes -t and -v, until ipmitool changes the device.
    RunResult sUpload = Tavrin(sDir, {"-u", "server.txt", "encoding=utf16", "fruID=0"});
    EXPECT_EQ(0, sUpload.iStatus) << sUpload.sErr;
    EXPECT_NE(std::string::npos, sUpload.sOut.find("Upload FRU data successful. \n"));
    for (const char* pchOperation : {"-t", "-v"}) {
        EXPECT_EQ(0, Tavrin(sDir, {pchOperation, "server.txt", "fruID=0"}).iStatus) << pchOperation;
    }

    // ipmitool rewrites the product area with a name of the same length and its own
    // checksum; the image it then reads out of the device passes -t.
    Ipmitool({"fru", "edit", "0", "field", "p", "1", "TS-4410 Rack Unit 2"});
    EXPECT_EQ("TS-4410 Rack Unit 2", Printed(Ipmitool({"fru", "print", "0"}).sOut, "Product Name"));
    for (const char* pchFile : {"server.fru", "server.txt"}) {
        RunResult sChanged = Tavrin(sDir, {"-v", pchFile, "fruID=0"});
        EXPECT_EQ(1, sChanged.iStatus);
        EXPECT_NE(std::string::npos, sChanged.sErr.find("The FRU data in file and FRU inventory are different!\n"
                                                        "Verify FRU file failed!\n"));
    }
    ASSERT_EQ(0, Ipmitool({"fru", "read", "0", sDir.File("by-ipmitool.fru")}).iStatus);
    EXPECT_NE(vImage, ReadFileBytes(sDir.File("by-ipmitool.fru")));
    RunResult sTest = Tavrin(sDir, {"-t", "by-ipmitool.fru", "fruID=0"});
    EXPECT_EQ(0, sTest.iStatus) << sTest.sErr;
    EXPECT_NE(std::string::npos, sTest.sOut.find("No error found in FRU file by-ipmitool.fru! \n"));
}

// Serial numbers in 6-bit and, over a BCD Plus one, in 8-bit, and the date/time of a
// clock fixed at 2024-02-29 12:34:56: ipmitool prints them, and every area checksum holds.
TEST(LanRealFru, UpdatedFieldsAreWhatIpmitoolPrints)
{
    TAVRIN_REQUIRE_IPMI_SIM();
    TempDir sDir;
    const std::vector<uint8_t> vImage = ReadFileBytes(SourceDir() + "/examples/sample-server.fru");
    IpmiSimServer sSim;
    ASSERT_TRUE(sSim.Start({}, {{0, static_cast<uint16_t>(vImage.size()), vImage}})) << sSim.Failure();
    for (const std::vector<std::string>& vArgs : std::vector<std::vector<std::string>>{
             {"/tavrin", "fieldName=snBoard", "offset=0x63", "strType=2", "strLength=8", "strValue=BS24B99999"},
             {"/tavrin", "fieldName=snProduct", "offset=0xBB", "strType=3", "strLength=5", "strValue=SN-42"},
             {"/tests/tavrin-fixedclock", "fieldName=datetime", "offset=0x3B"}}) {
        std::vector<std::string> vOperation = {"-updateFRU", "fruID=0"};
        vOperation.insert(vOperation.end(), vArgs.begin() + 1, vArgs.end());
        RunResult sUpdate = Tavrin(sDir, vOperation, vArgs[0]);
        EXPECT_EQ(0, sUpdate.iStatus) << vArgs[1] << sUpdate.sErr;
    }
    RunResult sPrint = Ipmitool({"fru", "print", "0"});
    EXPECT_EQ("BS24B99999", Printed(sPrint.sOut, "Board Serial"));
    EXPECT_EQ("SN-42", Printed(sPrint.sOut, "Product Serial"));
    EXPECT_EQ("Thu Feb 29 12:34:00 2024 UTC", Printed(sPrint.sOut, "Board Mfg Date"));
    EXPECT_EQ(std::string::npos, (sPrint.sOut + sPrint.sErr).find("hecksum")) << sPrint.sOut << sPrint.sErr;
    // ipmitool's print doesn't check area checksums; tavrin -t of what ipmitool reads out does.
    ASSERT_EQ(0, Ipmitool({"fru", "read", "0", sDir.File("updated.fru")}).iStatus);
    EXPECT_EQ(0, Tavrin(sDir, {"-t", "updated.fru", "fruID=0"}).iStatus);
}

}  // namespace
