#include "text/TextFileInput.h"

#include "TestSupport.h"
#include "TextTestBytes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

// Reads all lines of the file bytes, checking the count, as a text reader would.
Lines ReadAll(const std::string& sBytes, eFileEncoding eEncoding, size_t uSize, size_t uLimit)
{
    TempDir sDir;
    WriteFileText(sDir.File("t.txt"), sBytes);
    sTextFileContext sContext;
    EXPECT_EQ(InitTextFileContext(&sContext, "t.txt", fopen(sDir.File("t.txt").c_str(), "rb"), eEncoding), 1);
    fseek(sContext.pFile, eEncoding == eEncodingUTF8 ? 3 : (eEncoding == eEncodingUTF16 ? 2 : 0), SEEK_SET);
    Lines vLines;
    std::vector<char> vLine(uSize);
    while (ReadTextLine(&sContext, vLine.data(), uSize, uLimit)) {
        EXPECT_EQ(vLine[uSize - 1], '\0');
        vLines.push_back(vLine.data());
        EXPECT_EQ(sContext.u16LineNumber, vLines.size());
    }
    fclose(sContext.pFile);
    return vLines;
}

struct ReadCase { eFileEncoding eEncoding; std::string sEnd; size_t uSize, uLimit; };

void PrintTo(const ReadCase& c, std::ostream* os) { *os << c.uSize << "/" << c.uLimit; }

class LineRuleTest : public testing::TestWithParam<ReadCase> {};

TEST_P(LineRuleTest, ReadsEveryLineAndALastOneWithoutLineFeed)
{
    const ReadCase& c = GetParam();
    const Lines vText = {"_SDR (" + c.sEnd, "" + c.sEnd, "  01 ab // c\xE9" + c.sEnd, "'\xE9t\xE9'" + c.sEnd, "last"};
    std::string sFile;
    for (const std::string& s : vText) sFile += s;
    Lines vExpected;  // UTF-8 lines come as they stand; UTF-16 lines in one-byte form
    for (const std::string& s : vText) {
        vExpected.push_back(c.eEncoding == eEncodingUTF8 ? Encode(s, eEncodingUTF8) : s);
    }
    EXPECT_EQ(ReadAll(Encode(sFile, c.eEncoding, true), c.eEncoding, c.uSize, c.uLimit), vExpected);
}

INSTANTIATE_TEST_SUITE_P(TextFileInput, LineRuleTest, testing::Values(
    ReadCase{eEncodingASCII, "\n", 256, 254}, ReadCase{eEncodingASCII, "\r\n", 258, 257},
    ReadCase{eEncodingUTF8, "\n", 258, 257}, ReadCase{eEncodingUTF8, "\r\n", 256, 254},
    ReadCase{eEncodingUTF16, "\n", 256, 254}, ReadCase{eEncodingUTF16, "\r\n", 258, 257}),
    [](const testing::TestParamInfo<ReadCase>& i) {
        return std::string(i.param.eEncoding == eEncodingUTF16 ? "UTF16" : (i.param.eEncoding == eEncodingUTF8 ? "UTF8" : "ASCII")) +
               (i.param.sEnd == "\n" ? "_LF_" : "_CRLF_") + std::to_string(i.param.uLimit);
    });

TEST(TextFileInput, LongLinesArriveInPiecesOnCharacterBoundaries)
{
    const std::string sLong(300, 'x');
    const std::string sFile = sLong + "\ny";
    const auto Piece = [&](size_t n) { return std::string(n, 'x'); };
    EXPECT_EQ(ReadAll(Encode(sFile, eEncodingASCII, true), eEncodingASCII, 256, 254), (Lines{Piece(254), Piece(46) + "\n", "y"}));
    EXPECT_EQ(ReadAll(Encode(sFile, eEncodingUTF8, true), eEncodingUTF8, 258, 257), (Lines{Piece(257), Piece(43) + "\n", "y"}));
    EXPECT_EQ(ReadAll(Encode(sFile, eEncodingUTF16, true), eEncodingUTF16, 256, 254),
              (Lines{Piece(127), Piece(127), Piece(46) + "\n", "y"}));
    EXPECT_EQ(ReadAll(Encode(sFile, eEncodingUTF16, true), eEncodingUTF16, 258, 257),
              (Lines{Piece(129), Piece(129), Piece(42) + "\n", "y"}));
    // 128 characters and the line feed take 257 bytes: one FRU line.
    EXPECT_EQ(ReadAll(Encode(Piece(128) + "\nz", eEncodingUTF16, true), eEncodingUTF16, 258, 257),
              (Lines{Piece(128) + "\n", "z"}));
}

TEST(TextFileInput, Utf16CharactersAboveFFCutTheLineButNotTheFile)
{
    // U+0141, U+010A (0A as low byte) and U+0A41 (0A as high byte), then a lone last byte.
    static const char achFile[] = "\xFF\xFE" "a\0\x41\x01" "b\0\n\0" "c\0\x0A\x01" "d\0\n\0" "e\0\x41\x0A" "f\0\n\0" "g";
    const std::string sFile(achFile, sizeof(achFile) - 1);
    EXPECT_EQ(ReadAll(sFile, eEncodingUTF16, 256, 254), (Lines{"a", "c", "e", "g"}));
}

TEST(TextFileInput, RefusesWhatDoesNotFit)
{
    sTextFileContext sContext;
    testing::internal::CaptureStderr();
    EXPECT_EQ(InitTextFileContext(&sContext, std::string(256, 'p').c_str(), stdin, eEncodingASCII), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "<ERROR> Internal Error!\n");
    ASSERT_EQ(InitTextFileContext(&sContext, std::string(255, 'p').c_str(), stdin, eEncodingASCII), 1);
    char achLine[8];
    for (size_t uLimit : {size_t{0}, size_t{8}, size_t{300}}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(ReadTextLine(&sContext, achLine, uLimit == 300 ? 400 : 8, uLimit), 0);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "<ERROR> Internal Error!\n");
    }
}

}  // namespace
