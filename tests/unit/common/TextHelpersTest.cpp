// Tokeniser, hex validation, lower-casing and the debug array printer.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "common/DebugOutput.h"
#include "common/TextHelpers.h"

namespace {

TEST(GetNextToken, SplitsLikeStrtokAcrossCalls)
{
    char achText[] = " ,a.sdr,, fruID=1\tx\n";
    char achToken[8];
    EXPECT_EQ(TOKEN_FOUND, GetNextToken(achText, achToken, sizeof(achToken)));
    EXPECT_STREQ("a.sdr", achToken);
    EXPECT_EQ(TOKEN_FOUND, GetNextToken(nullptr, achToken, sizeof(achToken)));
    EXPECT_STREQ("fruID=1", achToken);
    EXPECT_EQ(TOKEN_FOUND, GetNextToken(nullptr, nullptr, 0));
    EXPECT_EQ(TOKEN_NONE, GetNextToken(nullptr, achToken, sizeof(achToken)));
    EXPECT_STREQ("", achToken);
}

TEST(GetNextToken, RefusesATokenLongerThanItsBuffer)
{
    char achText[] = "12345678 ok";
    char achToken[8];
    EXPECT_EQ(TOKEN_TOO_LONG, GetNextToken(achText, achToken, sizeof(achToken)));
    EXPECT_STREQ("", achToken);
    EXPECT_EQ(TOKEN_FOUND, GetNextToken(nullptr, achToken, sizeof(achToken)));
    EXPECT_STREQ("ok", achToken);
}

TEST(ValidateHexData, AcceptsDigitsAndStripsThePrefix)
{
    const struct {
        const char* pchIn;
        int iResult;
        const char* pchAfter;
    } kCases[] = {{"0x1F", 1, "1F"}, {"0XaB", 1, "aB"}, {"", 1, ""}, {"0x", 0, "0x"},
                  {"0xZ1", 0, "Z1"}, {"12g", 0, "12g"}, {"00", 1, "00"}};
    for (const auto& c : kCases) {
        char achText[16];
        strcpy(achText, c.pchIn);
        EXPECT_EQ(c.iResult, ValidateHexData(achText)) << c.pchIn;
        EXPECT_STREQ(c.pchAfter, achText) << c.pchIn;
    }
}

TEST(GetLowerCaseString, LowersIntoOneSharedBufferOfFifteenCharacters)
{
    char* pchFirst = GetLowerCaseString("KcsIO-\xC4");
    EXPECT_STREQ("kcsio-\xC4", pchFirst);
    EXPECT_EQ(pchFirst, GetLowerCaseString(nullptr));
    EXPECT_STREQ("", pchFirst);
    EXPECT_STREQ("openipmiopenipm", GetLowerCaseString("OPENIPMIOPENIPMI"));
    EXPECT_EQ(1, IsStringNullOrEmpty(nullptr));
    EXPECT_EQ(1, IsStringNullOrEmpty(""));
    EXPECT_EQ(0, IsStringNullOrEmpty("x"));
}

TEST(DebugOutput, PrintsOnlyInVerboseMode)
{
    const uint8_t au8Data[] = {0x0A, 0xFF};
    G_bVerboseMode = 0;
    testing::internal::CaptureStdout();
    DebugMessage("hidden %d\n", 1);
    DebugPrintArray(au8Data, 2);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());

    G_bVerboseMode = 1;
    testing::internal::CaptureStdout();
    DebugMessage("shown %d\n", 2);
    DebugMessage(nullptr);
    DebugPrintArray(au8Data, 2);
    DebugPrintArray(au8Data, 0);
    DebugPrintArray(nullptr, 3);
    EXPECT_EQ("shown 2\n0A FF \nNone\nAn error occurs in displaying a hex data array.\n",
              testing::internal::GetCapturedStdout());
    G_bVerboseMode = 0;
}

}  // namespace
