#include "text/DatTrans.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

TEST(DatTrans, HexDigitsAndBcdPlusCharacters)
{
    const std::pair<char, uint8_t> aHex[] = {{'0', 0}, {'9', 9}, {'A', 10}, {'f', 15}, {'G', 'G'}, {'\xFF', 0xFF}};
    for (const auto& c : aHex) EXPECT_EQ(HexToDecimal(&c.first), c.second) << c.first;
    for (uint8_t v = 0; v < 16; v++) EXPECT_EQ(ConvertCharToBCDPlus(ConvertBCDPlusToChar(v)), v);
    EXPECT_EQ(ConvertBCDPlusToChar(0xA), ' ');
    EXPECT_EQ(ConvertCharToBCDPlus('_'), 0xF);
    EXPECT_EQ(ConvertCharToBCDPlus('A'), 0xFF);
    testing::internal::CaptureStderr();
    EXPECT_EQ(ConvertBCDPlusToChar(16), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "<ERROR> Invalid BCD number!\n");
}

struct PackCase {
    bool bSixBit;
    std::string sText;
    Bytes vPacked;          // what packing leaves in a cleared buffer of 8 bytes
    int iResult;
    std::string sUnpacked;  // vPacked unpacked; empty: not checked
};
void PrintTo(const PackCase& c, std::ostream* os) { *os << (c.bSixBit ? "6-bit " : "BCD+ ") << c.vPacked.size(); }

class PackTest : public testing::TestWithParam<PackCase> {};

TEST_P(PackTest, PacksIntoClearedBufferAndUnpacks)
{
    const PackCase& c = GetParam();
    uint8_t au8Out[8] = {0};
    EXPECT_EQ(c.bSixBit ? ConvertASCIIStrToSixBitASCII(c.sText.c_str(), au8Out, sizeof(au8Out))
                        : ConvertASCIIStrToBCDPlus(c.sText.c_str(), au8Out, sizeof(au8Out)), c.iResult);
    Bytes vExpected = c.vPacked;
    vExpected.resize(sizeof(au8Out));
    EXPECT_EQ(Bytes(au8Out, au8Out + sizeof(au8Out)), vExpected);
    if (c.sUnpacked.empty()) return;
    char achText[16] = {0};
    const uint8_t u8Count = static_cast<uint8_t>(c.vPacked.size());
    EXPECT_EQ(c.bSixBit ? ConvertSixBitASCIIToASCIIStr(c.vPacked.data(), u8Count, achText, sizeof(achText))
                        : ConvertBCDPlusToASCIIStr(c.vPacked.data(), u8Count, achText, sizeof(achText)), 1);
    EXPECT_EQ(std::string(achText), c.sUnpacked);
}

INSTANTIATE_TEST_SUITE_P(DatTrans, PackTest, testing::Values(
    PackCase{false, "12-3.", {0x12, 0xB3, 0xC0}, 1, "12-3.0"},
    PackCase{false, "0:,_ ", {0x0D, 0xEF, 0xA0}, 1, "0:,_ 0"},
    PackCase{false, "12A4", {0x12}, 0, ""},              // stops at the letter, keeps what it stored
    PackCase{false, "1234567890123456789", {}, 0, ""},  // 10 bytes don't fit 8: nothing written
    PackCase{true, "ABCD", {0xA1, 0x38, 0x92}, 1, "ABCD"},
    PackCase{true, "ABC", {0xA1, 0x38, 0x02}, 1, "ABC "},
    PackCase{true, "AB", {0xA1, 0x08}, 1, "AB"},
    PackCase{true, "A", {0x21}, 1, "A"},
    PackCase{true, "ABCDE", {0xA1, 0x38, 0x92, 0x25}, 1, "ABCDE"},
    PackCase{true, " _", {0xC0, 0x0F}, 1, " _"},
    PackCase{true, "ABa", {0xA1, 0x08}, 0, ""},
    PackCase{true, "A\xC1", {0x21}, 0, ""},
    PackCase{true, "ABCDEFGHIJK", {}, 0, ""}),  // 9 bytes don't fit 8
    [](const testing::TestParamInfo<PackCase>& i) { return std::to_string(i.index); });

TEST(DatTrans, RoundTripsOverEveryByteValue)
{
    for (unsigned u = 0; u < 256; u++) {
        const uint8_t au8In[3] = {static_cast<uint8_t>(u), static_cast<uint8_t>(u ^ 0x5A), static_cast<uint8_t>(~u)};
        char achText[8] = {0};
        uint8_t au8Back[3] = {0}, u8Length = 0, u8Back = 0;
        ASSERT_EQ(ConvertBCDPlusToASCIIStr(au8In, 1, achText, sizeof(achText)), 1);
        ASSERT_EQ(ConvertASCIIStrToBCDPlus(achText, au8Back, sizeof(au8Back)), 1);
        EXPECT_EQ(au8Back[0], u);
        char achSix[8] = {0};
        uint8_t au8Six[3] = {0};
        ASSERT_EQ(ConvertSixBitASCIIToASCIIStr(au8In, 3, achSix, sizeof(achSix)), 1);
        ASSERT_EQ(ConvertASCIIStrToSixBitASCII(achSix, au8Six, sizeof(au8Six)), 1);
        EXPECT_EQ(Bytes(au8Six, au8Six + 3), Bytes(au8In, au8In + 3)) << u;
        const char chIn = static_cast<char>(u);
        char achUtf8[4] = {0}, achOne[4] = {0};
        ASSERT_EQ(ASCIIToUTF8(&chIn, 1, achUtf8, sizeof(achUtf8), &u8Length), 1);
        EXPECT_EQ(u8Length, u < 0x80 ? 1 : 2);
        ASSERT_EQ(UTF8ToASCII(achUtf8, u8Length, achOne, sizeof(achOne), &u8Back), 1);
        EXPECT_EQ(std::string(achOne, u8Back), std::string(1, chIn)) << u;
    }
}

TEST(DatTrans, Utf8Conversions)
{
    char achOut[8];
    uint8_t u8Length = 0;
    EXPECT_EQ(ASCIIToUTF8("\xE9\xFF", 2, achOut, sizeof(achOut), &u8Length), 1);
    EXPECT_EQ(std::string(achOut, u8Length), "\xC3\xA9\xC3\xBF");
    EXPECT_EQ(ASCIIToUTF8("\xE9\xFF", 2, achOut, 3, &u8Length), 0);  // no room for the fourth byte
    for (const std::string s : {"\xC4\x80", "\xE2\x82\xAC", "\x80", "a\xC3", "\xF0\x9F\x98\x80"}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(UTF8ToASCII(s.data(), static_cast<uint8_t>(s.size()), achOut, sizeof(achOut), &u8Length), 0);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "<ERROR> Invalid UTF-8 data found.\n");
    }
}

TEST(DatTrans, Utf16ToUtf8)
{
    const std::pair<Bytes, std::string> aCases[] = {
        {{0x41, 0x00}, "A"}, {{0xE9, 0x00}, "\xC3\xA9"}, {{0x41, 0x01}, "\xC5\x81"}, {{0xAC, 0x20}, "\xE2\x82\xAC"},
        {{0x3D, 0xD8, 0x00, 0xDE}, "\xED\xA0\xBD\xED\xB8\x80"}, {{0x41, 0x00, 0x42}, "AB"}};
    char achOut[300];
    uint8_t u8Length = 0;
    for (const auto& c : aCases) {
        ASSERT_EQ(UTF16ToUTF8(c.first.data(), static_cast<uint8_t>(c.first.size()), achOut, 16, &u8Length), 1);
        EXPECT_EQ(std::string(achOut, u8Length), c.second);
    }
    Bytes vEuros;
    for (int i = 0; i < 86; i++) vEuros.insert(vEuros.end(), {0xAC, 0x20});
    EXPECT_EQ(UTF16ToUTF8(vEuros.data(), 170, achOut, sizeof(achOut), &u8Length), 1);  // 255 bytes
    EXPECT_EQ(UTF16ToUTF8(vEuros.data(), 172, achOut, sizeof(achOut), &u8Length), 0);  // 258 bytes
}

TEST(DatTrans, ComputeChecksumKeepsTheZeroSum)
{
    const uint8_t u8One = 0x01, u8Three = 0x03;
    uint8_t u8Sum = 0;
    const std::tuple<uint16_t, const uint8_t*, const uint8_t*, uint8_t> aCases[] = {
        {1, &u8One, &u8Three, 0x0E}, {1, &u8Three, &u8One, 0x12}, {1, &u8One, &u8One, 0x10}, {0, &u8One, &u8Three, 0x10}};
    for (const auto& c : aCases) {
        ASSERT_EQ(ComputeChecksum(0x10, std::get<0>(c), std::get<1>(c), std::get<2>(c), &u8Sum), 1);
        EXPECT_EQ(u8Sum, std::get<3>(c));
    }
    const Bytes vOld(300, 0xFF), vNew(300, 0x00);  // sums that pass 16 bits
    ASSERT_EQ(ComputeChecksum(0x00, 300, vOld.data(), vNew.data(), &u8Sum), 1);
    EXPECT_EQ(u8Sum, (300 * 0xFF) % 256);
}

}  // namespace
