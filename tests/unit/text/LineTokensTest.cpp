#include "text/LineTokens.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(LineTokens, TrimCommentAndSideSpace)
{
    const std::pair<std::string, std::string> aComment[] = {
        {"AB // cd", "AB "}, {"a/b/c/", "a/b/c/"}, {"//x", ""}, {"'a//b'", "'a"}, {"x///", "x"}};
    for (const auto& c : aComment) {
        std::string s = c.first;
        TrimComment(&s[0]);
        EXPECT_EQ(std::string(s.c_str()), c.second);
    }
    const std::pair<std::string, std::string> aSpace[] = {
        {" \t\v\fa b\r\n", "a b"}, {"", ""}, {" \r\n", ""}, {"x", "x"}, {"\xA0x\xA0", "\xA0x\xA0"}};
    for (const auto& c : aSpace) {
        std::string s = c.first;
        TrimSideSpace(&s[0]);
        EXPECT_EQ(std::string(s.c_str()), c.second);
    }
}

std::vector<std::string> Tokens(std::string sLine, int bKeepComment)
{
    std::vector<std::string> vTokens;
    char achToken[32];
    for (int i = 0; i < 8; i++) {
        EXPECT_EQ(ParseNonQuotedData(&sLine[0], achToken, sizeof(achToken), bKeepComment), 1);
        vTokens.push_back(achToken);
        if (achToken[0] == '\0') break;
    }
    return vTokens;
}

TEST(LineTokens, ParseNonQuotedDataGivesTokensThenEmpty)
{
    using V = std::vector<std::string>;
    EXPECT_EQ(Tokens(" 01\tab // one two\r\n", 0), (V{"01", "ab", ""}));
    EXPECT_EQ(Tokens(" 01\tab // one two\r\n", 1), (V{"01", "ab", "//", "one", "two", ""}));
    EXPECT_EQ(Tokens("01 //x", 1), (V{"01", "//x", ""}));
    EXPECT_EQ(Tokens("// only\n", 0), (V{""}));
    EXPECT_EQ(Tokens("a,b\vc", 0), (V{"a,b\vc", ""}));  // only blank, tab, CR and LF separate

    std::string sLine = "toolongtoken rest";
    char achToken[8] = "x";
    testing::internal::CaptureStderr();
    EXPECT_EQ(ParseNonQuotedData(&sLine[0], achToken, sizeof(achToken), 0), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "<ERROR> Internal Error!\n");
    EXPECT_STREQ(achToken, "");
}

TEST(LineTokens, ParseQuotedDataTakesUpToTheLastApostrophe)
{
    struct Case { std::string sLine; int iResult; std::string sText, sRest; };
    const Case aCases[] = {
        {"'it's'  // x", 1, "it's", "  // x"},
        {"''", 1, "", ""},
        {"'a//b' // 'c", 1, "a//b' // ", "c"},
        {"'open", 0, "", "'open"},
        {"'", 0, "", "'"},
        {"\"x'", 1, "x", ""}};  // the first character opens, whatever it is
    for (const Case& c : aCases) {
        std::string sLine = c.sLine;
        char achText[16] = "junk";
        EXPECT_EQ(ParseQuotedData(&sLine[0], achText, sizeof(achText)), c.iResult) << c.sLine;
        EXPECT_EQ(std::string(achText), c.sText);
        EXPECT_EQ(std::string(sLine.c_str()), c.sRest);
    }
    std::string sLong = "'0123456789abcdef'";
    char achSmall[16];
    testing::internal::CaptureStderr();
    EXPECT_EQ(ParseQuotedData(&sLong[0], achSmall, sizeof(achSmall)), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "<ERROR> Internal Error!\n");
    EXPECT_EQ(std::string(sLong.c_str()), "'0123456789abcdef'");
}

}  // namespace
