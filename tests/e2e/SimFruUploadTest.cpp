// -u with fruID= against the simulated BMC: uploads that read back into the device's
// bytes on every route, and each outcome with its exact texts and what it leaves of the file.
#include <gtest/gtest.h>

#include "FruRandomImage.h"
#include "SimSession.h"

namespace {

using Bytes = std::vector<uint8_t>;

const std::string kNotes =
    "\nNote: If the option, -msgintf kcsio, is used,\n      make sure KCS driver modules are not loaded!\n\n";

std::string Uploaded(const std::string& sFile)
{
    return "Start to save FRU file, " + sFile + " \nThe FRU data has been saved in file " + sFile +
           "! \nUpload FRU data successful. \n\n";
}

// Seed 0: sample-server.fru; others: a random image (with Unicode unless the file is ASCII).
struct RoundTrip { Route eRoute; uint32_t u32Seed; const char* pchEncoding; };

class FruUploadRoundTripTest : public testing::TestWithParam<RoundTrip> {};

// The file is tested, downloaded into a cleared device (0xFF, as around the image before)
// and verified: the device then holds the image.
TEST_P(FruUploadRoundTripTest, TheFileHoldsTheDeviceByteForByte)
{
    const RoundTrip& c = GetParam();
    SimSession sBmc;
    const std::string sEncoding = c.pchEncoding;
    const Bytes vImage = c.u32Seed != 0 ? FruRandomImage(c.u32Seed, sEncoding != "ascii")
                                        : ReadFileBytes(sBmc.File("sample-server.fru"));
    const std::string sSize = std::to_string(vImage.size() + 20);
    WriteFileBytes(sBmc.File("image.fru"), vImage);
    ASSERT_EQ(0, sBmc.Sim({"fru-load", "0", sBmc.File("image.fru"), sSize}).iStatus);
    const RunResult sUpload = sBmc.Tavrin(c.eRoute, {"-u", "up.fru", "encoding=" + sEncoding, "fruID=0"});
    EXPECT_EQ(0, sUpload.iStatus);
    EXPECT_EQ(Uploaded("up.fru"), AfterBanner(sUpload.sOut));
    EXPECT_EQ("", sUpload.sErr);
    EXPECT_EQ(0, sBmc.Tavrin(c.eRoute, {"-t", "up.fru", "fruID=0"}).iStatus);
    ASSERT_EQ(0, sBmc.Sim({"fru-create", "0", sSize}).iStatus);
    EXPECT_EQ(0, sBmc.Tavrin(c.eRoute, {"-d", "up.fru", "fruID=0"}).iStatus);
    EXPECT_EQ(0, sBmc.Tavrin(c.eRoute, {"-v", "up.fru", "fruID=0"}).iStatus);
    ASSERT_EQ(0, sBmc.Sim({"fru-save", "0", sBmc.File("device.bin")}).iStatus);
    const Bytes vAfter = ReadFileBytes(sBmc.File("device.bin"));
    EXPECT_EQ(vImage, Bytes(vAfter.begin(), vAfter.begin() + vImage.size()));
}

INSTANTIATE_TEST_SUITE_P(
    RoutesAndImages, FruUploadRoundTripTest,
    testing::Values(RoundTrip{Route::Driver, 0, "ascii"}, RoundTrip{Route::Driver, 0, "utf8"},
                    RoundTrip{Route::Driver, 0, "utf16"}, RoundTrip{Route::Driver, 1, "ascii"},
                    RoundTrip{Route::Driver, 2, "utf8"}, RoundTrip{Route::Driver, 3, "utf16"},
                    RoundTrip{Route::Driver, 4, "utf8"}, RoundTrip{Route::Driver, 5, "utf16"},
                    RoundTrip{Route::KcsIO, 0, "utf16"}, RoundTrip{Route::KcsIO, 6, "utf8"},
                    RoundTrip{Route::Lan, 0, "utf8"}, RoundTrip{Route::Lan, 7, "utf16"}),
    [](const testing::TestParamInfo<RoundTrip>& i) {
        return std::string(RouteName(i.param.eRoute)) + std::to_string(i.param.u32Seed) + i.param.pchEncoding;
    });

// FRU device 0 holds sample-server.fru, in an area of 512 bytes, with one byte made 1
// more if the row says; old.fru holds "old"; tavrin -u old.fru ... fruID=N, answered y.
struct UploadCase {
    const char* pchName;
    std::string sEncoding;
    std::string sFruID;
    size_t uChangedAt;  // 0: none
    int iStatus;
    std::string sOut;  // behind the banner and the prompt
    std::string sErr;
    std::string sLeft;  // the start of old.fru afterwards
};

class FruUploadCommandTest : public testing::TestWithParam<UploadCase> {};

TEST_P(FruUploadCommandTest, PrintsExactlyThisAndLeavesTheFileAsPromised)
{
    const UploadCase& c = GetParam();
    SimSession sBmc;
    Bytes vImage = ReadFileBytes(sBmc.File("sample-server.fru"));
    vImage[c.uChangedAt] = static_cast<uint8_t>(vImage[c.uChangedAt] + (c.uChangedAt != 0 ? 1 : 0));
    WriteFileBytes(sBmc.File("image.fru"), vImage);
    ASSERT_EQ(0, sBmc.Sim({"fru-load", "0", sBmc.File("image.fru"), "512"}).iStatus);
    WriteFileText(sBmc.File("old.fru"), "old");
    const RunResult s =
        sBmc.Tavrin(Route::Driver, {"-u", "old.fru", "encoding=" + c.sEncoding, "fruID=" + c.sFruID}, "y\n");
    EXPECT_EQ(c.iStatus, s.iStatus);
    EXPECT_EQ("File exists, do you want to replace it, y/n? " + c.sOut, AfterBanner(s.sOut));
    EXPECT_EQ(c.sErr, s.sErr);
    EXPECT_EQ(c.sLeft, ReadFileText(sBmc.File("old.fru")).substr(0, c.sLeft.size()));
}

const std::string kFailed = "Failure to upload FRU data!\n" + kNotes;

INSTANTIATE_TEST_SUITE_P(
    Rows, FruUploadCommandTest,
    testing::Values(
        UploadCase{"Replaced", "utf8", "0", 0, 0, Uploaded("old.fru"), "", "\xEF\xBB\xBF_FRU (\n_SEE_COMMON\n01\n"},
        UploadCase{"UnknownDevice", "ascii", "5", 0, 1, "",
                   "<ERROR> Error in executing IPMI command because of: \nFRU Device 0x5 error or not exist.\n"
                   "cc = CB \nFailure to check the FRU Inventory device.\n" + kFailed, "old"},
        UploadCase{"DeviceImageInvalid", "utf16", "0", 0x40, 1, "Start to save FRU file, old.fru \n",
                   "<ERROR> Incorrect FRU data. \nError checksum in BOARD Area. \n" + kFailed, "old"}),
    [](const testing::TestParamInfo<UploadCase>& i) { return std::string(i.param.pchName); });

}  // namespace
