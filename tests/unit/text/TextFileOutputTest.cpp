#include "text/TextFileOutput.h"

#include "TestSupport.h"
#include "TextTestBytes.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <sys/stat.h>

namespace {

// The bytes that a writer leaves in a fresh file.
std::string Written(const std::function<void(FILE*, const char*)>& fnWrite)
{
    TempDir sDir;
    const std::string sPath = sDir.File("out.txt");
    FILE* pFile = fopen(sPath.c_str(), "wb");
    fnWrite(pFile, sPath.c_str());
    fclose(pFile);
    return ReadFileText(sPath);
}

TEST(TextFileOutput, WriteStringToFileEncodes)
{
    const std::string sLong = std::string(200, '\xE9') + std::string(100, 'x') + "\n";  // past every piece size
    for (const std::string& sText : {std::string("A\n"), std::string("\xE9"), std::string(""), sLong}) {
        for (eFileEncoding eEncoding : {eEncodingASCII, eEncodingUTF8, eEncodingUTF16}) {
            EXPECT_EQ(Written([&](FILE* p, const char* pchPath) {
                          EXPECT_EQ(WriteStringToFile(p, pchPath, sText.c_str(), eEncoding), 1);
                      }),
                      Encode(sText, eEncoding)) << eEncoding << " " << sText.size();
        }
    }
}

TEST(TextFileOutput, FeedDataDumpsHexLinesAndAdvances)
{
    const uint8_t au8Data[] = {0x00, 0xAB, 0x0F, 0x10};
    for (eFileEncoding eEncoding : {eEncodingASCII, eEncodingUTF8, eEncodingUTF16}) {
        sFeedCursor sCursor{au8Data, 1, eEncoding, sizeof(au8Data)};
        EXPECT_EQ(Written([&](FILE* p, const char* pchPath) { EXPECT_EQ(FeedData(p, pchPath, &sCursor, 2), 1); }),
                  Encode("AB\n0F\n", eEncoding));
        EXPECT_EQ(sCursor.u16Offset, 3);
        EXPECT_EQ(Written([&](FILE* p, const char* pchPath) { EXPECT_EQ(FeedData(p, pchPath, &sCursor, 0), 1); }), "");
        EXPECT_EQ(sCursor.u16Offset, 3);
        testing::internal::CaptureStderr();
        EXPECT_EQ(Written([&](FILE* p, const char* pchPath) { EXPECT_EQ(FeedData(p, pchPath, &sCursor, 2), 0); }), "");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "<ERROR> Internal Error!\n");  // would read past the data
        EXPECT_EQ(sCursor.u16Offset, 3);
    }
}

struct DiskFullCase {
    std::string sMode, sStream, sEncoding, sAnswer;
    bool bDeleted;
};

void PrintTo(const DiskFullCase& c, std::ostream* os) { *os << "encoding " << c.sEncoding; }

class DiskFullTest : public testing::TestWithParam<DiskFullCase> {};

TEST_P(DiskFullTest, AsksBeforeDeleting)
{
    const DiskFullCase& c = GetParam();
    TempDir sDir;
    const std::string sPath = sDir.File("part.txt");
    WriteFileText(sPath, "partial");
    RunOptions sOptions;
    sOptions.sStdin = c.sAnswer;
    const RunResult r = RunProgram(
        {BuildDir() + "/tests/text_write_helper", c.sMode, c.sStream, sPath, c.sEncoding, "AB\xE9"}, sOptions);
    EXPECT_EQ(r.iStatus, 1);
    EXPECT_EQ(r.sErr, "<ERROR> Disk Full! " + sPath + " may be corrupt or incomplete.\n");
    EXPECT_EQ(r.sOut, "Would you like to delete " + sPath + "? (y='YES')" + sPath +
                          (c.bDeleted ? " has been deleted.\n" : " was not deleted.\n") +
                          (c.sMode == "feed" ? "offset=0\n" : ""));
    struct stat sStat;
    EXPECT_EQ(stat(sPath.c_str(), &sStat) == 0, !c.bDeleted);
}

INSTANTIATE_TEST_SUITE_P(TextFileOutput, DiskFullTest, testing::Values(
    DiskFullCase{"string", "readonly", "0", "y\n", true},
    DiskFullCase{"string", "readonly", "1", " \n\tY", true},
    DiskFullCase{"string", "readonly", "2", "n\ny\n", false},
    DiskFullCase{"string", "readonly", "0", "", false},     // standard input has ended
    DiskFullCase{"string", "full", "2", "y", true},         // a real ENOSPC, seen at the flush
    DiskFullCase{"feed", "full", "2", "", false},
    DiskFullCase{"feed", "full", "0", "Y\n", true}),
    [](const testing::TestParamInfo<DiskFullCase>& i) {
        return i.param.sMode + "_" + i.param.sStream + "_" + std::to_string(i.index);
    });

}  // namespace
