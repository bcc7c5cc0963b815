// -u against the simulated BMC: the command lines and the replace prompt with their
// exact texts, what a failure leaves of the file, the exchanges an upload makes, and
// that an uploaded file reads back into the same records on every route.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>

#include "BinarySDRWriter.h"
#include "RandomRecords.h"
#include "SimSession.h"

namespace {

const std::string kNotes =
    "\nNote: If the option, -msgintf kcsio, is used,\n      make sure KCS driver modules are not loaded!\n\n";
const std::string kPrompt = "File exists, do you want to replace it, y/n? ";
const std::string kUploadLine = "    Start to upload SDR record ID 0040h, type C0h ... \n";
const std::string kSaved = "_SDR (\n_SDR_TYPE   C0\n_REC_LEN   0A\n40\n00\n51\nC0\n05\n57\n01\n00\nAA\nBB\n\n\n)\n";
const std::string kMissing = "(missing)";

std::string Uploaded(const std::string& sFile)
{
    return kUploadLine + "Start to save sdr file, " + sFile + " \nThe SDR data has been saved in file " + sFile + "! \n";
}

// A repository of one OEM record; old.sdr holds "old" when bOldFile is set.
struct UploadCase {
    const char* pchName;
    std::vector<std::string> vArgs;  // behind -u
    bool bOldFile;
    std::string sStdin;
    std::vector<std::string> vFault;  // behind "fault", or none
    int iStatus;
    std::string sOut;  // behind the banner
    std::string sErr;
    std::string sLeft;  // the named file afterwards
};

class UploadCommandTest : public testing::TestWithParam<UploadCase> {};

TEST_P(UploadCommandTest, PrintsExactlyThisAndLeavesTheFileAsPromised)
{
    const UploadCase& c = GetParam();
    SimSession sBmc;
    ASSERT_EQ(0, sBmc.Sim({"sdr-add", "400051c005570100aabb"}).iStatus);
    if (!c.vFault.empty()) {
        std::vector<std::string> vFault = {"fault"};
        vFault.insert(vFault.end(), c.vFault.begin(), c.vFault.end());
        ASSERT_EQ(0, sBmc.Sim(vFault).iStatus);
    }
    if (c.bOldFile) WriteFileText(sBmc.File("old.sdr"), "old");
    sBmc.ClearLog();
    std::vector<std::string> vArgs = {"-u"};
    vArgs.insert(vArgs.end(), c.vArgs.begin(), c.vArgs.end());
    RunResult s = sBmc.Tavrin(Route::Driver, vArgs, c.sStdin);
    EXPECT_EQ(c.iStatus, s.iStatus);
    const size_t uBanner = s.sOut.rfind(std::string(79, '-') + "\n");
    ASSERT_NE(std::string::npos, uBanner) << s.sOut;
    EXPECT_EQ(c.sOut, s.sOut.substr(uBanner + 80));
    EXPECT_EQ(c.sErr, s.sErr);
    struct stat sStat;
    const std::string sPath = sBmc.File(c.vArgs[0]);
    EXPECT_EQ(c.sLeft, stat(sPath.c_str(), &sStat) == 0 ? ReadFileText(sPath) : kMissing);
    if (!c.bOldFile && c.sLeft != kMissing) {
        EXPECT_EQ(0600, sStat.st_mode & 0777);
    }
    EXPECT_EQ(c.sOut.find(kUploadLine) == std::string::npos, sBmc.Log().empty()) << "contacted only to upload";
}

const std::vector<std::string> kGetSDRFails = {"0x0a", "0x23", "2", "cc", "0xc5"};
const std::string kGetSDRFailure =
    "<ERROR> Error in executing IPMI command because of: Failure to get data from SDR repository.\ncc = C5 \n"
    "Failure to upload SDR data!\n" + kNotes;

INSTANTIATE_TEST_SUITE_P(
    CommandLines, UploadCommandTest,
    testing::Values(
        UploadCase{"NewFile", {"new.sdr", "encoding=ascii"}, false, "", {}, 0, Uploaded("new.sdr"), "", kSaved},
        UploadCase{"ReplaceAnswered_y", {"old.sdr", "encoding=ascii"}, true, "y\n", {}, 0,
                   kPrompt + Uploaded("old.sdr"), "", kSaved},
        UploadCase{"ReplaceAnswered_Yes", {"old.sdr", "encoding=ascii"}, true, " Yes\n", {}, 0,
                   kPrompt + Uploaded("old.sdr"), "", kSaved},
        UploadCase{"ReplaceAnswered_n", {"old.sdr", "encoding=ascii"}, true, "n\n", {}, 0, kPrompt, "", "old"},
        UploadCase{"ReplaceAnswered_xy", {"old.sdr", "encoding=ascii"}, true, "xy\n", {}, 0, kPrompt, "", "old"},
        UploadCase{"ReplaceWithInputClosed", {"old.sdr", "encoding=ascii"}, true, "", {}, 1, kPrompt + "\n",
                   "<ERROR> No answer: standard input has ended. old.sdr was not replaced.\n" + kNotes, "old"},
        UploadCase{"FailsMidUploadOldFile", {"old.sdr", "encoding=utf8"}, true, "y", kGetSDRFails, 1,
                   kPrompt + kUploadLine, kGetSDRFailure, "old"},
        UploadCase{"FailsMidUploadNewFile", {"new.sdr", "encoding=utf16"}, false, "", kGetSDRFails, 1, kUploadLine,
                   kGetSDRFailure, ""},
        UploadCase{"FruIDBeforeEncoding", {"a.sdr", "fruID=0x00", "encoding=ascii"}, false, "", {}, 1,
                   "<ERROR> Incorrect command format.\n\rInvalid operations.\n\rUse TAVRIN -h for help.\n", kNotes,
                   kMissing},
        UploadCase{"EncodingWithDash", {"a.sdr", "encoding=utf-8"}, false, "", {}, 1,
                   "<ERROR> Unrecognized encoding type!\n\rUse TAVRIN -h for help.\n", kNotes, kMissing},
        UploadCase{"EncodingInCapitals", {"a.sdr", "encoding=ASCII"}, false, "", {}, 1,
                   "<ERROR> Unrecognized encoding type!\n\rUse TAVRIN -h for help.\n", kNotes, kMissing},
        UploadCase{"NoEncoding", {"a.sdr", ","}, false, "", {}, 1,
                   "<ERROR> Please specify a file encoding type!\n\rUse TAVRIN -h for help.\n", kNotes, kMissing},
        UploadCase{"EmptyThirdArgument", {"a.sdr", "encoding=ascii", ""}, false, "", {}, 1,
                   "<ERROR> Unknown flag: \n \nInvalid operations. \n\n\rUse TAVRIN -h for help.\n", kNotes, kMissing},
        UploadCase{"OtherParameter", {"a.sdr", "encoding=ascii", "FruId=1"}, false, "", {}, 1, "",
                   "<ERROR> 'FruId=1' is an invalid parameter for -u! \n\n" + kNotes, kMissing},
        UploadCase{"FruData", {"a.sdr", "encoding=ascii", "fruID=0x01"}, false, "", {}, 1, "",
                   "<ERROR> FRU data cannot be uploaded by this version of TAVRIN. \n" + kNotes, kMissing},
        UploadCase{"MissingDirectory", {"no/a.sdr", "encoding=ascii"}, false, "", {}, 1, "",
                   "<ERROR> Directory does not exist or file error.\n" + kNotes, kMissing}),
    [](const testing::TestParamInfo<UploadCase>& i) { return i.param.pchName; });

// Uploads on a route; the file is tested, read back by the simulator with its record
// IDs, downloaded into an emptied repository and verified.
struct RoundTrip { Route eRoute; uint32_t u32Seed; const char* pchEncoding; };  // seed 0: the text examples

class UploadRoundTripTest : public testing::TestWithParam<RoundTrip> {};

TEST_P(UploadRoundTripTest, TheFileHoldsTheRepositoryByteForByte)
{
    const RoundTrip& c = GetParam();
    const std::vector<TRecord> vRecords =
        c.u32Seed != 0 ? RandomRecordSet(c.u32Seed, 5 + c.u32Seed % 20) : TextExampleRecordSet();
    SimSession sBmc;
    WriteFileBytes(sBmc.File("set.sdr"), BuildBinarySDRFile(1, vRecords));
    ASSERT_EQ(0, sBmc.Sim({"sdr-load", sBmc.File("set.sdr")}).iStatus);
    const std::string sRecords = sBmc.Records(), sContents = sBmc.RecordsWithoutIDs();

    RunResult sUpload = sBmc.Tavrin(c.eRoute, {"-u", "up.sdr", std::string("encoding=") + c.pchEncoding});
    ASSERT_EQ(0, sUpload.iStatus) << sUpload.sErr;
    EXPECT_EQ("", sUpload.sErr);
    RunResult sTest = sBmc.Tavrin(c.eRoute, {"-t", "up.sdr"});
    EXPECT_EQ(0, sTest.iStatus) << sTest.sErr;
    ASSERT_EQ(0, sBmc.Sim({"sdr-clear"}).iStatus);
    ASSERT_EQ(0, sBmc.Sim({"sdr-load", sBmc.File("up.sdr")}).iStatus);
    EXPECT_EQ(sRecords, sBmc.Records());

    ASSERT_EQ(0, sBmc.Sim({"sdr-clear"}).iStatus);
    RunResult sDownload = sBmc.Tavrin(c.eRoute, {"-d", "up.sdr"});
    EXPECT_EQ(0, sDownload.iStatus) << sDownload.sErr;
    RunResult sVerify = sBmc.Tavrin(c.eRoute, {"-v", "up.sdr"});
    EXPECT_EQ(0, sVerify.iStatus) << sVerify.sErr;
    EXPECT_EQ(sContents, sBmc.RecordsWithoutIDs());
}

INSTANTIATE_TEST_SUITE_P(
    RoutesAndSets, UploadRoundTripTest,
    testing::Values(RoundTrip{Route::Driver, 0, "ascii"}, RoundTrip{Route::Driver, 0, "utf8"},
                    RoundTrip{Route::Driver, 0, "utf16"}, RoundTrip{Route::Driver, 1, "ascii"},
                    RoundTrip{Route::Driver, 2, "utf8"}, RoundTrip{Route::Driver, 3, "utf16"},
                    RoundTrip{Route::Driver, 4, "ascii"}, RoundTrip{Route::Driver, 5, "utf8"},
                    RoundTrip{Route::KcsIO, 0, "utf8"}, RoundTrip{Route::KcsIO, 6, "utf16"},
                    RoundTrip{Route::Lan, 0, "utf16"}, RoundTrip{Route::Lan, 7, "ascii"}),
    [](const testing::TestParamInfo<RoundTrip>& i) {
        return std::string(RouteName(i.param.eRoute)) + "Seed" + std::to_string(i.param.u32Seed) + "_" +
               i.param.pchEncoding;
    });

// The repository's info, then for each record a reservation of its own,
// its header and its body in chunks of at most 16 bytes, following the chain of IDs.
TEST(UploadExchanges, AreExactlyThoseTheAlgorithmPrescribes)
{
    SimSession sBmc;
    ASSERT_EQ(0, sBmc.Sim({"sdr-load", sBmc.File("sample-v1.sdr")}).iStatus);
    sBmc.ClearLog();
    ASSERT_EQ(0, sBmc.Tavrin(Route::Driver, {"-u", "up.sdr", "encoding=ascii"}).iStatus);
    const std::vector<SimExchange> vLog = sBmc.Log();
    ASSERT_GE(vLog.size(), 1u);
    EXPECT_EQ(0x20, vLog[0].iCommand);
    size_t u = 1;
    uint16_t u16RecordID = 0, u16Next = 0;
    for (const TRecord& v : ExampleRecordSet()) {
        ASSERT_LT(u, vLog.size());
        ASSERT_EQ(0x22, vLog[u].iCommand);
        const std::vector<uint8_t> vReservation = vLog[u++].vResponse;
        for (size_t uOffset = 0; uOffset < v.size(); uOffset += (uOffset == 0 ? 5 : 16)) {
            const size_t uCount = uOffset == 0 ? 5 : std::min<size_t>(16, v.size() - uOffset);
            const std::vector<uint8_t> vRequest = {vReservation[0], vReservation[1], static_cast<uint8_t>(u16RecordID),
                                                   static_cast<uint8_t>(u16RecordID >> 8), static_cast<uint8_t>(uOffset),
                                                   static_cast<uint8_t>(uCount)};
            ASSERT_LT(u, vLog.size());
            EXPECT_EQ(0x23, vLog[u].iCommand);
            EXPECT_EQ(vRequest, vLog[u].vRequest);
            u16Next = static_cast<uint16_t>(vLog[u].vResponse[0] | vLog[u].vResponse[1] << 8);
            u++;
        }
        u16RecordID = u16Next;
    }
    EXPECT_EQ(0xFFFF, u16Next);
    EXPECT_EQ(vLog.size(), u);
}

}  // namespace
