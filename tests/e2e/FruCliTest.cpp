// -t of raw FRU files and FRU text files, which needs no BMC: exact output for valid and broken files, and
// the example images as FreeIPMI's ipmi-fru reads them.
#include <gtest/gtest.h>

#include "IpmiSimServer.h"
#include "TestSupport.h"

namespace {

using Bytes = std::vector<uint8_t>;

const std::string kBinary = "Recognize FRU File as binary format \n";
const std::string kGood = kBinary + "No error found in FRU file x.fru! \n \n";

Bytes Example(const char* pchName) { return ReadFileBytes(SourceDir() + "/examples/" + pchName); }

// A header whose only area is an internal use area at offset 8; uSize bytes in all.
Bytes InternalOnly(size_t uSize)
{
    Bytes v(uSize, 0xA5);
    const uint8_t au8Head[] = {1, 1, 0, 0, 0, 0, 0, 0xFE, 1};
    std::copy(au8Head, au8Head + sizeof(au8Head), v.begin());
    return v;
}

Bytes BrokenProduct()
{
    Bytes v = Example("sample-server.fru");
    v[v[4] * 8 + 4] ^= 1;
    return v;
}

Bytes Text(const std::string& s) { return Bytes(s.begin(), s.end()); }

struct FileCase {
    const char* pchName;
    Bytes vFile;
    int iStatus;
    std::string sOut;  // behind the banner
    std::string sErr;  // a failure's closing lines follow
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
    const std::string sNotes =
        "\nNote: If the option, -msgintf kcsio, is used,\n      make sure KCS driver modules are not loaded!\n\n";
    EXPECT_EQ(c.sErr + (c.iStatus != 0 ? "Error found in FRU file x.fru. \n" + sNotes : ""), s.sErr);
}

INSTANTIATE_TEST_SUITE_P(
    Files, FruTestGoldenTest,
    ::testing::Values(
        FileCase{"Server", Example("sample-server.fru"), 0, kGood, ""},
        FileCase{"LargestImage", InternalOnly(65535), 0, kGood, ""},
        FileCase{"BadChecksum", BrokenProduct(), 1, kBinary,
                 "<ERROR> Incorrect FRU binary file. \nError checksum in PRODUCT Area. \n"},
        FileCase{"TooLarge", InternalOnly(65536), 1, kBinary,
                 "<ERROR> Incorrect FRU binary file. \nThe FRU data length > 65535. \n"},
        FileCase{"TooShortForAnEncoding", {1, 0}, 1, "",
                 "<ERROR> Error reading file, x.fru.\n<ERROR> Failure to get encoding info from file x.fru.\n"},
        FileCase{"TextFile", Example("sample-card-utf16.fru"), 0, "No error found in FRU file x.fru! \n \n", ""},
        FileCase{"TextFileWithoutItsEnd", Text("// board\n_FRU (\n_SEE_COMMON 01 00 00 00 00 00 00 FF\n"), 1, "",
                 "<ERROR> Incorrect FRU file.\nLack ')' tag in FRU file. \n"},
        FileCase{"StartTagWithoutBlankIsBinary", Text("_FRU(\n)\n"), 1, kBinary,
                 "<ERROR> Incorrect FRU binary file. \nThe version field (0x5F) in COMMON Area != 0x01. \n"}),
    [](const ::testing::TestParamInfo<FileCase>& i) { return std::string(i.param.pchName); });

// FreeIPMI reads BCD Plus as one character per byte, so those fields aren't compared.
TEST(FruPeers, FreeIPMIDecodesTheExamples)
{
    // Debian installs it in /usr/sbin, which a user's PATH may lack.
    RunResult sFound = RunProgram({"sh", "-c", "command -v ipmi-fru || command -v /usr/sbin/ipmi-fru"});
    if (sFound.iStatus != 0) {
        if (IsContinuousIntegrationRun()) FAIL() << "ipmi-fru (Debian package freeipmi-tools) is missing (CI)";
        GTEST_SKIP() << "ipmi-fru (Debian package freeipmi-tools) is not installed";
    }
    const std::vector<std::pair<const char*, std::vector<std::string>>> vExpected = {
        {"server",
         {"Chassis Type: Rack Mount Chassis\n", "Chassis Serial Number: CS24A00017\n", "FRU File ID: 01h 02h\n",
          "Board Manufacturing Date/Time: 05/17/24 - 08:30:00\n", "Board Custom Info: Rev 3\n",
          "Product Part/Model Number: TS-4410-R2\n", "Power Supply Overall Capacity: 800 Watts\n",
          "Power Supply Hold Up Time: 1 s\n", "DC Output Maximum Current Draw: 6000 mA\n"}},
        {"card", {"Board Manufacturer: TAVRIN\n", "Product Version: Rev B\n"}}};
    RunOptions sOptions;
    sOptions.vEnv = {{"TZ", "UTC"}};
    for (const auto& sExample : vExpected) {
        const std::string sFile = SourceDir() + "/examples/sample-" + sExample.first + ".fru";
        RunResult s = RunProgram({sFound.sOut.substr(0, sFound.sOut.find('\n')), "--fru-file=" + sFile}, sOptions);
        EXPECT_EQ(0, s.iStatus);
        EXPECT_EQ("", s.sErr);
        EXPECT_EQ(std::string::npos, s.sOut.find("hecksum")) << s.sOut;
        for (const std::string& sLine : sExample.second) {
            EXPECT_NE(std::string::npos, s.sOut.find("  FRU " + sLine)) << sLine << s.sOut;
        }
    }
}

}  // namespace
