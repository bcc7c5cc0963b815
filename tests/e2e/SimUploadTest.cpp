// -u against the simulated BMC: command lines, the replace prompt and refused records
// with their exact texts and what they leave of the file; the exchanges of an upload;
// and uploads that read back into the same records on every route.
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
const std::string kOem = "400051c005570100aabb";
const std::string kSaved = "_SDR (\n_SDR_TYPE   C0\n_REC_LEN   0A\n40\n00\n51\nC0\n05\n57\n01\n00\nAA\nBB\n\n\n)\n";
const std::string kMissing = "(no file)";
const std::string kFailed = "Failure to upload SDR data!\n" + kNotes;
const std::string kHelp = "\n\rUse TAVRIN -h for help.\n";

std::string UploadLine(const std::string& sType)
{
    return "    Start to upload SDR record ID 0040h, type " + sType + "h ... \n";
}
std::string Fetched(const std::string& sType, const std::string& sFile)
{
    return UploadLine(sType) + "Start to save sdr file, " + sFile + " \n";
}
std::string Saved(const std::string& sFile)
{
    return Fetched("C0", sFile) + "The SDR data has been saved in file " + sFile + "! \n";
}

// The repository holds one record; old.sdr holds "old" beforehand.
struct UploadCase {
    const char* pchName;
    std::vector<std::string> vArgs;  // behind -u
    std::string sRecord;
    std::string sStdin;
    bool bGetSDRFails;  // the second Get SDR, the first body chunk, is refused with C5h
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
    ASSERT_EQ(0, sBmc.Sim({"sdr-add", c.sRecord}).iStatus);
    if (c.bGetSDRFails) {
        ASSERT_EQ(0, sBmc.Sim({"fault", "0x0a", "0x23", "2", "cc", "0xc5"}).iStatus);
    }
    WriteFileText(sBmc.File("old.sdr"), "old");
    sBmc.ClearLog();
    std::vector<std::string> vArgs = {"-u"};
    vArgs.insert(vArgs.end(), c.vArgs.begin(), c.vArgs.end());
    const RunResult s = sBmc.Tavrin(Route::Driver, vArgs, c.sStdin);
    EXPECT_EQ(c.iStatus, s.iStatus);
    const size_t uBanner = s.sOut.rfind(std::string(79, '-') + "\n");
    ASSERT_NE(std::string::npos, uBanner) << s.sOut;
    EXPECT_EQ(c.sOut, s.sOut.substr(uBanner + 80));
    EXPECT_EQ(c.sErr, s.sErr);
    struct stat sStat;
    const std::string sPath = sBmc.File(c.vArgs[0]);
    EXPECT_EQ(c.sLeft, stat(sPath.c_str(), &sStat) == 0 ? ReadFileText(sPath) : kMissing);
    if (c.vArgs[0] == "new.sdr") {
        EXPECT_EQ(0600u, sStat.st_mode & 0777u);
    }
    EXPECT_EQ(c.sOut.find("Start to upload") == std::string::npos, sBmc.Log().empty()) << "asked only to upload";
}

const std::vector<std::string> kNew = {"new.sdr", "encoding=ascii"}, kOld = {"old.sdr", "encoding=ascii"};
const std::string kGetSDRFailed =
    "<ERROR> Error in executing IPMI command because of: Failure to get data from SDR repository.\ncc = C5 \n";
// A management controller locator 'BMC', with a zero byte in its name, or a code of four characters.
const std::string kNameWithZero = "400051120e200000bf0000002e0100c3420043";
const std::string kNameTooShort = "400051120e200000bf0000002e0100c4424d43";

INSTANTIATE_TEST_SUITE_P(
    CommandLines, UploadCommandTest,
    testing::Values(
        UploadCase{"NewFile", kNew, kOem, "", false, 0, Saved("new.sdr"), "", kSaved},
        UploadCase{"Answered_y", kOld, kOem, "y\n", false, 0, kPrompt + Saved("old.sdr"), "", kSaved},
        UploadCase{"Answered_Yes", kOld, kOem, " Yes\n", false, 0, kPrompt + Saved("old.sdr"), "", kSaved},
        UploadCase{"Answered_n", kOld, kOem, "n\n", false, 0, kPrompt, "", "old"},
        UploadCase{"Answered_xy", kOld, kOem, "xy\n", false, 0, kPrompt, "", "old"},
        UploadCase{"InputClosed", kOld, kOem, "", false, 1, kPrompt + "\n",
                   "<ERROR> No answer: standard input has ended. old.sdr was not replaced.\n" + kNotes, "old"},
        UploadCase{"FailsMidUploadOldFile", kOld, kOem, "y", true, 1, kPrompt + UploadLine("C0"),
                   kGetSDRFailed + kFailed, "old"},
        UploadCase{"FailsMidUploadNewFile", kNew, kOem, "", true, 1, UploadLine("C0"),
                   kGetSDRFailed + kFailed, ""},
        UploadCase{"ZeroInQuotedName", kOld, kNameWithZero, "y", false, 1, kPrompt + Fetched("12", "old.sdr"),
                   "<ERROR> Incorrect SDR data. \nThe ID string of record ID 0040h holds the byte 00h, which a quoted "
                   "string can't carry; the file is left as it was. (record 1) \n" + kFailed, "old"},
        UploadCase{"ReservedType", kOld, "4000510405aabbccddee", "y", false, 1, kPrompt + Fetched("4", "old.sdr"),
                   "<ERROR> Incorrect SDR data. \nRecord type (04h) is reserved. (record 1) \n" + kFailed, ""},
        UploadCase{"CodeSaysFourCharacters", kNew, kNameTooShort, "", false, 0,
                   Fetched("12", "new.sdr") + "The SDR data has been saved in file new.sdr! \n",
                   "Warning: The ID string of record ID 0040h has 03h characters, but its Type/Length Code (C4) "
                   "says 04h: reading the file back will refuse this record. (record 1) \n",
                   "_SDR (\n_SDR_TYPE   12\n_REC_LEN   13\n40\n00\n51\n12\n0E\n20\n00\n00\nBF\n00\n00\n00\n2E\n01\n00\n"
                   "C4\n'BMC'\n\n\n)\n"},
        UploadCase{"FruIDBeforeEncoding", {"a.sdr", "fruID=0x00", "encoding=ascii"}, kOem, "", false, 1,
                   "<ERROR> Incorrect command format.\n\rInvalid operations." + kHelp, kNotes, kMissing},
        UploadCase{"EncodingWithDash", {"a.sdr", "encoding=utf-8"}, kOem, "", false, 1,
                   "<ERROR> Unrecognized encoding type!" + kHelp, kNotes, kMissing},
        UploadCase{"EncodingInCapitals", {"a.sdr", "encoding=ASCII"}, kOem, "", false, 1,
                   "<ERROR> Unrecognized encoding type!" + kHelp, kNotes, kMissing},
        UploadCase{"NoEncoding", {"a.sdr", ","}, kOem, "", false, 1, "<ERROR> Please specify a file encoding type!" + kHelp,
                   kNotes, kMissing},
        UploadCase{"EmptyThirdArgument", {"a.sdr", "encoding=ascii", ""}, kOem, "", false, 1,
                   "<ERROR> Unknown flag: \n \nInvalid operations. \n" + kHelp, kNotes, kMissing},
        UploadCase{"OtherParameter", {"a.sdr", "encoding=ascii", "FruId=1"}, kOem, "", false, 1, "",
                   "<ERROR> 'FruId=1' is an invalid parameter for -u! \n\n" + kNotes, kMissing},
        UploadCase{"MissingDirectory", {"no/a.sdr", "encoding=ascii"}, kOem, "", false, 1, "",
                   "<ERROR> Directory does not exist or file error.\n" + kNotes, kMissing}),
    [](const testing::TestParamInfo<UploadCase>& i) { return i.param.pchName; });

// The file is tested, read back by the simulator with its record IDs, downloaded into an
// emptied repository and verified. Seed 0: the text example records.
struct RoundTrip { Route eRoute; uint32_t u32Seed; const char* pchEncoding; };

class UploadRoundTripTest : public testing::TestWithParam<RoundTrip> {};

TEST_P(UploadRoundTripTest, TheFileHoldsTheRepositoryByteForByte)
{
    const RoundTrip& c = GetParam();
    SimSession sBmc;
    WriteFileBytes(sBmc.File("set.sdr"), BuildBinarySDRFile(1, c.u32Seed != 0 ? RandomRecordSet(c.u32Seed, 5 + c.u32Seed % 20)
                                                                                  : TextExampleRecordSet()));
    ASSERT_EQ(0, sBmc.Sim({"sdr-load", sBmc.File("set.sdr")}).iStatus);
    const std::string sRecords = sBmc.Records(), sContents = sBmc.RecordsWithoutIDs();
    const RunResult sUpload = sBmc.Tavrin(c.eRoute, {"-u", "up.sdr", std::string("encoding=") + c.pchEncoding});
    ASSERT_EQ(0, sUpload.iStatus) << sUpload.sErr;
    EXPECT_EQ("", sUpload.sErr);
    EXPECT_EQ(0, sBmc.Tavrin(c.eRoute, {"-t", "up.sdr"}).iStatus);
    for (const std::vector<std::string>& v : {std::vector<std::string>{"sdr-clear"}, {"sdr-load", sBmc.File("up.sdr")}}) {
        ASSERT_EQ(0, sBmc.Sim(v).iStatus);
    }
    EXPECT_EQ(sRecords, sBmc.Records());
    ASSERT_EQ(0, sBmc.Sim({"sdr-clear"}).iStatus);
    EXPECT_EQ(0, sBmc.Tavrin(c.eRoute, {"-d", "up.sdr"}).iStatus);
    EXPECT_EQ(0, sBmc.Tavrin(c.eRoute, {"-v", "up.sdr"}).iStatus);
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
        return std::string(RouteName(i.param.eRoute)) + std::to_string(i.param.u32Seed) + i.param.pchEncoding;
    });

// The repository's info, then for each record (IDs 1 to 6, the first asked for as 0)
// a reservation of its own, its header and its body in chunks of at most 16 bytes.
TEST(UploadExchanges, AreExactlyThoseTheAlgorithmPrescribes)
{
    SimSession sBmc;
    ASSERT_EQ(0, sBmc.Sim({"sdr-load", sBmc.File("sample-v1.sdr")}).iStatus);
    sBmc.ClearLog();
    ASSERT_EQ(0, sBmc.Tavrin(Route::Driver, {"-u", "up.sdr", "encoding=ascii"}).iStatus);
    std::vector<std::vector<uint8_t>> vWanted = {{0x20}}, vMade;
    for (const TRecord& v : ExampleRecordSet()) {
        vWanted.push_back({0x22});
        const uint8_t u8Asked = v[0] == 1 ? 0 : v[0];
        for (size_t uOffset = 0; uOffset < v.size(); uOffset += (uOffset == 0 ? 5 : 16)) {
            const size_t uCount = uOffset == 0 ? 5 : std::min<size_t>(16, v.size() - uOffset);
            vWanted.push_back({0x23, 'R', u8Asked, 0, static_cast<uint8_t>(uOffset), static_cast<uint8_t>(uCount)});
        }
    }
    std::vector<uint8_t> vReservation;
    for (const SimExchange& s : sBmc.Log()) {
        vMade.push_back({static_cast<uint8_t>(s.iCommand)});
        if (s.iCommand == 0x22) vReservation = s.vResponse;
        if (s.iCommand == 0x23 && s.vRequest.size() == 6) {  // the reservation just made, then the rest
            vMade.back().push_back(s.vRequest[0] == vReservation.at(0) && s.vRequest[1] == vReservation.at(1) ? 'R' : 'X');
            vMade.back().insert(vMade.back().end(), s.vRequest.begin() + 2, s.vRequest.end());
        }
    }
    EXPECT_EQ(vWanted, vMade);
}

}  // namespace
