// -t of raw FRU files, which needs no BMC: exact output for valid and broken images, and
// the example images as FreeIPMI's ipmi-fru reads them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "IpmiSimServer.h"
#include "TestSupport.h"

namespace {

const std::string kNotes =
    "\nNote: If the option, -msgintf kcsio, is used,\n      make sure KCS driver modules are not loaded!\n\n";
const std::string kBinary = "Recognize FRU File as binary format \n";

// Standard output without the four lines of the banner.
std::string AfterBanner(const std::string& sOut)
{
    size_t uAt = 0;
    for (int i = 0; i < 4 && uAt != std::string::npos; i++) uAt = sOut.find('\n', uAt) + 1;
    return uAt == std::string::npos ? sOut : sOut.substr(uAt);
}

std::vector<uint8_t> Example(const char* pchName) { return ReadFileBytes(SourceDir() + "/examples/" + pchName); }

// A header with an internal use area at offset 8 as the only area, and u32Size bytes in all.
std::vector<uint8_t> InternalOnly(size_t uSize)
{
    std::vector<uint8_t> v(uSize, 0xA5);
    const uint8_t au8Header[] = {1, 1, 0, 0, 0, 0, 0, 0xFE, 1};
    std::copy(au8Header, au8Header + sizeof(au8Header), v.begin());
    return v;
}

struct FileCase {
    const char* pchName;
    std::vector<uint8_t> vFile;
    int iStatus;
    std::string sOut;  // behind the banner
    std::string sErr;
};

class FruTestGoldenTest : public ::testing::TestWithParam<FileCase> {};

TEST_P(FruTestGoldenTest, PrintsExactlyThis)
{
    const FileCase& c = GetParam();
    TempDir sDir;
    WriteFileBytes(sDir.File("x.fru"), c.vFile);
    RunOptions sOptions;
    sOptions.sWorkDir = sDir.Path();
    RunResult s = RunProgram({BuildDir() + "/tavrin", "-t", "x.fru", "fruID=0x07"}, sOptions);
    EXPECT_EQ(c.iStatus, s.iStatus);
    EXPECT_EQ(c.sOut, AfterBanner(s.sOut));
    EXPECT_EQ(c.sErr + (c.iStatus != 0 ? "Error found in FRU file x.fru. \n" + kNotes : ""), s.sErr);
}

const std::string kGood = kBinary + "No error found in FRU file x.fru! \n \n";
std::vector<uint8_t> BrokenProduct()
{
    std::vector<uint8_t> v = Example("sample-server.fru");
    v[v[4] * 8 + 4] ^= 1;
    return v;
}
std::vector<uint8_t> Text(const std::string& s) { return std::vector<uint8_t>(s.begin(), s.end()); }

INSTANTIATE_TEST_SUITE_P(
    Files, FruTestGoldenTest,
    ::testing::Values(
        FileCase{"Server", Example("sample-server.fru"), 0, kGood, ""},
        FileCase{"HeaderOnly", {1, 0, 0, 0, 0, 0, 0, 0xFF}, 0, kGood, ""},
        FileCase{"LargestImage", InternalOnly(65535), 0, kGood, ""},
        FileCase{"HeaderAndOneByteMore", {1, 0, 0, 0, 0, 0, 0, 0xFF, 0}, 1, kBinary,
                 "<ERROR> Incorrect FRU file. \nFound data outside the scope of a FRU record. \n"},
        FileCase{"BadChecksum", BrokenProduct(), 1, kBinary,
                 "<ERROR> Incorrect FRU binary file. \nError checksum in PRODUCT Area. \n"},
        FileCase{"TooLarge", InternalOnly(65536), 1, kBinary,
                 "<ERROR> Incorrect FRU binary file. \nThe FRU data length > 65535. \n"},
        FileCase{"TooShortForAnEncoding", {1, 0}, 1, "",
                 "<ERROR> Error reading file, x.fru.\n<ERROR> Failure to get encoding info from file x.fru.\n"},
        FileCase{"TextFile", Text("// board\n_FRU (\n_SEE_COMMON 01 00 00 00 00 00 00 FF\n)\n"), 1, "",
                 "<ERROR> x.fru is a FRU text file, and FRU text files cannot be read yet. \n"},
        FileCase{"StartTagWithoutBlankIsBinary", Text("_FRU(\n)\n"), 1, kBinary,
                 "<ERROR> Incorrect FRU binary file. \nThe version field (0x5F) in COMMON Area != 0x01. \n"}),
    [](const ::testing::TestParamInfo<FileCase>& i) { return std::string(i.param.pchName); });

// FreeIPMI reads BCD Plus as one character per byte, so those fields aren't compared.
TEST(FruPeers, FreeIPMIDecodesTheExamples)
{
    // Debian installs it in /usr/sbin, which a user's PATH may lack.
    RunResult sFound = RunProgram({"sh", "-c", "command -v ipmi-fru || command -v /usr/sbin/ipmi-fru"});
    const std::string sIpmiFru = sFound.sOut.substr(0, sFound.sOut.find('\n'));
    if (sFound.iStatus != 0 || sIpmiFru.empty()) {
        if (IsContinuousIntegrationRun()) FAIL() << "ipmi-fru (Debian package freeipmi-tools) is missing (CI)";
        GTEST_SKIP() << "ipmi-fru (Debian package freeipmi-tools) is not installed";
    }
    const std::vector<std::pair<const char*, std::vector<std::string>>> vExpected = {
        {"sample-server.fru",
         {"FRU Chassis Type: Rack Mount Chassis\n", "FRU Chassis Serial Number: CS24A00017\n",
          "FRU Board Manufacturing Date/Time: 05/17/24 - 08:30:00\n", "FRU Board Custom Info: Rev 3\n",
          "FRU FRU File ID: 01h 02h\n", "FRU Product Part/Model Number: TS-4410-R2\n",
          "FRU Power Supply Overall Capacity: 800 Watts\n", "FRU Power Supply Hold Up Time: 1 s\n",
          "FRU DC Output Maximum Current Draw: 6000 mA\n"}},
        {"sample-card.fru",
         {"FRU Board Manufacturer: TAVRIN\n", "FRU Product Version: Rev B\n"}}};
    RunOptions sOptions;
    sOptions.vEnv = {{"TZ", "UTC"}};
    for (const auto& sExample : vExpected) {
        RunResult s = RunProgram({sIpmiFru, "--fru-file=" + SourceDir() + "/examples/" + sExample.first}, sOptions);
        EXPECT_EQ(0, s.iStatus) << s.sErr;
        EXPECT_EQ("", s.sErr);
        EXPECT_EQ(std::string::npos, s.sOut.find("hecksum")) << s.sOut;
        for (const std::string& sLine : sExample.second) {
            EXPECT_NE(std::string::npos, s.sOut.find(sLine)) << sLine << s.sOut;
        }
    }
}

}  // namespace
