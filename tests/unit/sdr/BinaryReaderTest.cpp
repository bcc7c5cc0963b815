// Reading binary SDR files of the three format versions, and every way they fail.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "BinarySDRWriter.h"
#include "TestSupport.h"
#include "sdr/SDRBinFile.h"
#include "sdr/SDRCrc.h"
#include "sdr/SDRFile.h"

namespace {

struct ReadResult {
    int iResult;
    uint16_t u16Count;
    std::string sOut;
    std::string sErr;
};

class BinaryReaderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        G_psLocalSDREntryList = static_cast<SDREntry*>(calloc(SDR_RECORD_LIMIT, sizeof(SDREntry)));
        for (uint32_t i = 0; i < SDR_RECORD_LIMIT; i++) G_psLocalSDREntryList[i].u16RecordID = SDR_EMPTY_RECORD_ID;
    }
    void TearDown() override
    {
        free(G_psLocalSDREntryList);
        G_psLocalSDREntryList = nullptr;
    }

    ReadResult Read(const std::vector<uint8_t>& vFile)
    {
        std::string sPath = m_sDir.File("records.sdr");
        WriteFileBytes(sPath, vFile);
        ReadResult s{0, 0, "", ""};
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        s.iResult = ReadSDRFile(sPath.c_str(), &s.u16Count);
        s.sErr = testing::internal::GetCapturedStderr();
        s.sOut = testing::internal::GetCapturedStdout();
        return s;
    }

    TempDir m_sDir;
};

std::string Recognised(int iVersion, size_t uCount, size_t uSize)
{
    char achText[160];
    snprintf(achText, sizeof(achText),
             "Recognize SDR File as binary format version %d (%zu records) \n"
             "Start to process SDR file (total 0x%zX bytes) \n",
             iVersion, uCount, uSize);
    return achText;
}

TEST(SDRCrc, MatchesTheXmodemCheckValue)
{
    uint16_t u16Crc = 0;
    for (char ch : std::string("123456789")) u16Crc = GenerateCRC16(u16Crc, static_cast<uint8_t>(ch));
    EXPECT_EQ(0x31C3, u16Crc);
    EXPECT_EQ(0x1021, u16CRCTable[1]);
}

class EveryVersion : public BinaryReaderTest, public ::testing::WithParamInterface<int> {};

TEST_P(EveryVersion, ReadsTheExampleRecords)
{
    std::vector<TRecord> vRecords = ExampleRecordSet();
    std::vector<uint8_t> vFile = BuildBinarySDRFile(GetParam(), vRecords);
    ReadResult s = Read(vFile);
    ASSERT_EQ(1, s.iResult) << s.sErr;
    EXPECT_EQ(Recognised(GetParam(), vRecords.size(), vFile.size()), s.sOut);
    ASSERT_EQ(vRecords.size(), s.u16Count);
    for (size_t i = 0; i < vRecords.size(); i++) {
        const SDREntry& e = G_psLocalSDREntryList[i];
        EXPECT_EQ(vRecords[i].size(), e.u8RecordLength);
        EXPECT_EQ(e.u8RecordLength, e.u8DataOffset);
        EXPECT_EQ(vRecords[i][3], e.u8RecordType);
        EXPECT_EQ(vRecords[i][0] | (vRecords[i][1] << 8), e.u16RecordID);
        EXPECT_EQ(vRecords[i], TRecord(e.au8RecordData, e.au8RecordData + e.u8RecordLength));
    }
}

TEST_P(EveryVersion, ReportsACrcError)
{
    std::vector<TRecord> vRecords = {OEMRecord(0x1234, {1, 2, 3})};
    std::vector<uint8_t> vFile = BuildBinarySDRFile(GetParam(), vRecords);
    size_t uCrcOffset = vFile.size() - 2;
    vFile[uCrcOffset] ^= 0x01;
    uint16_t u16Good = RecordCrc(vRecords[0]);
    ReadResult s = Read(vFile);
    EXPECT_EQ(0, s.iResult);
    char achExpected[600];
    snprintf(achExpected, sizeof(achExpected),
             "SDR binary file format error. \nError position: 0x%02zX (file offset) \n"
             "Error cause: CRC 16 checking failed! \n              => Expected value: 0x%04X \n"
             "              => Obtained value: 0x%04X \nError SDR record: \n              => ID: 0x34 \n"
             "              => Type: 0xC0 \n              => Length: 0x0B \n%s",
             uCrcOffset, u16Good ^ 0x01, u16Good, GetParam() == 2 ? "SDR binary file format error:\n" : "");
    EXPECT_EQ(achExpected, s.sErr);
}

TEST_P(EveryVersion, ReportsARecordThatRunsPastTheEnd)
{
    std::vector<uint8_t> vFile = BuildBinarySDRFile(GetParam(), {OEMRecord(0x0102, {1, 2, 3})});
    vFile.pop_back();  // the CRC's high byte is missing
    if (GetParam() == 2) vFile[18]--, vFile[20]++;  // keep the stated size and its checksum right
    ReadResult s = Read(vFile);
    EXPECT_EQ(0, s.iResult);
    EXPECT_EQ(std::string("Adding the following SDR record exceeds the total file size! \nError SDR record: \n"
                          "              => ID: 0x102 \n              => Type: 0xC0 \n"
                          "              => Length: 0x0B \n") +
                  (GetParam() == 2 ? "SDR binary file format error:\n" : ""),
              s.sErr);
}

TEST_P(EveryVersion, RefusesARecordLongerThanAHolder)
{
    TRecord vLong = OEMRecord(0x0001, std::vector<uint8_t>(100, 0x11));  // 108 bytes
    ReadResult s = Read(BuildBinarySDRFile(GetParam(), {vLong}));
    EXPECT_EQ(0, s.iResult);
    EXPECT_NE(std::string::npos, s.sErr.find("exceeds the maximum record size of 101 bytes"));
}

INSTANTIATE_TEST_SUITE_P(Versions, EveryVersion, ::testing::Values(0, 1, 2));

TEST_F(BinaryReaderTest, CountMismatchOfVersionsZeroAndOneIsAFormatError)
{
    for (int iVersion : {0, 1}) {
        std::vector<uint8_t> vFile = BuildBinarySDRFile(iVersion, ExampleRecordSet());
        for (int iDelta : {-1, +1}) {
            std::vector<uint8_t> vBad = vFile;
            size_t uCountByte = (iVersion == 0) ? 0 : 5;
            size_t uCheckByte = (iVersion == 0) ? 1 : 7;
            vBad[uCountByte] = static_cast<uint8_t>(vBad[uCountByte] + iDelta);
            vBad[uCheckByte] = static_cast<uint8_t>(vBad[uCheckByte] - iDelta);
            ReadResult s = Read(vBad);
            EXPECT_EQ(0, s.iResult);
            EXPECT_EQ("SDR binary file format error:\n", s.sErr) << iVersion << " " << iDelta;
        }
    }
}

TEST_F(BinaryReaderTest, VersionTwoPaddingRules)
{
    std::vector<TRecord> vRecords = ExampleRecordSet();
    ReadResult sPadded = Read(BuildBinarySDRFile(2, vRecords, 7));
    EXPECT_EQ(1, sPadded.iResult);
    EXPECT_EQ(vRecords.size(), sPadded.u16Count);

    std::vector<uint8_t> vDirty = BuildBinarySDRFile(2, vRecords, 7);
    vDirty[vDirty.size() - 3] = 0xFE;
    ReadResult sDirty = Read(vDirty);
    EXPECT_EQ(0, sDirty.iResult);
    EXPECT_EQ("SDR binary file format error:\n", sDirty.sErr);
    EXPECT_EQ(vRecords.size(), sDirty.u16Count);
}

TEST_F(BinaryReaderTest, VersionTwoMayHoldFewerRecordsThanItsHeaderSays)
{
    std::vector<TRecord> vRecords = ExampleRecordSet();
    std::vector<uint8_t> vFile = BuildBinarySDRFile(2, vRecords);
    vFile[5] = static_cast<uint8_t>(vFile[5] + 1);  // header claims one more record
    vFile[7] = static_cast<uint8_t>(vFile[7] - 1);
    ReadResult s = Read(vFile);
    EXPECT_EQ(1, s.iResult);
    EXPECT_EQ("", s.sErr);
    EXPECT_EQ(vRecords.size(), s.u16Count);
}

TEST_F(BinaryReaderTest, VersionTwoEdgeOffsetsAndSizes)
{
    std::vector<uint8_t> vEmpty = BuildBinarySDRFile(2, {});
    EXPECT_EQ(1, Read(vEmpty).iResult);  // first record offset == file size

    std::vector<uint8_t> vFile = BuildBinarySDRFile(2, ExampleRecordSet());
    vFile.push_back(0xFF);  // one byte more than bytes 18-19 say
    ReadResult s = Read(vFile);
    EXPECT_EQ(0, s.iResult);
    EXPECT_EQ("", s.sOut);
    EXPECT_EQ("<ERROR> Actual file size does not match the file size specified in the header! \n", s.sErr);

    std::vector<uint8_t> vZero = BuildBinarySDRFile(2, {OEMRecord(1, {})});
    vZero[5] = 0, vZero[7]++;  // count 0 but a record present: fails silently
    ReadResult sZero = Read(vZero);
    EXPECT_EQ(0, sZero.iResult);
    EXPECT_EQ("", sZero.sErr);
}

TEST_F(BinaryReaderTest, ABrokenHeaderChecksumIsNoBinaryFile)
{
    std::vector<uint8_t> vFile = BuildBinarySDRFile(1, ExampleRecordSet());
    vFile[7]++;
    ReadResult s = Read(vFile);
    EXPECT_EQ(0, s.iResult);
    EXPECT_EQ("", s.sOut);  // never announced as binary; goes on as a text file
}

TEST_F(BinaryReaderTest, FilesTooShortForAnyHeaderAreRefused)
{
    EXPECT_EQ(0, Read({}).iResult);
    ReadResult s = Read({0x00, 0x00});  // a whole version 0 header, but no room for a byte-order mark
    EXPECT_EQ(0, s.iResult);
    EXPECT_NE(std::string::npos, s.sErr.find("<ERROR> Failure to get encoding info from file "));
}

TEST_F(BinaryReaderTest, RecordLimitOfVersionOne)
{
    std::vector<TRecord> vRecords(65534, OEMRecord(0x0001, {}));
    EXPECT_EQ(1, Read(BuildBinarySDRFile(1, vRecords)).iResult);
    vRecords.push_back(OEMRecord(0x0001, {}));
    ReadResult s = Read(BuildBinarySDRFile(1, vRecords));
    EXPECT_EQ(0, s.iResult);
    EXPECT_EQ("The SDR record count exceeds FFFFh records. \n", s.sErr);
}

TEST_F(BinaryReaderTest, IncompleteRecordHeaderIsReportedWithoutReadingPastTheEnd)
{
    std::vector<uint8_t> vFile = BuildBinarySDRFile(1, {OEMRecord(1, {})});
    vFile.resize(vFile.size() + 3, 0x00);  // three stray bytes: not a whole header
    ReadResult s = Read(vFile);
    EXPECT_EQ(0, s.iResult);
    EXPECT_EQ(0, s.sErr.find("Adding the following SDR record exceeds the total file size! \n"));
}

}  // namespace
