// -d then -v of SDR text files against the simulated BMC, on every route.
#include <gtest/gtest.h>

#include <sstream>

#include "SimSession.h"

namespace {

struct TextRoundTrip { Route eRoute; const char* pchEncoding; };

class TextRoundTripTest : public testing::TestWithParam<TextRoundTrip> {};

TEST_P(TextRoundTripTest, DownloadsThenVerifies)
{
    const std::string sFile = std::string("sample-") + GetParam().pchEncoding + ".sdr";
    SimSession sBmc;
    WriteFileBytes(sBmc.File(sFile), ReadFileBytes(SourceDir() + "/examples/" + sFile));
    ASSERT_EQ(0, sBmc.Sim({"sdr-add", "400051c005570100aabb"}).iStatus);

    RunResult sDownload = sBmc.Tavrin(GetParam().eRoute, {"-d", sFile});
    ASSERT_EQ(0, sDownload.iStatus) << sDownload.sErr;
    EXPECT_EQ("", sDownload.sErr);
    EXPECT_NE(std::string::npos, sDownload.sOut.find("Download SDR data Successful. (Dh SDR records downloaded!) \n"));
    std::istringstream sRecords(sBmc.Records());
    std::string sLine;
    size_t uRecords = 0;
    while (std::getline(sRecords, sLine)) uRecords++;
    EXPECT_EQ(13u, uRecords);

    RunResult sVerify = sBmc.Tavrin(GetParam().eRoute, {"-v", sFile});
    EXPECT_EQ(0, sVerify.iStatus) << sVerify.sErr;
    EXPECT_NE(std::string::npos, sVerify.sOut.find("Verify SDR file " + sFile + " with SDR repository successful! \n\n"));
}

INSTANTIATE_TEST_SUITE_P(RoutesAndEncodings, TextRoundTripTest,
                         testing::Values(TextRoundTrip{Route::Driver, "ascii"}, TextRoundTrip{Route::KcsIO, "utf8"},
                                         TextRoundTrip{Route::Lan, "utf16"}),
                         [](const testing::TestParamInfo<TextRoundTrip>& i) {
                             return std::string(RouteName(i.param.eRoute)) + "_" + i.param.pchEncoding;
                         });

TEST(TextDownload, ABrokenTextFileNeverTouchesTheRepository)
{
    SimSession sBmc;
    ASSERT_EQ(0, sBmc.Sim({"sdr-add", "400051c005570100aabb"}).iStatus);
    WriteFileText(sBmc.File("bad.sdr"), "_SDR (\n_SDR_TYPE C0\n_REC_LEN 08\n01 00 51 C0 03 57 01\n)\n");
    sBmc.ClearLog();
    RunResult s = sBmc.Tavrin(Route::Driver, {"-d", "bad.sdr"});
    EXPECT_EQ(1, s.iStatus);
    EXPECT_EQ("<ERROR> SDR file format error.\n')' is not a Hex byte data in record type C0h. (line 5) \n"
              "Failure to download SDR data!\n\n"
              "\nNote: If the option, -msgintf kcsio, is used,\n      make sure KCS driver modules are not loaded!\n\n",
              s.sErr);
    for (const SimExchange& sExchange : sBmc.Log()) EXPECT_EQ(0x01, sExchange.iCommand);  // Get Device ID only
    EXPECT_NE(std::string::npos, sBmc.Records().find("570100aabb"));
}

}  // namespace
