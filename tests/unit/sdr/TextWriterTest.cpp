// The SDR text writer: its exact layout in each encoding, what it refuses and leaves
// behind, and that what it writes reads back into the same records.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "RandomRecords.h"
#include "TestSupport.h"
#include "TextSDRWriter.h"
#include "sdr/SDRFile.h"
#include "sdr/SDRTextWriter.h"

namespace {

std::string HexLines(const TRecord& v, size_t uFirst, size_t uEnd)
{
    std::string s;
    for (size_t i = uFirst; i < uEnd; i++) {
        char ach[4];
        snprintf(ach, sizeof(ach), "%02X\n", v[i]);
        s += ach;
    }
    return s;
}

class TextWriterTest : public testing::Test {
protected:
    void SetUp() override
    {
        G_psLocalSDREntryList = static_cast<SDREntry*>(calloc(SDR_RECORD_LIMIT, sizeof(SDREntry)));
        G_psRepositorySDREntryList = static_cast<SDREntry*>(calloc(SDR_RECORD_LIMIT, sizeof(SDREntry)));
        Clear();
    }
    void Clear()
    {
        for (uint32_t i = 0; i < SDR_RECORD_LIMIT; i++) {
            G_psLocalSDREntryList[i] = G_psRepositorySDREntryList[i] = SDREntry{SDR_EMPTY_RECORD_ID, 0, 0, 0, {}};
        }
    }
    void TearDown() override
    {
        free(G_psLocalSDREntryList);
        free(G_psRepositorySDREntryList);
    }
    // The records as an upload leaves them, with an empty holder between them.
    void Load(const std::vector<TRecord>& vRecords)
    {
        for (size_t i = 0; i < vRecords.size(); i++) {
            SDREntry& s = G_psRepositorySDREntryList[2 * i];
            s.u16RecordID = static_cast<uint16_t>(vRecords[i][0] | vRecords[i][1] << 8);
            s.u8RecordType = vRecords[i][3];
            s.u8RecordLength = static_cast<uint8_t>(vRecords[i].size());
            std::copy(vRecords[i].begin(), vRecords[i].end(), s.au8RecordData);
        }
    }
    RunResult Save(const std::string& sPath, eFileEncoding eEncoding)
    {
        RunResult s;
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        s.iStatus = SaveSDRFile(sPath.c_str(), eEncoding);
        s.sOut = testing::internal::GetCapturedStdout();
        s.sErr = testing::internal::GetCapturedStderr();
        return s;
    }
    std::vector<TRecord> ReadBack(const std::string& sPath)
    {
        uint16_t u16Count = 0;
        EXPECT_EQ(1, ReadSDRFile(sPath.c_str(), &u16Count));
        std::vector<TRecord> v;
        for (uint16_t i = 0; i < u16Count; i++) {
            const SDREntry& s = G_psLocalSDREntryList[i];
            v.emplace_back(s.au8RecordData, s.au8RecordData + s.u8RecordLength);
        }
        return v;
    }
    TempDir m_sDir;
};

// A record of every kind: types with no ID string, quoted ones (a Latin-1 letter, an
// apostrophe, an empty one) and one whose code asks for hex; string starts as the type
// table has them.
TEST_F(TextWriterTest, LaysOutEveryKindOfRecordInEachEncoding)
{
    const std::vector<TRecord> vRecords = TextExampleRecordSet();
    const struct { uint8_t u8Start; bool bQuoted; } asLayout[] = {
        {0x10, true}, {0x20, false}, {0x10, false}, {0x30, true}, {0x20, true}, {0x30, true}, {0x11, false},
        {0x10, false}, {0x20, false}, {0x10, true}, {0x10, true}, {0x10, true}, {0x10, false}};
    ASSERT_EQ(sizeof(asLayout) / sizeof(asLayout[0]), vRecords.size());
    std::string sText = "_SDR (\n";
    for (size_t i = 0; i < vRecords.size(); i++) {
        const TRecord& v = vRecords[i];
        char achTags[40];
        snprintf(achTags, sizeof(achTags), "_SDR_TYPE   %02X\n_REC_LEN   %02X\n", v[3], static_cast<unsigned>(v.size()));
        sText += achTags + HexLines(v, 0, asLayout[i].u8Start) +
                 (asLayout[i].bQuoted ? "'" + std::string(v.begin() + asLayout[i].u8Start, v.end()) + "'\n"
                                      : HexLines(v, asLayout[i].u8Start, v.size())) + "\n\n";
    }
    sText += ")\n";
    Load(vRecords);
    for (eFileEncoding e : {eEncodingASCII, eEncodingUTF8, eEncodingUTF16}) {
        const std::string sPath = m_sDir.File("u" + std::to_string(e) + ".sdr");
        RunResult s = Save(sPath, e);
        EXPECT_EQ(1, s.iStatus);
        EXPECT_EQ("The SDR data has been saved in file " + sPath + "! \n", s.sOut);
        EXPECT_EQ("", s.sErr);
        EXPECT_EQ(EncodeSDRText(sText, e), ReadFileText(sPath)) << e;
        EXPECT_EQ(vRecords, ReadBack(sPath));
    }
    EXPECT_NE(std::string::npos, ReadFileText(m_sDir.File("u0.sdr")).find("'L\xFC" "fter 1'\n"));
    EXPECT_NE(std::string::npos, ReadFileText(m_sDir.File("u1.sdr")).find("'L\xC3\xBC" "fter 1'\n"));
    EXPECT_EQ(std::string("\xFF\xFE_\0S\0", 6), ReadFileText(m_sDir.File("u2.sdr")).substr(0, 6));
    EXPECT_EQ(std::string(")\0\n\0", 4), ReadFileText(m_sDir.File("u2.sdr")).substr(ReadFileText(m_sDir.File("u2.sdr")).size() - 4));
}

// A write that fails runs the disk-full dialogue (here without an answer) and stops.
TEST_F(TextWriterTest, AFullDiskRunsTheDialogueAndFails)
{
    Load(TextExampleRecordSet());
    ASSERT_NE(nullptr, freopen("/dev/null", "r", stdin));
    RunResult s = Save("/dev/full", eEncodingUTF8);
    EXPECT_EQ(0, s.iStatus);
    EXPECT_EQ("<ERROR> Disk Full! /dev/full may be corrupt or incomplete.\n", s.sErr);
    EXPECT_EQ("Would you like to delete /dev/full? (y='YES')/dev/full was not deleted.\n", s.sOut);
}

// What a failed save prints, and what it leaves of a file that held "old".
struct FailCase {
    const char* pchName;
    size_t uRecord;  // of TextExampleRecordSet(), changed at uIndex to u8Value
    size_t uIndex;
    uint8_t u8Value;
    const char* pchPath;
    int iResult;
    std::string sErr;
    std::string sLeft;  // the file afterwards
};

class TextWriterFailTest : public TextWriterTest, public testing::WithParamInterface<FailCase> {};

TEST_P(TextWriterFailTest, ReportsAndLeavesTheFileAsPromised)
{
    const FailCase& c = GetParam();
    std::vector<TRecord> vRecords = TextExampleRecordSet();
    vRecords[c.uRecord][c.uIndex] = c.u8Value;
    Load(vRecords);
    const std::string sPath = m_sDir.File(c.pchPath);
    WriteFileText(m_sDir.File("old.sdr"), "old");
    RunResult s = Save(sPath, eEncodingUTF16);
    EXPECT_EQ(c.iResult, s.iStatus);
    std::string sErr = s.sErr;
    if (sErr.find(m_sDir.Path()) != std::string::npos) sErr.replace(sErr.find(m_sDir.Path()), m_sDir.Path().size(), "DIR");
    EXPECT_EQ(c.sErr, sErr);
    const std::string sLeft = ReadFileText(m_sDir.File("old.sdr"));
    EXPECT_EQ(c.sLeft, c.iResult ? sLeft.substr(0, 3) : sLeft);
}

INSTANTIATE_TEST_SUITE_P(
    Lists, TextWriterFailTest,
    testing::Values(
        FailCase{"ReservedType", 1, 3, 0x04, "old.sdr", 0,
                 "<ERROR> Incorrect SDR data. \nRecord type (04h) is reserved. (record 2) \n", ""},
        FailCase{"ZeroInQuotedString", 0, 0x11, 0x00, "old.sdr", 0,
                 "<ERROR> Incorrect SDR data. \nThe ID string of record ID 0001h holds the byte 00h, which a quoted "
                 "string can't carry; the file is left as it was. (record 1) \n", "old"},
        FailCase{"LineFeedInQuotedString", 9, 0x12, 0x0A, "old.sdr", 0,
                 "<ERROR> Incorrect SDR data. \nThe ID string of record ID 000Ah holds the byte 0Ah, which a quoted "
                 "string can't carry; the file is left as it was. (record 10) \n", "old"},
        FailCase{"LineFeedInHexString", 6, 0x12, 0x0A, "old.sdr", 1, "", "\xFF\xFE_"},
        FailCase{"CodeLongerThanString", 0, 0x0F, 0xC4, "old.sdr", 1,
                 "Warning: The ID string of record ID 0001h has 03h characters, but its Type/Length Code (C4) says "
                 "04h: reading the file back will refuse this record. (record 1) \n", "\xFF\xFE_"},
        FailCase{"MissingDirectory", 0, 0, 0x01, "no/u.sdr", 0, "<ERROR> File open error DIR/no/u.sdr.\n", "old"}),
    [](const testing::TestParamInfo<FailCase>& i) { return i.param.pchName; });

// Whatever valid records the repository holds, the file reads back into the same bytes.
TEST_F(TextWriterTest, AnyValidListReadsBackUnchanged)
{
    for (uint32_t u32Seed = 1; u32Seed <= 120; u32Seed++) {
        Clear();
        const std::vector<TRecord> vRecords = RandomRecordSet(u32Seed, 1 + u32Seed % 24);
        Load(vRecords);
        const std::string sPath = m_sDir.File("p.sdr");
        ASSERT_EQ(1, Save(sPath, static_cast<eFileEncoding>(u32Seed % 3)).iStatus) << u32Seed;
        EXPECT_EQ(vRecords, ReadBack(sPath)) << u32Seed;
    }
}

}  // namespace
