// The type and length tables and the header checks, in both message settings.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "sdr/SDRRecordTypes.h"
#include "sdr/SDRValidate.h"

namespace {

const std::string kText = "<ERROR> SDR file format error. \n";
const std::string kRaw = "<ERROR> Incorrect SDR data. \n";

template <typename F>
std::string Stderr(F fnCheck, int* piResult)
{
    testing::internal::CaptureStderr();
    *piResult = fnCheck();
    return testing::internal::GetCapturedStderr();
}

SDREntry Entry(uint8_t u8Type, uint8_t u8Length, uint8_t u8Offset = 0)
{
    SDREntry s = {};
    s.u8RecordType = u8Type;
    s.u8RecordLength = u8Length;
    s.u8DataOffset = u8Offset;
    return s;
}

struct TypeCase { uint8_t u8Type; const char* pchCause; };  // null: passes

class RecordTypeTest : public testing::TestWithParam<TypeCase> {};

TEST_P(RecordTypeTest, JudgesTheType)
{
    const TypeCase& c = GetParam();
    int iResult = 0;
    std::string sErr = Stderr([&] { return SDRValidateRecordType(0, 7, c.u8Type); }, &iResult);
    EXPECT_EQ(c.pchCause == nullptr ? 1 : 0, iResult);
    EXPECT_EQ(c.pchCause == nullptr ? "" : kText + c.pchCause + "(line 7) \n", sErr);
}

INSTANTIATE_TEST_SUITE_P(Types, RecordTypeTest, testing::Values(
    TypeCase{0x01, nullptr}, TypeCase{0x03, nullptr}, TypeCase{0x08, nullptr}, TypeCase{0x09, nullptr},
    TypeCase{0x10, nullptr}, TypeCase{0x14, nullptr}, TypeCase{0xC0, nullptr},
    TypeCase{0x00, "Record type (00h) is invalid. "}, TypeCase{0x15, "Record type (15h) is invalid. "},
    TypeCase{0xBF, "Record type (BFh) is invalid. "}, TypeCase{0xC1, "Record type (C1h) is invalid. "},
    TypeCase{0xFF, "Record type (FFh) is invalid. "}, TypeCase{0x04, "Record type (04h) is reserved. "},
    TypeCase{0x07, "Record type (07h) is reserved. "}, TypeCase{0x0A, "Record type (0Ah) is reserved. "},
    TypeCase{0x0F, "Record type (0Fh) is reserved. "}));

struct LengthCase { uint8_t u8Type, u8Length; const char* pchCause; };

class RecordLengthTest : public testing::TestWithParam<LengthCase> {};

TEST_P(RecordLengthTest, JudgesTheLengthInTheRawSetting)
{
    const LengthCase& c = GetParam();
    SDREntry s = Entry(c.u8Type, c.u8Length);
    int iResult = 0;
    std::string sErr = Stderr([&] { return SDRValidateRecordLength(1, 3, &s); }, &iResult);
    EXPECT_EQ(c.pchCause == nullptr ? 1 : 0, iResult);
    EXPECT_EQ(c.pchCause == nullptr ? "" : kRaw + c.pchCause + "(record 3) \n", sErr);
}

INSTANTIATE_TEST_SUITE_P(Lengths, RecordLengthTest, testing::Values(
    LengthCase{0x01, 0x30, nullptr}, LengthCase{0x01, 0x40, nullptr}, LengthCase{0x08, 0x10, nullptr},
    LengthCase{0xC0, 0x08, nullptr}, LengthCase{0xC0, 0x40, nullptr}, LengthCase{0x03, 0x21, nullptr},
    LengthCase{0x08, 0x0F, "Record length (0Fh) is less than the less length of type 08h. "},
    LengthCase{0x08, 0x11, "Record length (11h) is greater than the maximum length of type 08h. "},
    LengthCase{0xC0, 0x07, "Record length (07h) is less than the less length of type C0h. "},
    LengthCase{0xC0, 0x41, "Record length (41h) is greater than the maximum length of type C0h. "},
    LengthCase{0x12, 0x00, "Record length is zero. "},
    LengthCase{0x01, 0xFF, "Record length (FFh) is greater than the maximum length of type 01h. "}));

struct HeaderCase { uint8_t u8Offset, u8Value; const char* pchCause; };

class RecordHeaderTest : public testing::TestWithParam<HeaderCase> {};

TEST_P(RecordHeaderTest, ChecksOneHeaderByte)
{
    const HeaderCase& c = GetParam();
    SDREntry s = Entry(0x11, 0x15, c.u8Offset);
    int iResult = 0;
    std::string sErr = Stderr([&] { return SDRValidateRecordHeader(0, 12, &s, c.u8Value); }, &iResult);
    EXPECT_EQ(c.pchCause == nullptr ? 1 : 0, iResult);
    EXPECT_EQ(c.pchCause == nullptr ? "" : kText + c.pchCause + "(line 12) \n", sErr);
}

INSTANTIATE_TEST_SUITE_P(Headers, RecordHeaderTest, testing::Values(
    HeaderCase{0, 0xFF, nullptr}, HeaderCase{1, 0x00, nullptr}, HeaderCase{2, 0x51, nullptr},
    HeaderCase{3, 0x11, nullptr}, HeaderCase{4, 0x10, nullptr}, HeaderCase{5, 0x00, nullptr},
    HeaderCase{2, 0x01, "SDR version (01h) != 51h in record type 11h. "},
    HeaderCase{3, 0x12, "Record type (12h) is not the same as that from '_SDR_TYPE 11'. "},
    HeaderCase{4, 0x11, "Record length (11h) is inconsistent with that from '_REC_LEN 15'. "},
    HeaderCase{4, 0xFB, "Record length (FBh) is inconsistent with that from '_REC_LEN 15'. "}));

TEST(RecordTypes, StringStartAndIDString)
{
    const struct { uint8_t u8Type, u8Length, u8Start; int bHasID; } aCases[] = {
        {0x01, 0x40, 0x30, 1}, {0x02, 0x30, 0x20, 1}, {0x03, 0x11, 0x11, 1}, {0x08, 0x10, 0x10, 0},
        {0x09, 0x20, 0x20, 0}, {0x10, 0x20, 0x10, 1}, {0x11, 0x10, 0x10, 1}, {0x12, 0x10, 0x10, 1},
        {0x13, 0x20, 0x20, 0}, {0x14, 0x10, 0x10, 0}, {0xC0, 0x0B, 0x0B, 0}, {0xC0, 0x60, 0x40, 0},
    };
    for (const auto& c : aCases) {
        EXPECT_EQ(c.u8Start, SDRStringStart(c.u8Type, c.u8Length)) << std::hex << int(c.u8Type);
        EXPECT_EQ(c.bHasID, SDRHasIDString(c.u8Type)) << std::hex << int(c.u8Type);
    }
}

TEST(RawData, StopsAtTheFirstBadRecordAndCountsOnlyOccupiedHolders)
{
    SDREntry* psList = static_cast<SDREntry*>(calloc(SDR_RECORD_LIMIT, sizeof(SDREntry)));
    for (uint32_t i = 0; i < SDR_RECORD_LIMIT; i++) psList[i].u16RecordID = SDR_EMPTY_RECORD_ID;
    const uint8_t au8Good[] = {0x01, 0x00, 0x51, 0xC0, 0x03, 0x57, 0x01, 0x00};
    for (uint32_t i : {3u, 9u, 200u, 65534u}) {
        psList[i] = Entry(0xC0, sizeof(au8Good));
        psList[i].u16RecordID = static_cast<uint16_t>(i);
        memcpy(psList[i].au8RecordData, au8Good, sizeof(au8Good));
    }
    psList[5].u8RecordLength = 0x08;  // an ID of FFFFh: an empty holder, never looked at
    int iResult = 0;
    EXPECT_EQ("", Stderr([&] { return SDRValidateRawData(psList); }, &iResult));
    EXPECT_EQ(1, iResult);
    EXPECT_EQ(3, psList[9].u8DataOffset);

    psList[200].au8RecordData[2] = 0x01;  // the third occupied holder
    psList[65534].u8RecordType = 0x05;
    EXPECT_EQ(kRaw + "SDR version (01h) != 51h in record type C0h. (record 3) \n",
              Stderr([&] { return SDRValidateRawData(psList); }, &iResult));
    EXPECT_EQ(0, iResult);
    psList[200].au8RecordData[2] = 0x51;
    EXPECT_EQ(kRaw + "Record type (05h) is reserved. (record 4) \n",
              Stderr([&] { return SDRValidateRawData(psList); }, &iResult));
    psList[65534].u8RecordType = 0xC0;
    psList[65534].au8RecordData[3] = 0x01;
    EXPECT_EQ(kRaw + "Record type (01h) is not the same as that from '_SDR_TYPE C0'. (record 4) \n",
              Stderr([&] { return SDRValidateRawData(psList); }, &iResult));
    free(psList);
}

}  // namespace
