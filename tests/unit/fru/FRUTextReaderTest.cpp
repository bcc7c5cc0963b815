// ReadFRUFile on FRU text files: one fault per file with its report, the examples against
// their raw twins, and every encoding, line end and layout giving the same bytes.
#include <gtest/gtest.h>

#include <cstdlib>

#include "../text/TextTestBytes.h"
#include "FruDescription.h"
#include "FruTextEmitter.h"
#include "TestSupport.h"
#include "fru/FRUFile.h"
#include "fru/FRUImage.h"

namespace {

struct ReadOutcome {
    int iResult;
    TFruBytes vImage;
    std::string sErr;
};

ReadOutcome ReadText(const std::string& sFile)
{
    TempDir sDir;
    WriteFileText(sDir.File("x.fru"), sFile);
    testing::internal::CaptureStderr();
    const int iResult = ReadFRUFile(sDir.File("x.fru").c_str());
    ReadOutcome s = {iResult, TFruBytes(G_pu8LocalFRUDataBuffer, G_pu8LocalFRUDataBuffer + G_u16RawDataSizeFromFRUFile),
                     testing::internal::GetCapturedStderr()};
    std::free(G_pu8LocalFRUDataBuffer);
    G_pu8LocalFRUDataBuffer = nullptr;
    return s;
}

std::string Example(const std::string& sName)
{
    return ReadFileText(SourceDir() + "/examples/sample-" + sName + ".fru");
}

struct FaultCase {
    const char* pchName;
    std::string sFind;  // in sample-server-ascii.fru, whose line numbers the reports show
    std::string sReplace;
    std::string sErr;
};

class FRUTextFaultTest : public ::testing::TestWithParam<FaultCase> {};

TEST_P(FRUTextFaultTest, ReportsTheFaultWithItsLine)
{
    const FaultCase& c = GetParam();
    std::string sFile = Example("server-ascii");
    ASSERT_NE(std::string::npos, sFile.find(c.sFind));
    ReadOutcome s = ReadText(sFile.replace(sFile.find(c.sFind), c.sFind.size(), c.sReplace));
    EXPECT_EQ(0, s.iResult);
    EXPECT_EQ(c.sErr, s.sErr);
}

const std::string kBad = "<ERROR> Incorrect FRU file.\n";
const std::string kHeader = "01 01 03 07 11 1A 00 C9";

INSTANTIATE_TEST_SUITE_P(
    OneFaultEach, FRUTextFaultTest,
    ::testing::Values(
        FaultCase{"TextBeforeTheStart", "// Made", "Made", kBad + "Find FRU tag/data outside the '_FRU( )' block.\n"},
        FaultCase{"SecondStartTagInAString", "'Rev 3'", "'_FRU ('", kBad + "Multiple '_FRU (' tag is NOT allowed. \n"},
        FaultCase{"TextBehindTheEnd", "\n)\n", "\n) // end\nx\n",
                  kBad + "Find FRU tag/data outside the '_FRU( )' block. \n"},
        FaultCase{"FileEndsInABlock", "\n)\n", "\n", kBad + "MULTIRECORD Area is not complete. \n"},
        FaultCase{"TagOutOfOrder", "_SEE_INTERNAL", "_SEE_CHASSIS",
                  kBad + "Error data '_SEE_CHASSIS', it should be '_SEE_INTERNAL' in FRU file. (line 5) \n"},
        FaultCase{"HeaderVersion", kHeader, "02 01 03 07 11 1A 00 C8",
                  kBad + "The version field (0x02) in COMMON Area != 0x01. (line 4) \n"},
        FaultCase{"Pad", kHeader, "01 01 03 07 11 1A 01 C8",
                  kBad + "The PAD field (0x01) in COMMON Area != 002X. (line 4) \n"},
        FaultCase{"HeaderChecksum", kHeader, "01 01 03 07 11 1A 00 CA",
                  kBad + "Error checksum in COMMON Header in FRU file. \n"},
        FaultCase{"OffsetsOutOfOrder", kHeader, "01 01 07 03 11 1A 00 C9",
                  "<ERROR> Unable to handle the FRU binary file. \n"
                  "In COMMON Area, the CHASSIS offset >= BOARD offset. \n"},
        FaultCase{"HeaderCutShortByATag", kHeader, "01 01 03", kBad + "COMMON Area is not complete. \n"},
        FaultCase{"InternalShorterThanTheHeaderSays", "01 54 41", "01 41",
                  kBad + "The offset to CHASSIS Area is not correct. \n"},
        FaultCase{"NotAHexByte", "01 04 17", "01 04 1G",
                  kBad + "'1G' is not a Hex byte data in CHASSIS Area. (line 8) \n"},
        FaultCase{"AreaVersion", "01 04 17", "02 04 17",
                  kBad + "The area version field (0x02) in CHASSIS Area is not correct. (line 8) \n"},
        FaultCase{"AreaLength", "01 04 17", "01 03 17",
                  kBad + "The area length field (0x03) in CHASSIS Area is not consistent with the information in "
                         "COMMON Area. (line 8) \n"},
        FaultCase{"AreaChecksum", "C1 00 48", "C1 00 49", kBad + "Error checksum in CHASSIS Area in FRU file. \n"},
        FaultCase{"LastRecordWithoutItsFlag", "01 82 0D 28 48", "01 02 0D 28 C8",
                  kBad + "')' is found but the record is not the last one in MULTIRECORD Area. \n"},
        FaultCase{"RecordHeaderChecksum", "01 82 0D 28 48", "01 82 0D 28 49",
                  kBad + "Error checksum in MULTIRECORD Area record 1's header in FRU file. \n"},
        FaultCase{"RecordDataChecksum", "01 B0 04 1C", "01 B0 04 1D",
                  kBad + "Error checksum in MULTIRECORD Area record 1's record data in FRU file. \n"},
        FaultCase{"RecordHeaderCutShort", "01 82 0D 28 48", "01 82 )", kBad + "MULTIRECORD Area is not complete. \n"}),
    [](const ::testing::TestParamInfo<FaultCase>& i) { return std::string(i.param.pchName); });

TEST(FruTextExamples, AreWhatTavrinFrugenMakesAndReadIntoTheBytesOfTheirRawTwins)
{
    for (const std::string sName : {"server", "card"}) {
        const TFruBytes vRaw = ReadFileBytes(SourceDir() + "/examples/sample-" + sName + ".fru");
        for (const std::string sEncoding : {"ascii", "utf8", "utf16"}) {
            std::string sMade, sError;
            EXPECT_TRUE(FruTextFile(vRaw, sEncoding, true, "Made by tavrin-frugen from tools/frugen/samples/" + sName +
                                    ".frudesc", &sMade, &sError)) << sError;
            EXPECT_EQ(sMade, Example(sName + "-" + sEncoding)) << sName << sEncoding << ": make-examples.sh";
            ReadOutcome s = ReadText(Example(sName + "-" + sEncoding));
            EXPECT_EQ(1, s.iResult) << s.sErr;
            EXPECT_EQ(vRaw, s.vImage) << sName << sEncoding;
        }
    }
}

// LF to CR LF, by characters in UTF-16.
std::string WithCarriageReturns(const std::string& sFile, bool bUTF16)
{
    std::string s;
    for (size_t i = 0; i < sFile.size(); i += bUTF16 ? 2 : 1) {
        if (sFile[i] == '\n' && (!bUTF16 || sFile[i + 1] == '\0')) s += bUTF16 ? std::string("\r\0", 2) : "\r";
        s += sFile.substr(i, bUTF16 ? 2 : 1);
    }
    return s;
}

// Besides 8-bit, 6-bit, BCD Plus and binary fields, a board in language 1 with Unicode
// fields (in hex in an ASCII file), annotated and one byte a line, with LF and CR LF.
TEST(FruTextRoundTrip, EveryEncodingLayoutAndLineEndReadsIntoTheSameBytes)
{
    sFruImageParts sParts;
    std::string sError;
    const std::string sServer = ReadFileText(SourceDir() + "/tools/frugen/samples/server.frudesc");
    ASSERT_TRUE(FruParseDescription(sServer, &sParts, &sError));
    sParts.vBoard = FruInfoArea({1, 0, 0, 0}, {{0xC4, 'A', 0, 0x41, 0x01}, {0xC2, 'A', 'B'}, {0xC2, 'S', 'N'}});
    const TFruBytes vImage = FruImage(sParts);
    for (const std::string sEncoding : {"ascii", "utf8", "utf16"}) {
        for (bool bAnnotated : {true, false}) {
            std::string sFile;
            ASSERT_TRUE(FruTextFile(vImage, sEncoding, bAnnotated, "", &sFile, &sError)) << sError;
            for (const std::string& s : {sFile, WithCarriageReturns(sFile, sEncoding == "utf16")}) {
                ReadOutcome sRead = ReadText(s);
                EXPECT_EQ(1, sRead.iResult) << sRead.sErr;
                EXPECT_EQ(vImage, sRead.vImage) << sEncoding << bAnnotated;
            }
        }
    }
}

// Tags with bytes behind them, bytes together on a line, zeroes left out behind C1,
// blank lines, comments and indentation wherever the format allows them.
TEST(FruTextLayout, IsFree)
{
    ReadOutcome s = ReadText("\n// FRU\n  _FRU (   // start\n\n_SEE_COMMON 01 00 01\n 00 00 00 00 FE\n"
                             "\t_SEE_CHASSIS 01 02 17 C3\n   'ABC'   // field\n\nc1 9c // zeroes left out\n )\n// end");
    EXPECT_EQ(1, s.iResult) << s.sErr;
    EXPECT_EQ(TFruBytes({1, 0, 1, 0, 0, 0, 0, 0xFE, 1, 2, 0x17, 0xC3, 'A', 'B', 'C', 0xC1, 0, 0, 0, 0, 0, 0, 0, 0x9C}),
              s.vImage);
}

// The largest image, 65535 bytes, reads; one byte more is refused.
TEST(FruTextLimits, AnImageHasAtMost65535Bytes)
{
    for (int iExtra : {0, 1}) {
        std::string sFile = "_FRU (\n_SEE_COMMON 01 01 00 00 00 00 00 FE\n_SEE_INTERNAL 01\n";
        for (int i = 0; i < 65535 - 9 + iExtra; i++) sFile += "00\n";
        ReadOutcome s = ReadText(sFile + ")\n");
        EXPECT_EQ(iExtra ? 0 : 1, s.iResult);
        EXPECT_EQ(iExtra ? kBad + "In INTERNAL Area, the FRU image would be longer than 65535 bytes, the most it "
                                  "can have. (line 65530) \n"
                         : "",
                  s.sErr);
    }
}

}  // namespace
