// The -updateFRU parameters: exact refusals in their order, the new bytes of each string
// type, and the date/time at fixed clock values and time zones.
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "cli/FRUDateTime.h"
#include "cli/FRUUpdateData.h"

namespace {

const time_t kEpoch = 820454400;     // 1996-01-01 00:00 UTC
const time_t kLeapDay = 1709210096;  // 2024-02-29 12:34:56 UTC
time_t s_tClock;
time_t TestClock(time_t*) { return s_tClock; }

struct ParamCase {
    std::string sWords;       // the arguments, split at '|'
    std::string sErr;         // empty: accepted
    std::string sBytes = "";  // the new field bytes when accepted
    time_t tClock = kLeapDay;
    const char* pchZone = "UTC0";
};

void PrintTo(const ParamCase& c, std::ostream* pOut) { *pOut << c.sWords; }

class FRUUpdateParametersTest : public ::testing::TestWithParam<ParamCase> {};

TEST_P(FRUUpdateParametersTest, RefusesOrPreparesTheBytes)
{
    const ParamCase& c = GetParam();
    s_tClock = c.tClock;
    G_pfnSystemClock = TestClock;
    setenv("TZ", c.pchZone, 1);
    tzset();
    std::vector<std::string> vWords;
    std::istringstream sIn(c.sWords);
    for (std::string sWord; std::getline(sIn, sWord, '|');) vWords.push_back(sWord);
    std::vector<char*> vSlots;
    for (std::string& s : vWords) vSlots.push_back(&s[0]);
    vSlots.push_back(nullptr);
    sFRUUpdateData sData = {};
    testing::internal::CaptureStderr();
    const uint16_t u16Count = static_cast<uint16_t>(vWords.size());
    const int iResult = ValidateAnalyzeFRUUpdateDataParameters(u16Count, vSlots.data(), &sData);
    EXPECT_EQ(c.sErr, testing::internal::GetCapturedStderr());
    EXPECT_EQ(c.sErr.empty() ? 1 : 0, iResult);
    std::string sBytes;
    for (size_t i = 0; iResult && i < (IsFRUUpdateOfDateTime(&sData) ? 3u : sData.u8StringLength); i++) {
        char achByte[4];
        snprintf(achByte, sizeof(achByte), " %02X", sData.au8NewData[i]);
        sBytes += achByte;
    }
    EXPECT_EQ(c.sBytes, sBytes.substr(sBytes.empty() ? 0 : 1));
}

std::string Repeat(const std::string& s, size_t uTimes) { return uTimes == 0 ? "" : s + Repeat(s, uTimes - 1); }

using P = ParamCase;
const std::string kStr = "fieldName=snBoard|offset=10|fruID=0|";
const std::string kDate = "fieldName=datetime|offset=1|fruID=0";
// A refusal with the "<ERROR> " in front and the " \n" behind.
std::string E(const std::string& sText) { return "<ERROR> " + sText + " \n"; }
const std::string kLong(127, '7');
const std::string kTooLong = "The number of string data bytes exceeds the string length specified! \n";
const std::string kFailed = "Failure to update FRU data! \n";
const std::string kNoTime = "Cannot get the current time! \n" + kFailed;
const std::string kDigits = "  Digits: 0 1 2 3 4 5 6 7 8 9 \n";

INSTANTIATE_TEST_SUITE_P(
    Words, FRUUpdateParametersTest,
    ::testing::Values(
        P{"offset=0x1B|fruID=0x00|fieldName=datetime", "", "B2 05 E2"},
        P{"==offset=1B|fruID=FE|fieldName=datetime", "", "B2 05 E2"},  // '=' before a name is skipped
        P{kDate, "", "00 00 00", kEpoch + 59},
        P{kDate, "", "FF FF FF", kEpoch + 0xFFFFFFll * 60 + 59},  // 2027-11-24 20:15, the last minute
        P{kDate, "", "3C 00 00", kEpoch, "CET-1"},                // local midnight was 23:00 UTC
        P{kDate, kNoTime, "", kEpoch - 60}, P{kDate, kNoTime, "", -1},
        P{kStr + "strType=1|strLength=3|strValue=12345", "", "12 34 50"},
        P{kStr + "strType=1|strLength=4|strValue=12345", "", "12 34 5A AA"},
        P{kStr + "strType=1|strLength=0x3F|strValue=-.:,_", "", "BC DE FA" + Repeat(" AA", 60)},
        P{"strType=2|strLength=3|strValue=ABCD|" + kStr, "", "A1 38 92"},
        P{kStr + "strType=2|strLength=4|strValue=ABCD", "", "A1 38 92 00"},
        P{kStr + "strType=0x3|strLength=5|strValue=AB", "", "41 42 20 20 20"},
        P{kStr + "strType=3x|strLength=6|strValue=-a b=c", "", "2D 61 20 62 3D 63"},
        P{"", E("Please specify the FRU data you wish to update!")},
        P{kStr + "strType=3|strLength=5|strValue=AB|x=1", E("The number of parameters exceeds the maximum allowed!")},
        P{"fieldName|offset=1|fruID=0", E("Parameter has no value!")},
        P{"fieldName=datetime|offset=1|strValue=a=", E("Parameter has no value!")},
        P{"fieldName=x|strLength01=1|fruID", E("Parameter name (strLength01) is not allowed!")},
        P{"strValue=" + kLong, E("Parameter value (" + kLong + ") is over the maximum length!")},
        P{"offset=1|fruID=0|offset=2", E("Duplicated parameters found!")},
        P{"fieldName=DateTime|offset=1|fruID=0", E("Incorrect field name!")},
        P{"fieldName=datetime|offset=1|fruID=0x", E("FRU ID is not a number!")},
        P{"fruID=0xFF|fieldName=none|offset=1", E("FRU ID specified is reserved!")},
        P{"fieldName=datetime|offset=1|fruID=0x100", E("FRU ID must be in the range of 0x00~0xFE!")},
        P{"fieldName=datetime|offset=0xZ1|fruID=0", E("Offset is not a number!")},
        P{"fieldName=datetime|offset=0x10003|fruID=0", E("Offset must be in the range of 0x0000~0xFFFF!")},
        P{kStr + "strType=x|strLength=5|strValue=AB", E("Invalid string type!")},
        P{kStr + "strType=0x103|strLength=5|strValue=AB", E("Invalid string type!")},
        P{kStr + "strType=3|strLength=5h|strValue=AB", E("String length is not a number!")},
        P{kStr + "strType=3|strLength=0x40|strValue=AB", E("String length must be less than or equal to 63 bytes!")},
        P{kStr + "strType=3|strLength=0x13F|strValue=AB", E("String length must be less than or equal to 63 bytes!")},
        P{"fieldName=datetime|offset=1|color=1", E("Invalid parameter!")},
        P{kDate + "|strType=1", E("Incorrect number of parameters!")},
        P{"fieldName=datetime|strType=1|offset=0x10", E("Required parameter is not specified!")},
        P{"offset=1|fruID=0|strType=1", E("Incorrect number of parameters!")},
        P{kStr + "strType=3|strLength=5|strValue=A", E("The string cannot be 1 character long!")},
        P{kStr + "strType=3|strLength=5|strValue=" + std::string(64, 'A'),
          E("The string exceeds the maximum number of 63 characters allowed!")},
        P{kStr + "strType=2|strLength=5|strValue=" + std::string(85, 'A'),
          E("The string exceeds the maximum number of 84 characters allowed!")},
        P{kStr + "strType=1|strLength=2|strValue=12345", kTooLong},
        P{kStr + "strType=2|strLength=2|strValue=ABC", kTooLong},
        P{kStr + "strType=1|strLength=3|strValue=12a",
          "Cannot convert to BCD plus! \nValid characters for BCD plus are: \n" + kDigits +
          "  Punctuations: space - . : , _ \n" + kFailed},
        P{kStr + "strType=2|strLength=3|strValue=abcd",
          "Cannot convert to 6-bit ASCII, packed! \nValid characters for 6-bit ASCII are: \n"
          "  Alphabets: A B C D E F G H I J K L M N O P Q R S T U V W X Y Z \n" + kDigits +
          "  Punctuations: ! \" # $ % & ' ( ) * + , - . / : ; < = > ? @ [ \\ ] ^ _ space \n" + kFailed}));

}  // namespace
