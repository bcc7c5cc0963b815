// The file name and fruID= arguments of -d, -v and -t.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/ArgumentCheck.h"

namespace {

struct ArgCase {
    std::vector<std::string> vArgs;
    int iResult;
    int bIsSDR;
    std::string sFile;
    uint16_t u16FruID;
    std::string sErr;  // expected standard error
};

class ArgumentCheckTest : public ::testing::TestWithParam<ArgCase> {};

TEST_P(ArgumentCheckTest, ReadsFileKindAndFruID)
{
    const ArgCase& c = GetParam();
    std::vector<std::string> vStorage = c.vArgs;
    std::vector<char*> vSlots;
    for (auto& s : vStorage) vSlots.push_back(&s[0]);
    vSlots.resize(16, nullptr);
    int bIsSDR = 0;
    char achFile[FILE_NAME_SIZE] = {0};
    uint16_t u16FruID = 0xABCD;
    testing::internal::CaptureStderr();
    int iResult = ValidateAnalyzeParameters(static_cast<uint16_t>(c.vArgs.size()), vSlots.data(), &bIsSDR, achFile,
                                            &u16FruID);
    EXPECT_EQ(c.sErr, testing::internal::GetCapturedStderr());
    EXPECT_EQ(c.iResult, iResult);
    if (c.iResult == 1) {
        EXPECT_EQ(c.bIsSDR, bIsSDR);
        EXPECT_EQ(c.sFile, achFile);
        EXPECT_EQ(c.u16FruID, u16FruID);
    }
}

const uint16_t kUnset = 0xABCD;

INSTANTIATE_TEST_SUITE_P(
    Arguments, ArgumentCheckTest,
    ::testing::Values(
        ArgCase{{"x.fru"}, 1, 1, "x.fru", kUnset, ""},
        ArgCase{{"a.sdr", "fruID=0x02"}, 1, 0, "a.sdr", 2, ""},
        ArgCase{{"a.sdr", "fruID=2"}, 1, 0, "a.sdr", 2, ""},
        ArgCase{{"a.sdr", "fruID=10"}, 1, 0, "a.sdr", 0x10, ""},
        ArgCase{{"a.sdr", "fruID="}, 1, 0, "a.sdr", 0, ""},
        ArgCase{{"a.sdr", "fruID=0xFE"}, 1, 0, "a.sdr", 0xFE, ""},
        ArgCase{{"a.sdr", "fruID=0x"}, 0, 0, "", 0, "<ERROR> FRU ID is not a number! \n"},
        ArgCase{{"a.sdr", "fruID=0xZ1"}, 0, 0, "", 0, "<ERROR> FRU ID is not a number! \n"},
        ArgCase{{"a.sdr", "fruID=0xFF"}, 0, 0, "", 0, "<ERROR> FRU ID (0xFF) is reserved! \n \n"},
        ArgCase{{"a.sdr", "fruID=0x100"}, 0, 0, "", 0, "<ERROR> FRU ID (0x100) is limited to 0x00~0xFE! \n \n"},
        // A number past 16 bits is refused, never cut down to a valid small ID.
        ArgCase{{"a.sdr", "fruID=0x10000"}, 0, 0, "", 0, "<ERROR> FRU ID (0x10000) is limited to 0x00~0xFE! \n \n"},
        ArgCase{{"a.sdr", "FruId=1"}, 0, 0, "", 0, "<ERROR> 'FruId=1' is an invalid parameter for -d/-v/-t! \n\n"},
        ArgCase{{"a.sdr,junk"}, 0, 0, "", 0, "<ERROR> 'junk' is an invalid parameter for -d/-v/-t! \n\n"},
        ArgCase{{"a.sdr,fruID=1"}, 1, 1, "a.sdr", 1, ""},
        ArgCase{{"a.sdr,junk", "fruID=1"}, 1, 0, "a.sdr", 1, ""},
        ArgCase{{"a b.sdr"}, 0, 0, "", 0, "<ERROR> 'b.sdr' is an invalid parameter for -d/-v/-t! \n\n"},
        ArgCase{{}, 0, 0, "", 0, "<ERROR> Please specify a SDR/FRU filename! \n \n"},
        ArgCase{{"a.sdr", ""}, 0, 0, "", 0,
                "<ERROR> Please specify the FRU ID as fruID=<hex number> for FRU data! \n \n"},
        ArgCase{{std::string(256, 'f')}, 0, 0, "", 0, "<ERROR> The file name is longer than 255 characters! \n \n"},
        ArgCase{{std::string(255, 'f')}, 1, 1, std::string(255, 'f'), kUnset, ""},
        ArgCase{{"a.sdr", "fruID=0x" + std::string(30, '0')}, 0, 0, "", 0,
                "<ERROR> A parameter for -d/-v/-t is longer than 31 characters! \n\n"}));

TEST(ArgumentCheck, EmptyFileArgumentIsAnUnknownFlagOnStandardOutput)
{
    std::string sArg = " ,";
    char* apchSlots[16] = {&sArg[0]};
    int bIsSDR = 0;
    char achFile[FILE_NAME_SIZE] = {0};
    uint16_t u16FruID = 0;
    testing::internal::CaptureStdout();
    EXPECT_EQ(0, ValidateAnalyzeParameters(1, apchSlots, &bIsSDR, achFile, &u16FruID));
    EXPECT_EQ("<ERROR> Unknown flag: \n \nInvalid operations. \n\n\rUse TAVRIN -h for help.\n",
              testing::internal::GetCapturedStdout());
}

}  // namespace
