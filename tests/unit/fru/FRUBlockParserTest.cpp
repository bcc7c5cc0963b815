// The mixed block parser on its own: each string type in each encoding, the language
// rule, the rule of C1, line lengths and the bounds of the image, valid and invalid.
#include <gtest/gtest.h>

#include <cstdio>

#include "../text/TextTestBytes.h"
#include "TestSupport.h"
#include "fru/FRUImage.h"
#include "fru/FRUTextReader.h"

namespace {

template <size_t N>
std::string Raw(const char (&ach)[N]) { return std::string(ach, N - 1); }  // with its zero bytes
std::string W(const std::string& s) { return Encode(s, eEncodingUTF16); }
std::string Repeat(const std::string& sHex, int iCount)
{
    std::string s = sHex;
    for (int i = 1; i < iCount; i++) s += " " + sHex;
    return s;
}

struct MixCase {
    const char* pchName;
    const char* pchArea;
    uint8_t u8Language;
    uint16_t u16Length;
    eFileEncoding eEncoding;
    std::string sFile;  // the block's lines as the file holds them, behind its mark
    std::string sOutcome;  // what it stores, in hex, or its report
    size_t uBuffer = 64;  // the image buffer, of which u16Preset bytes are stored already
    uint16_t u16Preset = 0;
};

class FRUMixedBlockTest : public ::testing::TestWithParam<MixCase> {};

TEST_P(FRUMixedBlockTest, StoresOrReports)
{
    const MixCase& c = GetParam();
    TempDir sDir;
    WriteFileText(sDir.File("block"), c.sFile);
    FILE* pFile = fopen(sDir.File("block").c_str(), "rb");
    std::vector<uint8_t> vImage(c.uBuffer, 0);
    G_pu8LocalFRUDataBuffer = vImage.data();
    G_u16RawDataSizeFromFRUFile = c.u16Preset;
    sFRUTextReader sReader;
    ASSERT_TRUE(FRUInitTextReader(&sReader, "block", pFile, c.eEncoding, c.uBuffer));
    testing::internal::CaptureStderr();
    const int iResult =
        FRUReadHexDataQuotedStringMixBlockWithLanguageCode(&sReader, c.pchArea, c.u16Length, c.u8Language);
    const std::string sErr = testing::internal::GetCapturedStderr();
    std::string sBytes;
    for (size_t i = c.u16Preset; i < G_u16RawDataSizeFromFRUFile; i++) {
        char ach[4];
        snprintf(ach, sizeof(ach), "%s%02X", sBytes.empty() ? "" : " ", vImage[i]);
        sBytes += ach;
    }
    fclose(pFile);
    G_pu8LocalFRUDataBuffer = nullptr;
    const bool bFails = c.sOutcome.compare(0, 7, "<ERROR>") == 0;
    EXPECT_EQ(bFails ? 0 : 1, iResult);
    EXPECT_EQ(c.sOutcome, bFails ? sErr : sBytes);
    EXPECT_TRUE(bFails || sErr.empty()) << sErr;
}

const std::string kBad = "<ERROR> Incorrect FRU file.\n";
const eFileEncoding A = eEncodingASCII, U8 = eEncodingUTF8, U16 = eEncodingUTF16;

std::string Lengths(const std::string& sArea, int iFound, int iN)
{
    return kBad + "Length of the quoted string (line 1) in " + sArea + " Area is " + std::to_string(iFound) +
           ". \nLength specified in the type/length byte is " + std::to_string(iN) + ". \n";
}

INSTANTIATE_TEST_SUITE_P(
    Cases, FRUMixedBlockTest,
    ::testing::Values(
        MixCase{"EightBit", "CHASSIS", 0, 4, A, "c3\n'ABC'\n", "C3 41 42 43"},
        MixCase{"LastApostropheClosesEvenInAComment", "CHASSIS", 0, 9, A, "  C8\n   'a' // it's\n",
                "C8 61 27 20 2F 2F 20 69 74"},
        MixCase{"LayoutBetweenFields", "CHASSIS", 0, 5, A, "\n// x\n  // it's a comment\nC0\nC2 //\n'AB'\nC0",
                "C0 C2 41 42 C0"},
        MixCase{"BCDPlusOddCount", "CHASSIS", 0, 3, A, "42\n'12-'\n", "42 12 B0"},
        MixCase{"SixBit", "CHASSIS", 0, 4, U16, W("83\n'ABCD'\n"), "83 A1 38 92"},
        MixCase{"EmptyString", "PRODUCT", 0, 1, A, "C0\n''\n", "C0"},
        MixCase{"FieldsInHex", "BOARD", 1, 6, A, "02 01 02\nC2 41 42", "02 01 02 C2 41 42"},
        MixCase{"LatinInUTF8", "CHASSIS", 0, 3, U8, Encode("C2\n'\xE9z'\n", U8), "C2 E9 7A"},
        MixCase{"LatinInUTF16", "BOARD", 25, 3, U16, W("C2\n'\xE9z'\n"), "C2 E9 7A"},
        MixCase{"UnicodeInUTF16", "BOARD", 1, 5, U16, W("C4\n'") + Raw("A\0A\x01") + W("'\n"), "C4 41 00 41 01"},
        MixCase{"UnicodeFromUTF8", "PRODUCT", 1, 5, U8, "C4\n'A\xC5\x81'\n", "C4 41 00 41 01"},
        MixCase{"BoardSerialNumberIsEightBit", "BOARD", 1, 5, U8, "C0\nC0\nC2\n'AB'\n", "C0 C0 C2 41 42"},
        MixCase{"ProductFileIDIsEightBit", "PRODUCT", 1, 7, U8, "C0\nC0\nC0\nC0\nC2\n'AB'", "C0 C0 C0 C0 C2 41 42"},
        MixCase{"TwoTypeBytesOnALineShiftTheRule", "BOARD", 1, 5, U8, "C0 C0\nC2\n'AB'\n", "C0 C0 C2 41 00"},
        MixCase{"ZeroesLeftOutBehindC1", "CHASSIS", 0, 13, A, "C3\n'ABC'\nC1 5A\n",
                "C3 41 42 43 C1 00 00 00 00 00 00 00 5A"},
        MixCase{"ZeroesListed", "CHASSIS", 0, 4, A, "C1 00 00 5A 77\n", "C1 00 00 5A 77"},
        MixCase{"C1InARecordIsData", "MULTIRECORD", 0, 4, A, "C1 05\n'AB'\n", "C1 05 41 42"},
        MixCase{"RecordStringLongerThanALineRead", "MULTIRECORD", 0, 300, U16,
                W("'" + std::string(300, 'x') + "'\r\n"), Repeat("78", 300), 512},
        MixCase{"LineTooLong", "MULTIRECORD", 0, 2000, A, "'" + std::string(1022, 'x') + "'\n",
                kBad + "A line in MULTIRECORD Area is longer than 1023 bytes. (line 1) \n"},
        MixCase{"NotAHexByte", "BOARD", 0, 4, A, "C0\n01 ABC\n",
                kBad + "'ABC' is not a Hex byte data in BOARD Area. (line 2) \n"},
        MixCase{"ATagInTheBlock", "CHASSIS", 0, 4, A, "C0\n_SEE_BOARD\n",
                kBad + "'_SEE_BOARD' is not a Hex byte data in CHASSIS Area. (line 2) \n"},
        MixCase{"FileEnds", "CHASSIS", 0, 8, A, "C3\n'ABC'\n", kBad + "CHASSIS Area is not complete. \n"},
        MixCase{"IndentedWithATab", "CHASSIS", 0, 4, A, "C3\n\t'ABC'\n",
                kBad + "Quoted string (line 1) in CHASSIS Area does not begin with a quotation mark. \n"},
        MixCase{"StringBehindC1", "PRODUCT", 0, 8, A, "C1\n'A'\n",
                kBad + "In PRODUCT Area, C1 is followed by an one-byte length string. (line 2) \n"},
        MixCase{"NoClosingApostrophe", "CHASSIS", 0, 4, U16, W("C3\n'\n"),
                kBad + "Quoted string (line 2) in CHASSIS Area is not complete. \n"},
        MixCase{"AboveLatin1InUTF8", "CHASSIS", 0, 4, U8, "C3\n'\xE2\x82\xAC'\n",
                "<ERROR> Invalid UTF-8 data found.\n" + kBad +
                    "Fail to convert quoted string (line 1) in CHASSIS Area from UTF-8 to 8-bit ASCII. \n"},
        MixCase{"AboveLatin1InUTF16CutsTheString", "CHASSIS", 0, 4, U16, W("C3\n'A") + Raw("\xAC\x20") + W("B'\n"),
                Lengths("CHASSIS", 1, 3)},
        MixCase{"LowerCaseInSixBit", "BOARD", 0, 4, A, "83\n'abc'\n",
                kBad + "Fail to convert quoted string \"abc\" in BOARD Area. (line 1) \n"},
        MixCase{"LetterInBCDPlus", "BOARD", 0, 4, A, "41\n'1A'\n",
                kBad + "Fail to convert quoted string \"1A\" in BOARD Area. (line 1) \n"},
        MixCase{"StringOfTypeBinary", "CHASSIS", 0, 4, A, "03\n'ABC'\n",
                kBad + "Incorrect String Type in CHASSIS Area. (line 1) \n"},
        MixCase{"EmptyStringOfLength3", "CHASSIS", 0, 4, A, "C3\n''\n", Lengths("CHASSIS", 0, 3)},
        MixCase{"UnicodeCountsBytesInUTF16", "BOARD", 1, 5, U16, W("C2\n'") + Raw("A\0A\x01") + W("'\n"),
                Lengths("BOARD", 4, 2)},
        MixCase{"UnicodeInASCII", "BOARD", 1, 3, A, "C2\n'AB'\n",
                "<ERROR> Invalid file encoding format!\n"
                "BOARD Info Area contains data in Unicode. The file must be Unicode encoded!\n"},
        MixCase{"ZeroesBehindC1PassTheBuffer", "CHASSIS", 0, 2040, A, "C1\n5A\n",
                kBad + "In CHASSIS Area, the zeroes left out behind C1 would make the FRU image longer than its file "
                       "(64 bytes): list them in the file. (line 2) \n"},
        MixCase{"UnicodeFromUTF8PassesTheBuffer", "BOARD", 1, 64, U8, "FF\n''\n",
                kBad + "In BOARD Area, the FRU image would be longer than its file (32 bytes). (line 2) \n", 32},
        MixCase{"ImagePasses65535Bytes", "MULTIRECORD", 0, 2, A, "01\n02\n",
                kBad + "In MULTIRECORD Area, the FRU image would be longer than 65535 bytes, the most it can have. "
                       "(line 2) \n",
                65535, 65534}),
    [](const ::testing::TestParamInfo<MixCase>& i) { return std::string(i.param.pchName); });

}  // namespace
