// SaveFRUFile: its bytes for one image in each encoding, every refusal with the file left
// as it was, and random images that read back into the same bytes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "../text/TextTestBytes.h"
#include "FruRandomImage.h"
#include "FruTextEmitter.h"
#include "TestSupport.h"
#include "common/DebugOutput.h"
#include "fru/FRUFile.h"
#include "fru/FRUImage.h"
#include "fru/FRUTextWriter.h"

namespace {

const eFileEncoding kaeEncodings[] = {eEncodingASCII, eEncodingUTF8, eEncodingUTF16};

// Every area: an apostrophe, a Latin-1 letter, BCD Plus, 6-bit ASCII, an empty field, a
// product in language 1 with its 8-bit serial number; in hex: a binary field, 8-bit text
// with a line feed, a record whose text holds the start tag, and one with no data.
TFruBytes GoldenImage()
{
    sFruImageParts s;
    s.vInternal = {0x01, 0xAA};
    s.vChassis = FruInfoArea({0x17}, {{0xC3, 'C', '\'', '1'}, {0x42, 0x12, 0xB3}});
    s.vBoard = FruInfoArea({25, 0x10, 0x20, 0x30}, {{0xC4, 'C', 'a', 'f', 0xE9}, {0x82, 0xA1, 0x08}, {0xC0},
                                                    {0x02, 0x01, 0xC2}, {0xC2, 'a', '\n'}});
    s.vProduct = FruInfoArea({1}, {{0x41, 0x99}, {0x81, 0x21}, {0x00}, {0x00}, {0xC2, 'S', 'N'}});
    for (const TFruBytes& v : {FruMultiRecord(3, false, {1, '_', 'F', 'R', 'U', ' ', '('}),
                               FruMultiRecord(3, false, {}), FruMultiRecord(3, true, {2, 'O', 'K'})}) {
        s.vMultiRecord.insert(s.vMultiRecord.end(), v.begin(), v.end());
    }
    return FruImage(s);
}

class FRUTextWriterTest : public testing::Test {
protected:
    void TearDown() override
    {
        std::free(G_pu8LocalFRUDataBuffer);
        G_pu8LocalFRUDataBuffer = G_pu8InventoryFRUDataBuffer = nullptr;
        G_bVerboseMode = 0;
    }
    // The device's bytes as an upload reads them: the image, then 0xFF to a whole block of 16.
    const TFruBytes& Load(TFruBytes v)
    {
        v.resize((v.size() + 15) / 16 * 16, 0xFF);
        m_vDevice = v;
        G_pu8InventoryFRUDataBuffer = m_vDevice.data();
        G_u16ReadSizeFromFRUInventory = static_cast<uint16_t>(v.size());
        return m_vDevice;
    }
    RunResult Save(eFileEncoding eEncoding)
    {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        RunResult s;
        s.iStatus = SaveFRUFile(m_sDir.File("up.fru").c_str(), eEncoding);
        s.sOut = testing::internal::GetCapturedStdout();
        s.sErr = testing::internal::GetCapturedStderr();
        return s;
    }
    TFruBytes ReadBack()
    {
        testing::internal::CaptureStdout();
        EXPECT_EQ(1, ReadFRUFile(m_sDir.File("up.fru").c_str()));
        testing::internal::GetCapturedStdout();
        return TFruBytes(G_pu8LocalFRUDataBuffer, G_pu8LocalFRUDataBuffer + G_u16RawDataSizeFromFRUFile);
    }
    TFruBytes m_vDevice;
    TempDir m_sDir;
};

// The golden file as one-byte text, a line at each '|'.
std::string Lines(std::string s)
{
    std::replace(s.begin(), s.end(), '|', '\n');
    return s;
}

const std::string kGolden = Lines(
    "_FRU (|_SEE_COMMON|01|01|02|04|07|09|00|E8|_SEE_INTERNAL|01|AA|00|00|00|00|00|00|_SEE_CHASSIS|01|02|17|C3|'C'1'|"
    "42|'12-3'|C1|00|00|00|00|C0|_SEE_BOARD|01|03|19|10|20|30|C4|'Caf\xE9'|82|'AB'|C0|02 01 C2|C2 61 0A|C1|00|2E|"
    "_SEE_PRODUCT|01|02|01|41|'99'|81|'A'|00|00|C2|'SN'|C1|00|00|5C|_SEE_MULTIRECORD|03|02|07|6B|89|01|5F|46|52|55|"
    "20|28|03|02|00|00|FB|03|82|03|64|14|02|'OK'|)|");

TEST_F(FRUTextWriterTest, WritesOneImageAsTheseBytesInEachEncoding)
{
    const TFruBytes vImage = GoldenImage();
    Load(vImage);
    for (eFileEncoding e : kaeEncodings) {
        G_bVerboseMode = e == eEncodingUTF16;
        const RunResult s = Save(e);
        EXPECT_EQ(1, s.iStatus);
        EXPECT_EQ(std::string(G_bVerboseMode ? "\n*** FRU written ***\n)\n*** End of FRU written ***\n" : "") +
                      "The FRU data has been saved in file " + m_sDir.File("up.fru") + "! \n",
                  s.sOut);
        EXPECT_EQ("", s.sErr);
        EXPECT_EQ(Encode(kGolden, e, true), ReadFileText(m_sDir.File("up.fru"))) << e;
        EXPECT_EQ(vImage, ReadBack());
    }
}

// A chassis area of 8 bytes: the bytes behind its chassis type, and its checksum.
TFruBytes Chassis(const TFruBytes& vFields)
{
    TFruBytes v = {1, 0, 1, 0, 0, 0, 0, 0xFE, 1, 1, 0x17};
    for (uint8_t u8 : vFields) v.push_back(u8);
    v.push_back(FruChecksum(v.data() + 8, v.size() - 8));
    return v;
}

TFruBytes Product(const TFruBytes& vField)
{
    sFruImageParts s;
    s.vProduct = FruInfoArea({1}, {{0x41, 0x99}, vField});
    return FruImage(s);
}

// An image with one fault, and the file's encoding: the report, and the file as it was.
struct RefusalCase {
    const char* pchName;
    TFruBytes vImage;
    eFileEncoding eEncoding;
    std::string sErr;
};

class FRUTextWriterRefusalTest : public FRUTextWriterTest, public testing::WithParamInterface<RefusalCase> {};

TEST_P(FRUTextWriterRefusalTest, ReportsAndLeavesTheFileAsItWas)
{
    WriteFileText(m_sDir.File("up.fru"), "old");
    Load(GetParam().vImage);
    const RunResult s = Save(GetParam().eEncoding);
    EXPECT_EQ(0, s.iStatus);
    EXPECT_EQ(GetParam().sErr, s.sErr);
    EXPECT_EQ("old", ReadFileText(m_sDir.File("up.fru")));
}

const std::string kCannot = "<ERROR> The FRU data cannot be saved in a FRU text file. \n";
TFruBytes WithGap(TFruBytes v)
{
    v.insert(v.begin() + 8, 8, 0);
    v[2] = 2, v[7] = 0xFD;
    return v;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FRUTextWriterRefusalTest,
    testing::Values(
        RefusalCase{"FailsValidation", {1, 0, 1, 0, 0, 0, 0, 0xFE, 1, 1, 0x17, 0xC1, 0, 0, 0, 0x25}, eEncodingUTF8,
                    "<ERROR> Incorrect FRU data. \nError checksum in CHASSIS Area. \n"},
        RefusalCase{"GapInFrontOfAnArea", WithGap(Chassis({0xC1, 0, 0, 0})), eEncodingASCII,
                    kCannot + "The CHASSIS Area starts at offset 0x10, not at offset 0x8, where the part in front of "
                              "it ends: a FRU text file holds the areas end to end. \n"},
        RefusalCase{"NonzeroByteBehindTheEndOfFields", Chassis({0xC1, 0, 7, 0}), eEncodingASCII,
                    kCannot + "In the CHASSIS Area, the byte 07h at offset 0xD stands behind C1, the end of the "
                              "fields, where a FRU text file holds only zeroes up to the checksum. \n"},
        RefusalCase{"C1InDataGivenInHex", Chassis({0x02, 0xC1, 0x01, 0xC1}), eEncodingUTF16,
                    kCannot + "Field 1 of the CHASSIS Area, at offset 0xB, can only be given in hex bytes, and it "
                              "holds the byte C1, which ends the fields there. \n"},
        RefusalCase{"NoRoomForC1", Chassis({0xC3, 'a', 'b', 'c'}), eEncodingUTF8,
                    "<ERROR> FRU write - Chassis Info Area length insufficient\n"},
        RefusalCase{"UnicodeInASCII", Product({0xC2, 'A', 0x00}), eEncodingASCII,
                    "<ERROR> Product Info Area contains Unicode data\nThe file encoding format cannot be ASCII\n"}),
    [](const testing::TestParamInfo<RefusalCase>& i) { return std::string(i.param.pchName); });

// Whatever valid image a device holds, the file reads back into its bytes up to the end
// of its last area (of an internal use area that is the only one: its first 8 bytes),
// and is what the generator writes one byte a line, Unicode lines included.
TEST_F(FRUTextWriterTest, AnyValidImageReadsBackUnchanged)
{
    static const char* const kapchNames[] = {"ascii", "utf8", "utf16"};
    for (uint32_t u32Seed = 1; u32Seed <= 300; u32Seed++) {
        for (eFileEncoding e : kaeEncodings) {
            const TFruBytes vImage = FruRandomImage(u32Seed, e != eEncodingASCII);
            const bool bInternalOnly = vImage[1] != 0 && !vImage[2] && !vImage[3] && !vImage[4] && !vImage[5];
            const TFruBytes& vDevice = Load(vImage);
            const TFruBytes vWanted(vDevice.begin(), vDevice.begin() + (bInternalOnly ? 16 : vImage.size()));
            ASSERT_EQ(1, Save(e).iStatus) << u32Seed << " " << e;
            EXPECT_EQ(vWanted, ReadBack()) << u32Seed << " " << e;
            std::string sMade, sError;
            ASSERT_TRUE(FruTextFile(vWanted, kapchNames[e], false, "", &sMade, &sError)) << sError;
            EXPECT_EQ(sMade, ReadFileText(m_sDir.File("up.fru"))) << u32Seed << " " << e;
        }
    }
}

}  // namespace
