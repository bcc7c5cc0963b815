// The -updateFRU parameters with their exact refusals and new bytes, and the
// manufacturing date/time at fixed clock values.
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "cli/FRUDateTime.h"
#include "cli/FRUUpdateData.h"

namespace {

time_t s_tClock;
time_t TestClock(time_t*) { return s_tClock; }

// Sets the clock and the time zone for one test.
void SetClock(time_t tNow, const char* pchZone)
{
    s_tClock = tNow;
    G_pfnSystemClock = TestClock;
    setenv("TZ", pchZone, 1);
    tzset();
}

std::string Hex(const uint8_t* pu8Bytes, size_t uCount)
{
    std::string s;
    char achByte[4];
    for (size_t i = 0; i < uCount; i++) {
        snprintf(achByte, sizeof(achByte), i ? " %02X" : "%02X", pu8Bytes[i]);
        s += achByte;
    }
    return s;
}

struct ParamCase {
    std::string sWords;  // the arguments, split at '|'
    std::string sErr;    // empty: accepted
    std::string sBytes = "";  // the new field bytes when accepted
};

const std::string kBoard = "fieldName=snBoard|offset=10|fruID=0|";
const std::string kTooLong = "The number of string data bytes exceeds the string length specified! \n";

class FRUUpdateParametersTest : public ::testing::TestWithParam<ParamCase> {};

TEST_P(FRUUpdateParametersTest, RefusesOrPreparesTheBytes)
{
    const ParamCase& c = GetParam();
    SetClock(1709210096, "UTC0");  // 2024-02-29 12:34:56
    std::vector<std::string> vWords;
    std::istringstream sIn(c.sWords);
    for (std::string sWord; std::getline(sIn, sWord, '|');) vWords.push_back(sWord);
    std::vector<char*> vSlots;
    for (std::string& s : vWords) vSlots.push_back(&s[0]);
    vSlots.push_back(nullptr);
    sFRUUpdateData sData = {};
    testing::internal::CaptureStderr();
    const int iResult = ValidateAnalyzeFRUUpdateDataParameters(static_cast<uint16_t>(vWords.size()), vSlots.data(), &sData);
    EXPECT_EQ(c.sErr, testing::internal::GetCapturedStderr());
    EXPECT_EQ(c.sErr.empty() ? 1 : 0, iResult);
    const size_t uCount = IsFRUUpdateOfDateTime(&sData) ? 3 : sData.u8StringLength;
    EXPECT_EQ(c.sBytes, iResult ? Hex(sData.au8NewData, uCount) : "");
}

std::string Repeat(const std::string& s, size_t uTimes)
{
    std::string sAll;
    while (uTimes-- > 0) sAll += s;
    return sAll;
}

INSTANTIATE_TEST_SUITE_P(
    Words, FRUUpdateParametersTest,
    ::testing::Values(
        ParamCase{"offset=0x1B|fruID=0x00|fieldName=datetime", "", "B2 05 E2"},
        ParamCase{"==offset=1B|fruID=FE|fieldName=datetime", "", "B2 05 E2"},
        ParamCase{kBoard + "strType=1|strLength=3|strValue=12345", "", "12 34 50"},
        ParamCase{kBoard + "strType=1|strLength=4|strValue=12345", "", "12 34 5A AA"},
        ParamCase{kBoard + "strType=1|strLength=0x3F|strValue=-.:,_", "", "BC DE FA" + Repeat(" AA", 60)},
        ParamCase{"strType=2|strLength=3|strValue=ABCD|" + kBoard, "", "A1 38 92"},
        ParamCase{kBoard + "strType=2|strLength=4|strValue=ABCD", "", "A1 38 92 00"},
        ParamCase{kBoard + "strType=0x3|strLength=5|strValue=AB", "", "41 42 20 20 20"},
        ParamCase{kBoard + "strType=3x|strLength=6|strValue=-a b=c", "", "2D 61 20 62 3D 63"},
        ParamCase{"", "<ERROR> Please specify the FRU data you wish to update! \n"},
        ParamCase{kBoard + "strType=3|strLength=5|strValue=AB|x=1", "<ERROR> The number of parameters exceeds the maximum allowed! \n"},
        ParamCase{"fieldName|offset=1|fruID=0", "<ERROR> Parameter has no value! \n"},
        ParamCase{"fieldName=datetime|offset=1|strValue=a=", "<ERROR> Parameter has no value! \n"},
        ParamCase{"fieldName=datetime|offset=1|=1", "<ERROR> Parameter has no value! \n"},
        ParamCase{"fieldName=x|strLength01=1|fruID", "<ERROR> Parameter name (strLength01) is not allowed! \n"},
        ParamCase{"strValue=" + Repeat("7", 127), "<ERROR> Parameter value (" + Repeat("7", 127) + ") is over the maximum length! \n"},
        ParamCase{"offset=1|fruID=0|offset=2", "<ERROR> Duplicated parameters found! \n"},
        ParamCase{"fieldName=DateTime|offset=1|fruID=0", "<ERROR> Incorrect field name! \n"},
        ParamCase{"fieldName=datetime|offset=1|fruID=0x", "<ERROR> FRU ID is not a number! \n"},
        ParamCase{"fruID=0xFF|fieldName=none|offset=1", "<ERROR> FRU ID specified is reserved! \n"},
        ParamCase{"fieldName=datetime|offset=1|fruID=0x100", "<ERROR> FRU ID must be in the range of 0x00~0xFE! \n"},
        ParamCase{"fieldName=datetime|offset=1|fruID=0x1000000FE", "<ERROR> FRU ID must be in the range of 0x00~0xFE! \n"},
        ParamCase{"fieldName=datetime|offset=0xZ1|fruID=0", "<ERROR> Offset is not a number! \n"},
        ParamCase{"fieldName=datetime|offset=0x10003|fruID=0", "<ERROR> Offset must be in the range of 0x0000~0xFFFF! \n"},
        ParamCase{kBoard + "strType=x|strLength=5|strValue=AB", "<ERROR> Invalid string type! \n"},
        ParamCase{kBoard + "strType=4|strLength=5|strValue=AB", "<ERROR> Invalid string type! \n"},
        ParamCase{kBoard + "strType=0x103|strLength=5|strValue=AB", "<ERROR> Invalid string type! \n"},
        ParamCase{kBoard + "strType=3|strLength=5h|strValue=AB", "<ERROR> String length is not a number! \n"},
        ParamCase{kBoard + "strType=3|strLength=0x40|strValue=AB", "<ERROR> String length must be less than or equal to 63 bytes! \n"},
        ParamCase{kBoard + "strType=3|strLength=0x13F|strValue=AB", "<ERROR> String length must be less than or equal to 63 bytes! \n"},
        ParamCase{"fieldName=datetime|offset=1|color=1", "<ERROR> Invalid parameter! \n"},
        ParamCase{"fieldName=datetime|offset=1|fruID=0|strType=1", "<ERROR> Incorrect number of parameters! \n"},
        ParamCase{"fieldName=datetime|strType=1|offset=0x10", "<ERROR> Required parameter is not specified! \n"},
        ParamCase{"offset=1|fruID=0|strType=1", "<ERROR> Incorrect number of parameters! \n"},
        ParamCase{kBoard + "strType=3|strLength=5|strValue=A", "<ERROR> The string cannot be 1 character long! \n"},
        ParamCase{kBoard + "strType=3|strLength=5|strValue=" + Repeat("A", 64), "<ERROR> The string exceeds the maximum number of 63 characters allowed! \n"},
        ParamCase{kBoard + "strType=2|strLength=5|strValue=" + Repeat("A", 85), "<ERROR> The string exceeds the maximum number of 84 characters allowed! \n"},
        ParamCase{kBoard + "strType=1|strLength=2|strValue=12345", kTooLong},
        ParamCase{kBoard + "strType=2|strLength=2|strValue=ABC", kTooLong},
        ParamCase{kBoard + "strType=3|strLength=0|strValue=AB", kTooLong},
        ParamCase{kBoard + "strType=1|strLength=3|strValue=12a", "Cannot convert to BCD plus! \nValid characters for BCD plus are: \n"
                  "  Digits: 0 1 2 3 4 5 6 7 8 9 \n  Punctuations: space - . : , _ \nFailure to update FRU data! \n"},
        ParamCase{kBoard + "strType=2|strLength=3|strValue=abcd", "Cannot convert to 6-bit ASCII, packed! \nValid characters for 6-bit ASCII are: \n"
                  "  Alphabets: A B C D E F G H I J K L M N O P Q R S T U V W X Y Z \n  Digits: 0 1 2 3 4 5 6 7 8 9 \n"
                  "  Punctuations: ! \" # $ % & ' ( ) * + , - . / : ; < = > ? @ [ \\ ] ^ _ space \nFailure to update FRU data! \n"}));

struct ClockCase {
    time_t tNow;
    const char* pchZone;
    std::string sBytes;  // empty: no usable time
};

class FRUDateTimeTest : public ::testing::TestWithParam<ClockCase> {};

TEST_P(FRUDateTimeTest, CountsMinutesSince1996InLocalTime)
{
    SetClock(GetParam().tNow, GetParam().pchZone);
    uint8_t au8DateTime[3] = {0xEE, 0xEE, 0xEE};
    EXPECT_EQ(GetParam().sBytes.empty() ? 0 : 1, ConvertCurrentDateTimeToHex(au8DateTime));
    if (!GetParam().sBytes.empty()) {
        EXPECT_EQ(GetParam().sBytes, Hex(au8DateTime, 3));
        return;
    }
    char achWords[] = "fieldName=datetime\0offset=1\0fruID=0";
    char* apchSlots[] = {achWords, achWords + 19, achWords + 28, nullptr};
    sFRUUpdateData sData = {};
    testing::internal::CaptureStderr();
    EXPECT_EQ(0, ValidateAnalyzeFRUUpdateDataParameters(3, apchSlots, &sData));
    EXPECT_EQ("Cannot get the current time! \nFailure to update FRU data! \n", testing::internal::GetCapturedStderr());
}

const time_t kEpoch = 820454400;  // 1996-01-01 00:00 UTC

INSTANTIATE_TEST_SUITE_P(
    Clocks, FRUDateTimeTest,
    ::testing::Values(ClockCase{kEpoch, "UTC0", "00 00 00"}, ClockCase{kEpoch + 119, "UTC0", "01 00 00"},
                      ClockCase{1709210096, "UTC0", "B2 05 E2"},                  // 2024-02-29 12:34:56
                      ClockCase{kEpoch + 0xFFFFFFll * 60 + 59, "UTC0", "FF FF FF"},  // 2027-11-24 20:15
                      ClockCase{kEpoch + 0x1000000ll * 60, "UTC0", "00 00 00"},      // the count wraps
                      ClockCase{kEpoch, "CET-1", "3C 00 00"},  // local midnight was 23:00 UTC
                      ClockCase{kEpoch - 60, "UTC0", ""}, ClockCase{-1, "UTC0", ""}));

}  // namespace
