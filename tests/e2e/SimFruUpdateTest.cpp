// -updateFRU against the simulated BMC holding sample-server.fru: each string type and the
// date/time on every route, the device byte for byte, the exact exchanges, every failure.
#include <gtest/gtest.h>

#include <numeric>

#include "SimSession.h"

namespace {

using Bytes = std::vector<uint8_t>;
struct Patch { size_t uAt; Bytes vBytes; };

struct UpdateCase {
    const char* pchName;
    std::vector<std::string> vArgs;   // behind -updateFRU
    std::vector<std::string> vFault;  // a tavrin-bmcsim fault, or none
    std::string sExchanges;           // FRU reads and writes: r|w<offset>+<count>
    std::vector<Patch> vPatches;      // the device afterwards, over the image
    std::string sErr;                 // empty: success, on every route
    std::string sOut = "Update FRU data failed!\n\n";
};

const std::string kNotes =
    "\nNote: If the option, -msgintf kcsio, is used,\n      make sure KCS driver modules are not loaded!\n\n";
const std::string kWriteRefused = "<ERROR> Error in executing IPMI command because of: Failure to write data to FRU.\n";
const std::string kStillMatches = "The area checksum still matches the area. \n";
const std::string kMismatch = "The area checksum no longer matches the area. \n";
const std::vector<std::string> kChassisBCD = {"fieldName=snChassis", "offset=0x27", "strType=1", "strLength=8",
                                              "strValue=2024-06-30", "fruID=0"};
const std::vector<std::string> kBoard6Bit = {"fieldName=snBoard", "offset=0x63", "strType=2", "strLength=8",
                                             "strValue=BS24B99999", "fruID=0"};
const std::string kChassisReads = "r0+8 r26+1 r27+8 r19+1 r37+1 ";
const Patch kChassisField = {0x26, {0x48, 0x20, 0x24, 0xB0, 0x6B, 0x30, 0xAA, 0xAA, 0xAA}};

std::vector<std::string> Fault(const char* pchCommand, const char* pchNth, const char* pchKind, const char* pchValue)
{
    return {"fault", "0x0a", pchCommand, pchNth, pchKind, pchValue};
}

// Every exchange but Get Device ID (the LAN route's proof of login); FRU reads and writes
// as r|w<offset>+<count>.
std::string FruExchanges(const SimSession& sBmc)
{
    std::string s;
    for (const SimExchange& e : sBmc.Log()) {
        if (e.iCommand != 0x11 && e.iCommand != 0x12) {
            s += (e.iCommand != 0x01) ? "cmd" + std::to_string(e.iCommand) + " " : "";
            continue;
        }
        char achText[32];
        const bool bRead = e.iCommand == 0x11;
        snprintf(achText, sizeof(achText), "%c%X+%zu ", bRead ? 'r' : 'w', e.vRequest[1] | e.vRequest[2] << 8,
                 bRead ? e.vRequest[3] : e.vRequest.size() - 3);
        s += achText;
    }
    return s;
}

void PrintTo(const UpdateCase& c, std::ostream* pOut) { *pOut << c.pchName; }

class FruUpdateTest : public ::testing::TestWithParam<UpdateCase> {};

TEST_P(FruUpdateTest, ChangesTheFieldAndTheChecksumAndNothingElse)
{
    const UpdateCase& c = GetParam();
    for (Route eRoute : {Route::Driver, Route::KcsIO, Route::Lan}) {
        if (!c.sErr.empty() && eRoute != Route::Driver) break;
        SimSession sBmc;
        if (c.vArgs[0] == "fieldName=datetime") sBmc.UseProgram(BuildDir() + "/tests/tavrin-fixedclock");
        ASSERT_EQ(0, sBmc.Sim({"fru-load", "0", sBmc.File("sample-server.fru"), "256"}).iStatus);
        ASSERT_TRUE(c.vFault.empty() || sBmc.Sim(c.vFault).iStatus == 0);
        std::vector<std::string> vArgs = {"-updateFRU"};
        vArgs.insert(vArgs.end(), c.vArgs.begin(), c.vArgs.end());
        RunResult s = sBmc.Tavrin(eRoute, vArgs);
        EXPECT_EQ(c.sErr.empty() ? 0 : 1, s.iStatus) << RouteName(eRoute);
        EXPECT_EQ(c.sErr.empty() ? "Update FRU data successful!\n\n" : c.sOut, AfterBanner(s.sOut));
        EXPECT_EQ(c.sErr.empty() ? "" : c.sErr + kNotes, s.sErr);
        EXPECT_EQ(c.sExchanges, FruExchanges(sBmc));
        Bytes vExpected = ReadFileBytes(sBmc.File("sample-server.fru"));
        vExpected.resize(256, 0xFF);
        for (const Patch& p : c.vPatches) std::copy(p.vBytes.begin(), p.vBytes.end(), vExpected.begin() + p.uAt);
        ASSERT_EQ(0, sBmc.Sim({"fru-save", "0", sBmc.File("device.bin")}).iStatus);
        const Bytes vDevice = ReadFileBytes(sBmc.File("device.bin"));
        EXPECT_EQ(vExpected, vDevice);
        for (int iHeader = 2; c.sErr.empty() && iHeader <= 4; iHeader++) {  // each area still sums to 0
            const auto it = vDevice.begin() + vDevice[iHeader] * 8;
            EXPECT_EQ(0, std::accumulate(it, it + it[1] * 8, 0) % 256) << iHeader;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FruUpdateTest,
    ::testing::Values(
        UpdateCase{"Board6Bit", kBoard6Bit, {}, "r0+8 r62+1 r63+8 r39+1 r87+1 w62+1 w63+8 w87+1 ",
                   {{0x63, {0xE2, 0x2C, 0x51, 0x62, 0x96, 0x65, 0x59, 0x06}}, {0x87, {0x70}}}, ""},
        UpdateCase{"Product8BitInTwoPieces", {"fieldName=snProduct", "offset=0x9B", "strType=3", "strLength=0x13",
                                              "strValue=TS-4410 Rack Unit 2", "fruID=0"}, {},
                   "r0+8 r9A+1 r9B+16 rAB+3 r89+1 rCF+1 w9A+1 w9B+16 wAB+3 wCF+1 ",
                   {{0xA8, {'U', 'n', 'i', 't', ' ', '2'}}, {0xCF, {0x5A}}}, ""},
        UpdateCase{"ChassisBCDPaddedChangesTheType", kChassisBCD, {}, kChassisReads + "w26+1 w27+8 w37+1 ",
                   {kChassisField, {0x37, {0x97}}}, ""},
        UpdateCase{"DateTime", {"fieldName=datetime", "offset=0x3B", "fruID=0"}, {},
                   "r0+8 r3B+3 r39+1 r87+1 w3B+3 w87+1 ", {{0x3B, {0xB2, 0x05, 0xE2}}, {0x87, {0x6F}}}, ""},
        UpdateCase{"LengthMismatchWritesNothing", {"fieldName=snChassis", "offset=0x27", "strType=1", "strLength=9",
                                                   "strValue=2024-06-30", "fruID=0"}, {}, "r0+8 r26+1 ", {},
                   "<ERROR> String length specified must match string length in the FRU Inventory! \n"},
        UpdateCase{"FirstWriteRefused", kChassisBCD, Fault("0x12", "1", "cc", "0x80"), kChassisReads + "w26+1 ", {},
                   kWriteRefused + "cc = 80 \nNothing was written: FRU device 0x00 is unchanged. \n"},
        UpdateCase{"FieldWriteRefused", kChassisBCD, Fault("0x12", "2", "cc", "0x80"), kChassisReads + "w26+1 w27+8 ",
                   {{0x26, {0x48}}}, kWriteRefused + "cc = 80 \nWritten to FRU device 0x00: 0x0026. Not written: "
                                                     "0x0027-0x002E and the area checksum at 0x0037. \n" + kMismatch},
        UpdateCase{"SameTypeByteWrittenOnly", kBoard6Bit, Fault("0x12", "2", "cc", "0x80"),
                   "r0+8 r62+1 r63+8 r39+1 r87+1 w62+1 w63+8 ", {},  // the type/length byte written was the old one
                   kWriteRefused + "cc = 80 \nWritten to FRU device 0x00: 0x0062. Not written: 0x0063-0x006A and the "
                                   "area checksum at 0x0087. \n" + kStillMatches},
        UpdateCase{"FieldWriteStopsShort", kChassisBCD, Fault("0x12", "2", "partial", "5"),
                   kChassisReads + "w26+1 w27+8 ", {{0x26, {0x48, 0x20, 0x24, 0xB0, 0x6B, 0x30}}},
                   "Warning: FRU device wrote 5 of 8 bytes at offset 0x27. \nWritten to FRU device 0x00: "
                   "0x0026-0x002B. Not written: 0x002C-0x002E and the area checksum at 0x0037. \n" + kMismatch},
        UpdateCase{"ChecksumWriteRefused", kChassisBCD, Fault("0x12", "3", "cc", "0xc9"),
                   kChassisReads + "w26+1 w27+8 w37+1 ", {kChassisField}, kWriteRefused +
                   "cc = C9 \nWritten to FRU device 0x00: 0x0026-0x002E. Not written: the area checksum at 0x0037. \n" +
                   kMismatch},
        UpdateCase{"RefusedBeforeTheBMC", {"fieldName=datetime", "offset=0x3B", "fruID=0xFF"}, {}, "", {},
                   "<ERROR> FRU ID specified is reserved! \n", "Use TAVRIN -h for help.\n"}),
    [](const ::testing::TestParamInfo<UpdateCase>& i) { return std::string(i.param.pchName); });

}  // namespace
