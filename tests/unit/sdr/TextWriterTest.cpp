// The SDR text writer: its layout in each encoding, a full disk, and that what it
// writes reads back into the same records. (Refusals: tests/e2e/SimUploadTest.cpp.)
#include <gtest/gtest.h>

#include <cstdlib>

#include "RandomRecords.h"
#include "TestSupport.h"
#include "TextSDRWriter.h"
#include "sdr/SDRFile.h"
#include "sdr/SDRTextWriter.h"

namespace {

class TextWriterTest : public testing::Test {
protected:
    void SetUp() override
    {
        G_psLocalSDREntryList = static_cast<SDREntry*>(calloc(SDR_RECORD_LIMIT, sizeof(SDREntry)));
        G_psRepositorySDREntryList = static_cast<SDREntry*>(calloc(SDR_RECORD_LIMIT, sizeof(SDREntry)));
    }
    void TearDown() override
    {
        free(G_psLocalSDREntryList);
        free(G_psRepositorySDREntryList);
    }
    // The records as an upload leaves them, here with an empty holder behind each.
    void Load(const std::vector<TRecord>& vRecords)
    {
        for (uint32_t i = 0; i < SDR_RECORD_LIMIT; i++) {
            G_psLocalSDREntryList[i] = G_psRepositorySDREntryList[i] = SDREntry{SDR_EMPTY_RECORD_ID, 0, 0, 0, {}};
        }
        for (size_t i = 0; i < vRecords.size(); i++) {
            const TRecord& v = vRecords[i];
            SDREntry& s = G_psRepositorySDREntryList[2 * i];
            s = SDREntry{static_cast<uint16_t>(v[0] | v[1] << 8), v[3], static_cast<uint8_t>(v.size()), 0, {}};
            std::copy(v.begin(), v.end(), s.au8RecordData);
        }
    }
    RunResult Save(const std::string& sPath, eFileEncoding eEncoding)
    {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        RunResult s;
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
        for (const SDREntry* ps = G_psLocalSDREntryList; ps < G_psLocalSDREntryList + u16Count; ps++) {
            v.emplace_back(ps->au8RecordData, ps->au8RecordData + ps->u8RecordLength);
        }
        return v;
    }
    TempDir m_sDir;
};

// A record of every kind (no ID string; quoted with a Latin-1 letter, an apostrophe, or
// empty; hex by its code), one byte a line, as the sample generator lays them out.
TEST_F(TextWriterTest, LaysOutEveryKindOfRecordInEachEncoding)
{
    const std::vector<TRecord> vRecords = TextExampleRecordSet();
    std::string sText = "_SDR (\n";
    for (const TRecord& v : vRecords) sText += SDRRecordText(v, 1, false) + "\n\n";
    sText += ")\n";
    Load(vRecords);
    for (eFileEncoding e : {eEncodingASCII, eEncodingUTF8, eEncodingUTF16}) {
        const std::string sPath = m_sDir.File("u" + std::to_string(e) + ".sdr");
        const RunResult s = Save(sPath, e);
        EXPECT_EQ(1, s.iStatus);
        EXPECT_EQ("The SDR data has been saved in file " + sPath + "! \n", s.sOut);
        EXPECT_EQ("", s.sErr);
        EXPECT_EQ(EncodeSDRText(sText, e), ReadFileText(sPath)) << e;
        EXPECT_EQ(vRecords, ReadBack(sPath));
    }
    EXPECT_NE(std::string::npos, ReadFileText(m_sDir.File("u0.sdr")).find("\n'L\xFC" "fter 1'\n\n\n"));
    EXPECT_NE(std::string::npos, ReadFileText(m_sDir.File("u1.sdr")).find("\n'L\xC3\xBC" "fter 1'\n\n\n"));
    const std::string sWide = ReadFileText(m_sDir.File("u2.sdr"));
    EXPECT_EQ(std::string("\xFF\xFE_\0S\0", 6), sWide.substr(0, 6));
    EXPECT_EQ(std::string(")\0\n\0", 4), sWide.substr(sWide.size() - 4));
}

TEST_F(TextWriterTest, AFullDiskRunsTheDialogueAndFails)
{
    Load(TextExampleRecordSet());
    ASSERT_NE(nullptr, freopen("/dev/null", "r", stdin));  // no answer: nothing is deleted
    const RunResult s = Save("/dev/full", eEncodingUTF8);
    EXPECT_EQ(0, s.iStatus);
    EXPECT_EQ("<ERROR> Disk Full! /dev/full may be corrupt or incomplete.\n", s.sErr);
    EXPECT_EQ("Would you like to delete /dev/full? (y='YES')/dev/full was not deleted.\n", s.sOut);
}

// Whatever valid records the repository holds, the file reads back into the same bytes.
TEST_F(TextWriterTest, AnyValidListReadsBackUnchanged)
{
    for (uint32_t u32Seed = 1; u32Seed <= 120; u32Seed++) {
        const std::vector<TRecord> vRecords = RandomRecordSet(u32Seed, 1 + u32Seed % 24);
        Load(vRecords);
        ASSERT_EQ(1, Save(m_sDir.File("p.sdr"), static_cast<eFileEncoding>(u32Seed % 3)).iStatus) << u32Seed;
        EXPECT_EQ(vRecords, ReadBack(m_sDir.File("p.sdr"))) << u32Seed;
    }
}

}  // namespace
