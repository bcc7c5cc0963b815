// Reading SDR text files: every fault with its exact report and line, the three
// encodings, line ends, and the record limit.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "TextSDRWriter.h"
#include "sdr/SDREntry.h"
#include "sdr/SDRFile.h"

namespace {

const std::string kFormat = "<ERROR> SDR file format error.\n";
const std::string kValidator = "<ERROR> SDR file format error. \n";

// Two small records: an OEM record, and a generic device locator with a quoted 'abc'.
const std::string kOem = "_SDR_TYPE C0\n_REC_LEN 08\n01 00 51 C0 03 57 01 00\n";
const std::string kLocatorHead = "_SDR_TYPE 10\n_REC_LEN 13\n02 00 51 10 0E\n00 98 02 00 00 08 00 07 01 00 C3\n";

struct ReadResult {
    int iResult;
    uint16_t u16Count;
    std::string sErr;  // nothing ever goes to standard output
};

class TextReaderTest : public testing::Test {
protected:
    void SetUp() override
    {
        G_psLocalSDREntryList = static_cast<SDREntry*>(calloc(SDR_RECORD_LIMIT, sizeof(SDREntry)));
        for (uint32_t i = 0; i < SDR_RECORD_LIMIT; i++) G_psLocalSDREntryList[i].u16RecordID = SDR_EMPTY_RECORD_ID;
    }
    void TearDown() override { free(G_psLocalSDREntryList); }

    ReadResult ReadBytes(const std::string& sBytes)
    {
        WriteFileText(m_sDir.File("r.sdr"), sBytes);
        ReadResult s{0, 0, ""};
        testing::internal::CaptureStderr();
        s.iResult = ReadSDRFile(m_sDir.File("r.sdr").c_str(), &s.u16Count);
        s.sErr = testing::internal::GetCapturedStderr();
        return s;
    }
    ReadResult Read(const std::string& sText, eFileEncoding e = eEncodingASCII) { return ReadBytes(EncodeSDRText(sText, e)); }

    // The records read, each checked to be complete and to carry the ID of its bytes.
    std::vector<TRecord> Records(uint16_t u16Count) const
    {
        std::vector<TRecord> v;
        for (const SDREntry* ps = G_psLocalSDREntryList; ps < G_psLocalSDREntryList + u16Count; ps++) {
            EXPECT_EQ(ps->u8RecordLength, ps->u8DataOffset);
            EXPECT_EQ(ps->au8RecordData[0] | (ps->au8RecordData[1] << 8), ps->u16RecordID);
            v.emplace_back(ps->au8RecordData, ps->au8RecordData + ps->u8RecordLength);
        }
        return v;
    }

    TempDir m_sDir;
};

struct FaultCase {
    const char* pchName;
    std::string sText;
    std::string sErr;
    bool bUTF8 = false;  // the text is UTF-8 already and goes behind the UTF-8 mark
};

class TextFaultTest : public TextReaderTest, public testing::WithParamInterface<FaultCase> {};

std::string WithCRLF(std::string sText)
{
    for (size_t i = 0; (i = sText.find('\n', i)) != std::string::npos; i += 2) sText.insert(i, "\r");
    return sText;
}

TEST_P(TextFaultTest, IsReportedWithItsLine)
{
    const FaultCase& c = GetParam();
    // With CR LF line ends no line has the writer's layout, which the reader takes at once
    // where it can: the long way round gives the same report.
    for (const std::string& sText : {c.sText, WithCRLF(c.sText)}) {
        ReadResult s = c.bUTF8 ? ReadBytes("\xEF\xBB\xBF" + sText) : Read(sText);
        EXPECT_EQ(0, s.iResult);
        EXPECT_EQ(c.sErr, s.sErr) << (sText == c.sText ? "LF" : "CR LF");
    }
}

std::string FullSensorWithCode(const std::string& sCode, const std::string& sString)
{
    std::string sText = SDRRecordText(FullSensorRecord(1, 1, std::string(16, 'x')), 16, true);
    return sText.replace(sText.find("D0\n'"), std::string::npos, sCode + "\n'" + sString + "'\n");
}

const std::string kLong(260, 'x');
const std::string kTwentyZeros = [] { std::string s; for (int i = 0; i < 20; i++) s += "00\n"; return s; }();

INSTANTIATE_TEST_SUITE_P(Faults, TextFaultTest, testing::Values(
    FaultCase{"LackSection", "_DISABLED_SDR (\n" + kOem + ")\n\n", kFormat + "Lack '_SDR (' tag (line 6) \n"},
    FaultCase{"LackEnd", "_SDR (\n" + kOem, kFormat + "Lack ')' tag (line 4) \n"},
    FaultCase{"NestedAtSection", "_DISABLED_SDR (\n_SDR (\n",
              kFormat + "Nested '_DISABLED_SDR (' '_SDR (' tag is NOT allowed (line 2) \n"},
    FaultCase{"NestedAtDisabled", "_SDR (\n  _DISABLED_SDR (  // c\n",
              kFormat + "Nested '_SDR (' '_DISABLED_SDR (' tag is NOT allowed (line 2) \n"},
    FaultCase{"MultipleSections", "_SDR (\n" + kOem + ")\n_SDR (\n)\n",
              kFormat + "Multiple '_SDR (' tag is NOT allowed. (line 6) \n"},
    FaultCase{"MultipleClosing", "_SDR (\n" + kOem + ")\n)\n", kFormat + "Multiple ')' tag is NOT allowed (line 6) \n"},
    FaultCase{"DataBefore", "\n)\n", kFormat + "Find data before the '_SDR (' or '_DISABLED_SDR (' tag. (line 2) \n"},
    FaultCase{"DataOutside", "// c\n_SDR(\n", kFormat + "Find data outside the scope of the '_SDR ( )'. (line 2) \n"},
    FaultCase{"EmptySection", "_SDR (\n// none\n)\n", kFormat + "There is no SDR record in the scope of \"_SDR ( )\". \n"},
    FaultCase{"WrongTag", "_SDR (\n_REC_LEN 08\n)\n", kFormat + "\"_REC_LEN\" is not the '_SDR_TYPE' tag (line 2) \n"},
    FaultCase{"MoreThanOne", "_SDR (\n_SDR_TYPE\tC0 C0\n)\n",
              kFormat + "More than one Hex data follow the '_SDR_TYPE' tag. (line 2) \n"},
    FaultCase{"HexMissing", "_SDR (\n_SDR_TYPE C0\n_REC_LEN // 8\n)\n",
              kFormat + "Hex byte data does not follow the '_REC_LEN' tag. (line 3) \n"},
    FaultCase{"BadByteBehindTag", "_SDR (\n_SDR_TYPE C\n)\n", kFormat + "'C' is not a Hex byte data. (line 2) \n"},
    FaultCase{"BadByteInRecord", "_SDR (\n_SDR_TYPE C0\n_REC_LEN 08//x\n01 00 51 C0 03 57 01 00//x\n)\n",
              kFormat + "'00//x' is not a Hex byte data in record type C0h. (line 4) \n"},
    FaultCase{"EndInsideARecord", "_SDR (\n_SDR_TYPE C0\n_REC_LEN 08\n01 00 51 C0 03\n)\n",
              kFormat + "')' is not a Hex byte data in record type C0h. (line 5) \n"},
    FaultCase{"NoQuotedString", "_SDR (\n" + kLocatorHead + "// id\n'abc'\n)\n",
              kFormat + "\"// id\" is not a quoted string in record type 10h. (line 6) \n"},
    FaultCase{"IncompleteString", "_SDR (\n" + kLocatorHead + "\n  'abc  \n)\n",
              kFormat + "Quoted string \"'abc\" in record type 10h is not complete. (line 7) \n"},
    FaultCase{"InconsistentLength", "_SDR (\n" + kLocatorHead + "'a'bc'\n)\n",
              kFormat + "String length (04h) is not consistent with Type/Length Code (C3) in record type 10h. (line 6) \n"},
    FaultCase{"TooLongOnTheSameLine", "_SDR (\n_SDR_TYPE C0\n_REC_LEN 08\n01 00 51 C0 03 57 01 00 00\n)\n",
              kFormat + "In record type C0h, record length > _REC_LEN (line 4) \n"},
    FaultCase{"ByteTooManyOnTheNextLine", "_SDR (\n" + kOem + "00\n)\n",
              kFormat + "\"00\" is not the '_SDR_TYPE' tag (line 5) \n"},
    FaultCase{"TooShort", "_SDR (\n_SDR_TYPE 10\n_REC_LEN 14\n02 00 51 10 0F 00 98 02 00 00 08 00 07 01 00 C3 'abc'\n)\n",
              kFormat + "In record type 10h, record length < _REC_LEN (line 4) \n"},
    FaultCase{"StringTooLongForTheRecord", "_SDR (\n" + FullSensorWithCode("FF", std::string(63, 's')) + ")\n",
              kFormat + "In record type 01h, record length > _REC_LEN (line 8) \n"},
    FaultCase{"StringTooLongForTheCode", "_SDR (\n" + FullSensorWithCode("D0", std::string(200, 's')) + ")\n",
              kFormat + "String length (C8h) is not consistent with Type/Length Code (D0) in record type 01h. (line 8) \n"},
    FaultCase{"InvalidType", "_SDR (\n\n_SDR_TYPE 15\n)\n", kValidator + "Record type (15h) is invalid. (line 3) \n"},
    FaultCase{"LengthAboveTheMaximum", "_SDR (\n_SDR_TYPE 08\n\n_REC_LEN 11\n)\n",
              kValidator + "Record length (11h) is greater than the maximum length of type 08h. (line 4) \n"},
    FaultCase{"WrongVersion", "_SDR (\n_SDR_TYPE C0\n_REC_LEN 08\n01 00\n52\n)\n",
              kValidator + "SDR version (52h) != 51h in record type C0h. (line 5) \n"},
    FaultCase{"WrongTypeInHeader", "_SDR (\n_SDR_TYPE C0\n_REC_LEN 08\n01 00 51 C1 03\n)\n",
              kValidator + "Record type (C1h) is not the same as that from '_SDR_TYPE C0'. (line 4) \n"},
    FaultCase{"WrongTypeInARunOfBytes", "_SDR (\n_SDR_TYPE C0\n_REC_LEN 08\n01\n00\n51\nC1\n03\n57\n01\n00\n)\n",
              kValidator + "Record type (C1h) is not the same as that from '_SDR_TYPE C0'. (line 7) \n"},
    FaultCase{"BadByteBehindARunOfBytes", "_SDR (\n_SDR_TYPE C0\n_REC_LEN 40\n01\n00\n51\nC0\n3B\n" + kTwentyZeros + "zz\n)\n",
              kFormat + "'zz' is not a Hex byte data in record type C0h. (line 29) \n"},
    FaultCase{"WrongLengthInHeader", "_SDR (\n_SDR_TYPE C0\n_REC_LEN 08\n01 00 51 C0 // c\n 08\n)\n",
              kValidator + "Record length (08h) is inconsistent with that from '_REC_LEN 08'. (line 5) \n"},
    FaultCase{"OverlongLineArrivesInPieces", "_SDR (\n_SDR_TYPE C0 //" + kLong + "\n_REC_LEN 08\n)\n",
              kFormat + "\"" + std::string(21, 'x') + "\" is not the '_REC_LEN' tag (line 3) \n"},
    FaultCase{"Utf8CharacterAboveFFInARecord", "_SDR (\n_SDR_TYPE C0 // \xC4\x80\n_REC_LEN 08\n01 00 51 C0 03 57 01 00 // \xC4\x80\n)\n",
              "<ERROR> Invalid UTF-8 data found.\nFail to convert string (line 3) from UTF-8 to 8-bit ASCII. \n" + kFormat +
                  "Record type (C0h) is not complete. (line 3) \n", true}),
    [](const testing::TestParamInfo<FaultCase>& i) { return std::string(i.param.pchName); });

TEST_F(TextReaderTest, Utf16CharacterAboveFFCutsAQuotedString)
{
    const std::string sTail = EncodeSDRText("c'\n)\n", eEncodingUTF16).substr(2);  // without the mark
    const std::string sFile = EncodeSDRText("_SDR (\n" + kLocatorHead + "'ab", eEncodingUTF16) + std::string("\x41\x01", 2) + sTail;
    ReadResult s = ReadBytes(sFile);
    EXPECT_EQ(0, s.iResult);
    EXPECT_EQ(kFormat + "Quoted string \"'ab\" in record type 10h is not complete. (line 6) \n", s.sErr);
}

// The example text with a fault planted at a known line, in each encoding and line end.
struct EncodingCase { eFileEncoding eEncoding; bool bCRLF; };

class EncodingTest : public TextReaderTest, public testing::WithParamInterface<EncodingCase> {
protected:
    std::string Text(const std::string& sText) const { return GetParam().bCRLF ? WithCRLF(sText) : sText; }
};

const char* const kapchEncodings[] = {"ASCII", "UTF8", "UTF16"};

TEST_P(EncodingTest, GivesTheSameRecordsAndLineNumbers)
{
    const std::string sExample = ExampleSDRText();
    ReadResult s = Read(Text(sExample), GetParam().eEncoding);
    ASSERT_EQ(1, s.iResult) << s.sErr;
    EXPECT_EQ(TextExampleRecordSet(), Records(s.u16Count));

    // One byte too many behind the Latin-1 string, behind the disabled section.
    std::string sBad = sExample;
    const size_t uAt = sBad.find("'L\xFC" "fter 1'") + 10;
    sBad.insert(uAt, " 00");
    const long lLine = std::count(sBad.begin(), sBad.begin() + static_cast<long>(uAt), '\n') + 1;
    s = Read(Text(sBad), GetParam().eEncoding);
    EXPECT_EQ(kFormat + "In record type 01h, record length > _REC_LEN (line " + std::to_string(lLine) + ") \n", s.sErr);

    // The last line without its line feed.
    std::string sNoEnd = Text(sExample);
    sNoEnd.resize(sNoEnd.find_last_of(')') + 1);
    s = Read(sNoEnd, GetParam().eEncoding);
    EXPECT_EQ(1, s.iResult) << s.sErr;
    EXPECT_EQ(TextExampleRecordSet().size(), s.u16Count);
}

INSTANTIATE_TEST_SUITE_P(Encodings, EncodingTest, testing::Values(
    EncodingCase{eEncodingASCII, false}, EncodingCase{eEncodingUTF8, false}, EncodingCase{eEncodingUTF16, false},
    EncodingCase{eEncodingASCII, true}, EncodingCase{eEncodingUTF8, true}, EncodingCase{eEncodingUTF16, true}),
    [](const testing::TestParamInfo<EncodingCase>& i) {
        return std::string(kapchEncodings[i.param.eEncoding]) + (i.param.bCRLF ? "_CRLF" : "_LF");
    });

// Records in the writer's layout over several blocks of the reader's read-ahead.
class LargeFileTest : public TextReaderTest, public testing::WithParamInterface<eFileEncoding> {};

TEST_P(LargeFileTest, ReadsTheWritersLayoutWhole)
{
    const uint16_t u16Count = 1200;
    std::string sText = LargestSDRText(u16Count);
    ReadResult s = Read(sText, GetParam());
    ASSERT_EQ(1, s.iResult) << s.sErr;
    std::vector<TRecord> vExpected;
    char achName[24];
    for (uint16_t i = 0; i < u16Count; i++) {
        snprintf(achName, sizeof(achName), "Sensor %09u", i);
        vExpected.push_back(FullSensorRecord(static_cast<uint16_t>(i + 1), static_cast<uint8_t>(i), achName));
    }
    EXPECT_EQ(vExpected, Records(s.u16Count));

    // A wrong version byte in the last record, reported with its own line.
    const size_t uAt = sText.find("\n51\n", sText.rfind("_REC_LEN")) + 1;
    sText.replace(uAt, 2, "52");
    const long lLine = std::count(sText.begin(), sText.begin() + static_cast<long>(uAt), '\n') + 1;
    s = Read(sText, GetParam());
    EXPECT_EQ(kValidator + "SDR version (52h) != 51h in record type 01h. (line " + std::to_string(lLine) + ") \n", s.sErr);
}

INSTANTIATE_TEST_SUITE_P(Encodings, LargeFileTest, testing::Values(eEncodingASCII, eEncodingUTF8, eEncodingUTF16),
    [](const testing::TestParamInfo<eFileEncoding>& i) { return std::string(kapchEncodings[i.param]); });

TEST_F(TextReaderTest, SpecialFormsOfRecords)
{
    // Bytes packed sixteen to a line or spread one a line, lower-case digits, the string on
    // the line of its code, an apostrophe and "//" inside it, an empty string for code C0,
    // a hex ID string, and a record ID of FFFFh.
    const std::string sText =
        "_SDR (\n_SDR_TYPE 10\n_REC_LEN 16 // c\n02 00 51 10 11 00 98 02 00 00 08 00 07 01 00 c6 'a'b//c' // c\n"
        "_SDR_TYPE 10\n_REC_LEN 10\n03 00 51 10 0b\n00 98 02 00 00 08 00 07 01 00 C0\n''\n"
        "_SDR_TYPE 03\n_REC_LEN 13\nff ff 51 03 0e 20 00 40 17 01 12 6f 01 00 00 00 02\n//\n\n41 42 // c\n"
        "_SDR_TYPE 10\n_REC_LEN 10\n04 00 51 10 0b 00 98 02 00 00 08 00 07 01 00 80\n)\n";
    ReadResult s = Read(sText);
    ASSERT_EQ(1, s.iResult) << s.sErr;
    std::vector<TRecord> v = Records(s.u16Count);
    ASSERT_EQ(4u, v.size());
    EXPECT_EQ("a'b//c", std::string(v[0].end() - 6, v[0].end()));
    EXPECT_EQ(0x10u, v[1].size());
    EXPECT_EQ(SDR_EMPTY_RECORD_ID, G_psLocalSDREntryList[2].u16RecordID);
    EXPECT_EQ((TRecord{0x02, 0x41, 0x42}), TRecord(v[2].end() - 3, v[2].end()));
    EXPECT_EQ(0x10u, v[3].size());
}

TEST_F(TextReaderTest, HoldsAtMost65534Records)
{
    std::string sRecords;
    for (int i = 0; i < 65534; i++) sRecords += kOem;
    ReadResult s = Read("_SDR (\n" + sRecords + ")\n");
    EXPECT_EQ(1, s.iResult) << s.sErr;
    EXPECT_EQ(65534, s.u16Count);
    s = Read("_SDR (\n" + sRecords + kOem + ")\n");
    EXPECT_EQ(0, s.iResult);
    EXPECT_EQ("The SDR record count exceeds FFFFh records. \n", s.sErr);
}

}  // namespace
