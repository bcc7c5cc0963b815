// tavrin-dump2sdr as a user runs it: a raw record dump into a binary SDR file of format
// version 1, and every refusal with its exact message. The real ipmitool's dump is
// tested in tests/unit/lanreal.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "BinarySDRWriter.h"
#include "TestSupport.h"

namespace {

const TRecord kLocator = {0x01, 0x00, 0x51, 0x12, 0x0E, 0x20, 0x00, 0x00, 0xBF, 0x00, 0x00,
                          0x00, 0x2E, 0x01, 0x00, 0xC3, 'B',  'M',  'C'};
const TRecord kOem = {0x02, 0x00, 0x51, 0xC0, 0x03, 0x57, 0x01, 0x00};

std::vector<uint8_t> Dump(const std::vector<TRecord>& vRecords)
{
    std::vector<uint8_t> vDump;
    for (const TRecord& vRecord : vRecords) vDump.insert(vDump.end(), vRecord.begin(), vRecord.end());
    return vDump;
}

RunResult Convert(const TempDir& sDir, const std::vector<uint8_t>& vDump)
{
    WriteFileBytes(sDir.File("in.dump"), vDump);
    return RunProgram({BuildDir() + "/tavrin-dump2sdr", sDir.File("in.dump"), sDir.File("out.sdr")});
}

TEST(DumpToSdr, WritesTheRecordsAsAVersionOneFile)
{
    TempDir sDir;
    RunResult s = Convert(sDir, Dump({kLocator, kOem}));
    ASSERT_EQ(0, s.iStatus) << s.sErr;
    EXPECT_EQ("tavrin-dump2sdr: 2 records written to " + sDir.File("out.sdr") +
                  " (binary SDR file, format version 1).\n", s.sOut);
    EXPECT_EQ(BuildBinarySDRFile(1, {kLocator, kOem}), ReadFileBytes(sDir.File("out.sdr")));
}

struct RefusalCase {
    const char* pchName;
    std::vector<uint8_t> vDump;
    std::string sErr;
};

void PrintTo(const RefusalCase& c, std::ostream* os) { *os << c.pchName; }

class DumpToSdrRefusal : public ::testing::TestWithParam<RefusalCase> {};

TEST_P(DumpToSdrRefusal, LeavesNoFile)
{
    TempDir sDir;
    RunResult s = Convert(sDir, GetParam().vDump);
    EXPECT_EQ(1, s.iStatus);
    EXPECT_EQ("tavrin-dump2sdr: " + GetParam().sErr, s.sErr);
    EXPECT_EQ("", s.sOut);
    EXPECT_EQ("", ReadFileText(sDir.File("out.sdr")));
}

TRecord TooLong()
{
    TRecord vRecord = {0x03, 0x00, 0x51, 0xC0, 0x61};  // 5 + 97 bytes: one more than a holder
    vRecord.resize(102, 0xAA);
    return vRecord;
}

INSTANTIATE_TEST_SUITE_P(
    Dumps, DumpToSdrRefusal,
    ::testing::Values(
        RefusalCase{"Empty", {}, "the dump holds no records.\n"},
        RefusalCase{"HeaderCut", Dump({kLocator, {0x02, 0x00, 0x51}}),
                    "record 2 at byte offset 19 is cut short: the dump holds 3 of its 5 header bytes.\n"},
        RefusalCase{"BodyCut", Dump({kLocator, {0x02, 0x00, 0x51, 0xC0, 0x03, 0x57}}),
                    "record 2 (ID 0002h, type C0h) at byte offset 19 is cut short: the dump holds 1 of its 3 "
                    "body bytes.\n"},
        RefusalCase{"TooLong", Dump({kOem, TooLong()}),
                    "record 2 (ID 0003h, type C0h) at byte offset 8 is 102 bytes long; tavrin takes records of at "
                    "most 101 bytes.\n"}),
    [](const ::testing::TestParamInfo<RefusalCase>& sInfo) { return std::string(sInfo.param.pchName); });

TEST(DumpToSdr, NeverReplacesAFileAndTellsHowToCall)
{
    TempDir sDir;
    WriteFileText(sDir.File("out.sdr"), "mine");
    RunResult s = Convert(sDir, Dump({kOem}));
    EXPECT_EQ(1, s.iStatus);
    EXPECT_EQ("tavrin-dump2sdr: can't create " + sDir.File("out.sdr") +
                  ": File exists. Choose another name, or remove the file first.\n", s.sErr);
    EXPECT_EQ("mine", ReadFileText(sDir.File("out.sdr")));

    s = RunProgram({BuildDir() + "/tavrin-dump2sdr", sDir.File("in.dump")});
    EXPECT_EQ(2, s.iStatus);
    EXPECT_EQ(0u, s.sErr.find("Usage: tavrin-dump2sdr DUMP SDRFILE\n"));
}

}  // namespace
