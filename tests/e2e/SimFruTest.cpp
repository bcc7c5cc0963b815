// -d and -v of raw FRU images and FRU text files against the simulated BMC: round trips
// on all three routes, and every outcome of a failure.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <tuple>

#include "SimSession.h"

namespace {

using Bytes = std::vector<uint8_t>;

const std::string kNotes =
    "\nNote: If the option, -msgintf kcsio, is used,\n      make sure KCS driver modules are not loaded!\n\n";
const std::string kBinary = "Recognize FRU File as binary format \n";
const std::string kDownloaded = kBinary + "Start to download FRU data! \nDownload FRU data successful. \n\n";
const size_t kArea = 0x200;  // the FRU device's size unless a test says otherwise

Bytes Device(const SimSession& sBmc, int iFruID = 0)
{
    EXPECT_EQ(0, sBmc.Sim({"fru-save", std::to_string(iFruID), sBmc.File("device.bin")}).iStatus);
    return ReadFileBytes(sBmc.File("device.bin"));
}

// The file at the start of an area of 0xFF bytes.
Bytes Written(const Bytes& vFile, size_t uArea = kArea)
{
    Bytes v(vFile);
    v.resize(uArea, 0xFF);
    return v;
}

class FruRoundTripTest : public ::testing::TestWithParam<std::tuple<Route, const char*>> {};

TEST_P(FruRoundTripTest, DownloadsThenVerifies)
{
    const Route eRoute = std::get<0>(GetParam());
    const std::string sName = std::get<1>(GetParam());
    const std::string sFile = "sample-" + sName + ".fru";
    // A text file's image is that of its raw twin, and it is read without a word.
    const std::string sRawTwin = "sample-" + sName.substr(0, sName.find('-')) + ".fru";
    const std::string sRecognized = (sFile == sRawTwin) ? kBinary : "";
    SimSession sBmc;
    ASSERT_EQ(0, sBmc.Sim({"fru-create", "3", std::to_string(kArea)}).iStatus);
    RunResult sDownload = sBmc.Tavrin(eRoute, {"-d", sFile, "fruID=3"});
    EXPECT_EQ(0, sDownload.iStatus);
    EXPECT_EQ(sRecognized + kDownloaded.substr(kBinary.size()), AfterBanner(sDownload.sOut));
    EXPECT_EQ("", sDownload.sErr);
    EXPECT_EQ(Written(ReadFileBytes(sBmc.File(sRawTwin))), Device(sBmc, 3));

    RunResult sVerify = sBmc.Tavrin(eRoute, {"-v", sFile, "fruID=0x03"});
    EXPECT_EQ(0, sVerify.iStatus);
    EXPECT_EQ(sRecognized + "Verify FRU file " + sFile + " with FRU inventory successful! \n\n",
              AfterBanner(sVerify.sOut));
    EXPECT_EQ("", sVerify.sErr);
}

INSTANTIATE_TEST_SUITE_P(RoutesAndExamples, FruRoundTripTest,
                         ::testing::Combine(::testing::Values(Route::Driver, Route::KcsIO, Route::Lan),
                                            ::testing::Values("server", "card", "server-utf16", "card-utf8")),
                         [](const auto& i) {
                             std::string sName = std::string(RouteName(std::get<0>(i.param))) + std::get<1>(i.param);
                             sName.erase(std::remove(sName.begin(), sName.end(), '-'), sName.end());
                             return sName;
                         });

// sample-server.fru (255 bytes) and a device set up so, then tavrin on the driver route.
struct FruOutcomeCase {
    const char* pchName;
    std::vector<std::vector<std::string>> vSimSetup;
    std::vector<std::string> vArgs;
    int iStatus;
    std::string sOut;  // behind the banner
    std::string sErr;  // the notes of a failure follow
    std::function<Bytes(const Bytes& vFile)> fnDevice;  // what FRU device 0 holds afterwards
};

const std::vector<std::string> kDownload = {"-d", "sample-server.fru", "fruID=0"};
const std::vector<std::string> kVerify = {"-v", "sample-server.fru", "fruID=0"};
const std::vector<std::string> kArea512 = {"fru-create", "0", "512"};
const std::vector<std::string> kLoaded = {"fru-load", "0", "sample-server.fru", "512"};
const std::string kReadFailed = "<ERROR> Error in executing IPMI command because of: Failure to read data from FRU.\n";
const std::string kDifferent = "The FRU data in file and FRU inventory are different!\nVerify FRU file failed!\n";

class FruOutcomeTest : public ::testing::TestWithParam<FruOutcomeCase> {};

TEST_P(FruOutcomeTest, EndsAsTheOutcomeTableSays)
{
    const FruOutcomeCase& c = GetParam();
    SimSession sBmc;
    Bytes vChanged = ReadFileBytes(sBmc.File("sample-server.fru"));
    vChanged[0x40]++;
    WriteFileBytes(sBmc.File("changed.fru"), vChanged);
    for (std::vector<std::string> vArgs : c.vSimSetup) {
        for (std::string& sArg : vArgs) sArg = (sArg.find(".fru") != std::string::npos) ? sBmc.File(sArg) : sArg;
        ASSERT_EQ(0, sBmc.Sim(vArgs).iStatus) << vArgs[0];
    }
    RunResult s = sBmc.Tavrin(Route::Driver, c.vArgs);
    EXPECT_EQ(c.iStatus, s.iStatus);
    EXPECT_EQ(c.sOut, AfterBanner(s.sOut));
    EXPECT_EQ(c.sErr + (c.iStatus != 0 ? kNotes : ""), s.sErr);
    EXPECT_EQ(c.fnDevice(ReadFileBytes(sBmc.File("sample-server.fru"))), Device(sBmc));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FruOutcomeTest,
    ::testing::Values(
        FruOutcomeCase{"AreaOfExactlyTheFileSize", {{"fru-create", "0", "255"}}, kDownload, 0, kDownloaded, "",
                       [](const Bytes& v) { return v; }},
        FruOutcomeCase{"AreaOneByteTooSmall", {{"fru-create", "0", "254"}}, kDownload, 1,
                       kBinary + "Start to download FRU data! \n",
                       "FRU file size too big, can not download. \nFailure to download FRU data! \n\n",
                       [](const Bytes&) { return Bytes(254, 0xFF); }},
        FruOutcomeCase{"WriteRefusedHalfWayKeepsWhatWasWritten",
                       {kArea512, {"fault", "0x0a", "0x12", "3", "cc", "0x80"}}, kDownload, 1,
                       kBinary + "Start to download FRU data! \n",
                       "<ERROR> Error in executing IPMI command because of: Failure to write data to FRU.\ncc = 80 \n"
                       "Failure to download FRU data! \n\n",
                       [](const Bytes& v) { return Written(Bytes(v.begin(), v.begin() + 32)); }},
        FruOutcomeCase{"WriteThatStopsHalfWayIsReported", {kArea512, {"fault", "0x0a", "0x12", "2", "partial", "5"}},
                       kDownload, 0, kDownloaded, "Warning: FRU device wrote 5 of 16 bytes at offset 0x10. \n",
                       [](const Bytes& v) {
                           Bytes vDevice = Written(v);
                           std::fill(vDevice.begin() + 0x15, vDevice.begin() + 0x20, 0xFF);
                           return vDevice;
                       }},
        FruOutcomeCase{"DownloadToAnUnknownFruID", {kArea512}, {"-d", "sample-server.fru", "fruID=5"}, 1, kBinary,
                       "<ERROR> Error in executing IPMI command because of: \nFRU Device 0x5 error or not exist.\n"
                       "cc = CB \nFailure to download FRU data! \n\n",
                       [](const Bytes&) { return Bytes(512, 0xFF); }},
        FruOutcomeCase{"VerifyAnUnknownFruID", {kLoaded}, {"-v", "sample-server.fru", "fruID=0xFE"}, 1, kBinary,
                       "<ERROR> Error in executing IPMI command because of: \nFRU Device 0xFE error or not exist.\n"
                       "cc = CB \nFailure to check the FRU Inventory device.\nVerify FRU file failed!\n",
                       [](const Bytes& v) { return Written(v, 512); }},
        FruOutcomeCase{"VerifyChangedDevice", {{"fru-load", "0", "changed.fru", "512"}}, kVerify, 1, kBinary,
                       kDifferent,
                       [](const Bytes& v) { Bytes vDevice = Written(v); vDevice[0x40]++; return vDevice; }},
        FruOutcomeCase{"VerifyShortRead", {kLoaded, {"fault", "0x0a", "0x11", "3", "partial", "4"}}, kVerify, 1,
                       kBinary,
                       kReadFailed + "cc = 0 \nOnly 4 of 16 bytes came back from offset 0x20. \n" + kDifferent,
                       [](const Bytes& v) { return Written(v); }}),
    [](const ::testing::TestParamInfo<FruOutcomeCase>& i) { return std::string(i.param.pchName); });

}  // namespace
