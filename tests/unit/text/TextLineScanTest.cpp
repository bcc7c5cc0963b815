// The line scans take exactly the lines the line rule gives one by one: a file of every
// kind of line, spread over several read-ahead blocks, is read with the scans and the
// line reader mixed at random and compared with a plain read of the same file.
#include "text/TextLineScan.h"

#include "TestSupport.h"
#include "TextTestBytes.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

bool EndsInFeed(const std::string& s) { return !s.empty() && s.back() == '\n'; }
bool IsSkipLine(const std::string& s) { return EndsInFeed(s) && s.find_first_of("()") == std::string::npos; }
bool IsSpaceLine(const std::string& s) { return EndsInFeed(s) && s.find_first_not_of(" \t\v\f\r") == s.size() - 1; }
bool IsHexDigit(char c) { return isxdigit(static_cast<unsigned char>(c)) != 0; }
bool IsHexLine(const std::string& s) { return s.size() == 3 && IsHexDigit(s[0]) && IsHexDigit(s[1]) && s[2] == '\n'; }

// Lines of every kind the scans tell apart, with lengths around a block (64), a UTF-16
// piece (127, 129) and the limits (254, 257), in one-byte text.
std::string MixedText(uint32_t u32Seed)
{
    std::mt19937 rng(u32Seed);
    const auto Pick = [&](size_t n) { return static_cast<size_t>(rng() % n); };
    const auto Chars = [&](const std::string& sSet, size_t n) {
        std::string s;
        while (s.size() < n) s += sSet[Pick(sSet.size())];
        return s;
    };
    static const size_t kauLong[] = {62, 63, 64, 65, 126, 127, 128, 129, 252, 253, 254, 255, 256, 257, 258, 600};
    static const char* const kapchNearHex[] = {"0g", "000", "0", "0A ", "0A\r", ":0", "0`", "G0", "/0", "@f"};
    std::string sText;
    while (sText.size() < 3 * TEXT_READ_AHEAD_SIZE) {
        switch (Pick(8)) {
        case 0: for (size_t n = 1 + Pick(40); n > 0; n--) sText += Chars("0123456789abcdefABCDEF", 2) + "\n"; break;
        case 1: sText += "\n"; break;
        case 2: sText += Chars(" \t\r\v\f", Pick(2) ? 1 + Pick(5) : kauLong[Pick(16)] - 1) + "\n"; break;
        case 3: sText += Chars("abc 01/\xE9", 1 + Pick(20)) + "\n"; break;
        case 4: sText += Chars("ab ", Pick(30)) + "()"[Pick(2)] + Chars("ab ", Pick(30)) + "\n"; break;
        case 5: sText += Chars("xy /", kauLong[Pick(16)] - 1) + "\n"; break;
        case 6: sText += std::string(kapchNearHex[Pick(10)]) + "\n"; break;
        default: for (size_t n = 20 + Pick(200) + (Pick(4) == 0 ? 3000 : 0); n > 0; n--) sText += "a\n"; break;
        }
    }
    return sText + "last";
}

struct ScanCase { eFileEncoding eEncoding; size_t uLimit; };

void PrintTo(const ScanCase& c, std::ostream* os) { *os << c.eEncoding << "/" << c.uLimit; }

class LineScanTest : public testing::TestWithParam<ScanCase> {
protected:
    void Open(const std::string& sBytes)
    {
        WriteFileText(m_sDir.File("s.txt"), sBytes);
        ASSERT_EQ(1, InitTextFileContext(&m_sContext, "s.txt", fopen(m_sDir.File("s.txt").c_str(), "rb"), GetParam().eEncoding));
        ASSERT_EQ(1, TextFileSeek(&m_sContext, GetParam().eEncoding == eEncodingUTF8 ? 3 : (GetParam().eEncoding == eEncodingUTF16 ? 2 : 0)));
    }
    void TearDown() override { if (m_sContext.pFile != nullptr) fclose(m_sContext.pFile); }

    TempDir m_sDir;
    sTextFileContext m_sContext{};
};

TEST_P(LineScanTest, TakesWhatTheLineRuleGivesLineByLine)
{
    const size_t uLimit = GetParam().uLimit;
    const std::string sBytes = Encode(MixedText(uLimit), GetParam().eEncoding, true);
    Lines vLines;  // the plain read
    Open(sBytes);
    char achLine[TEXT_MAX_LINE_READ + 1];
    while (ReadTextLine(&m_sContext, achLine, sizeof(achLine), uLimit)) vLines.push_back(achLine);
    fclose(m_sContext.pFile);

    Open(sBytes);
    std::mt19937 rng(7);
    size_t uAt = 0;
    const auto Run = [&](bool (*pfnKind)(const std::string&)) {
        size_t n = 0;
        while (uAt + n < vLines.size() && pfnKind(vLines[uAt + n])) n++;
        return n;
    };
    while (uAt < vLines.size()) {
        size_t uTaken = 0;
        switch (rng() % 4) {
        case 0: uTaken = SkipTextLinesWithout(&m_sContext, "()", uLimit); ASSERT_EQ(Run(IsSkipLine), uTaken) << uAt; break;
        case 1: uTaken = SkipSpaceLines(&m_sContext, uLimit); ASSERT_EQ(Run(IsSpaceLine), uTaken) << uAt; break;
        case 2: {
            uint8_t au8Values[50];
            const size_t uMax = 1 + rng() % 50;
            uTaken = TakeHexByteLines(&m_sContext, au8Values, uMax, uLimit);
            ASSERT_EQ(std::min(uMax, Run(IsHexLine)), uTaken) << uAt;
            for (size_t i = 0; i < uTaken; i++) ASSERT_EQ(std::stoul(vLines[uAt + i], nullptr, 16), au8Values[i]);
            break;
        }
        default:
            ASSERT_EQ(1, ReadTextLine(&m_sContext, achLine, sizeof(achLine), uLimit));
            ASSERT_EQ(vLines[uAt], achLine) << uAt;
            uTaken = 1;
        }
        uAt += uTaken;
        ASSERT_EQ(static_cast<uint16_t>(uAt), m_sContext.u16LineNumber);
    }
    EXPECT_EQ(0, ReadTextLine(&m_sContext, achLine, sizeof(achLine), uLimit));
}

INSTANTIATE_TEST_SUITE_P(TextLineScan, LineScanTest, testing::Values(
    ScanCase{eEncodingASCII, 254}, ScanCase{eEncodingUTF8, 257}, ScanCase{eEncodingUTF16, 254}, ScanCase{eEncodingUTF16, 257}));

TEST(TextLineScan, TakesNothingOutsideItsBounds)
{
    TempDir sDir;
    WriteFileText(sDir.File("b.txt"), "0A\na\n");
    sTextFileContext sContext{};
    ASSERT_EQ(1, InitTextFileContext(&sContext, "b.txt", fopen(sDir.File("b.txt").c_str(), "rb"), eEncodingASCII));
    uint8_t u8Value = 0;
    EXPECT_EQ(0u, SkipTextLinesWithout(&sContext, "()", 127));  // a limit below two blocks
    EXPECT_EQ(0u, SkipTextLinesWithout(&sContext, "()/", 254));  // more stop characters than it compares
    EXPECT_EQ(0u, SkipTextLinesWithout(&sContext, "", 254));
    EXPECT_EQ(0u, TakeHexByteLines(&sContext, &u8Value, 1, 5));
    EXPECT_EQ(1u, TakeHexByteLines(&sContext, &u8Value, 1, 254));
    EXPECT_EQ(0x0A, u8Value);
    EXPECT_EQ(1u, SkipTextLinesWithout(&sContext, "()", 254));
    EXPECT_EQ(2, sContext.u16LineNumber);
    fclose(sContext.pFile);
}

}  // namespace
