// The type and length tables and the header checks, in both message settings.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "sdr/SDRValidate.h"

namespace {

const std::string kText = "<ERROR> SDR file format error. \n";
const std::string kRaw = "<ERROR> Incorrect SDR data. \n";

enum eCheck { eType, eLength, eHeader };

struct CheckCase {
    eCheck eWhich;
    uint8_t u8Type, u8Length, u8Offset, u8Value;
    const char* pchCause;  // null: the check passes
};

// Each case runs in both settings; only the words around the cause differ.
TEST(Validate, TypesLengthsAndHeaderBytes)
{
    const CheckCase aCases[] = {
        {eType, 0x01, 0, 0, 0, nullptr}, {eType, 0x03, 0, 0, 0, nullptr}, {eType, 0x08, 0, 0, 0, nullptr},
        {eType, 0x09, 0, 0, 0, nullptr}, {eType, 0x10, 0, 0, 0, nullptr}, {eType, 0x14, 0, 0, 0, nullptr},
        {eType, 0xC0, 0, 0, 0, nullptr}, {eType, 0x00, 0, 0, 0, "Record type (00h) is invalid. "},
        {eType, 0x15, 0, 0, 0, "Record type (15h) is invalid. "}, {eType, 0xBF, 0, 0, 0, "Record type (BFh) is invalid. "},
        {eType, 0xC1, 0, 0, 0, "Record type (C1h) is invalid. "}, {eType, 0x04, 0, 0, 0, "Record type (04h) is reserved. "},
        {eType, 0x07, 0, 0, 0, "Record type (07h) is reserved. "}, {eType, 0x0A, 0, 0, 0, "Record type (0Ah) is reserved. "},
        {eType, 0x0F, 0, 0, 0, "Record type (0Fh) is reserved. "},
        {eLength, 0x01, 0x30, 0, 0, nullptr}, {eLength, 0x01, 0x40, 0, 0, nullptr}, {eLength, 0x03, 0x21, 0, 0, nullptr},
        {eLength, 0xC0, 0x08, 0, 0, nullptr}, {eLength, 0xC0, 0x40, 0, 0, nullptr},
        {eLength, 0x08, 0x0F, 0, 0, "Record length (0Fh) is less than the less length of type 08h. "},
        {eLength, 0x08, 0x11, 0, 0, "Record length (11h) is greater than the maximum length of type 08h. "},
        {eLength, 0xC0, 0x07, 0, 0, "Record length (07h) is less than the less length of type C0h. "},
        {eLength, 0xC0, 0x41, 0, 0, "Record length (41h) is greater than the maximum length of type C0h. "},
        {eLength, 0x12, 0x00, 0, 0, "Record length is zero. "},
        {eHeader, 0x11, 0x15, 0, 0xFF, nullptr}, {eHeader, 0x11, 0x15, 2, 0x51, nullptr},
        {eHeader, 0x11, 0x15, 3, 0x11, nullptr}, {eHeader, 0x11, 0x15, 4, 0x10, nullptr},
        {eHeader, 0x11, 0x15, 5, 0x00, nullptr},
        {eHeader, 0x11, 0x15, 2, 0x01, "SDR version (01h) != 51h in record type 11h. "},
        {eHeader, 0x11, 0x15, 3, 0x12, "Record type (12h) is not the same as that from '_SDR_TYPE 11'. "},
        {eHeader, 0x11, 0x15, 4, 0xFB, "Record length (FBh) is inconsistent with that from '_REC_LEN 15'. "},
    };
    for (const CheckCase& c : aCases) {
        for (int bRaw : {0, 1}) {
            SDREntry s = {};
            s.u8RecordType = c.u8Type;
            s.u8RecordLength = c.u8Length;
            s.u8DataOffset = c.u8Offset;
            testing::internal::CaptureStderr();
            const int iResult = (c.eWhich == eType)     ? SDRValidateRecordType(bRaw, 7, c.u8Type)
                                : (c.eWhich == eLength) ? SDRValidateRecordLength(bRaw, 7, &s)
                                                        : SDRValidateRecordHeader(bRaw, 7, &s, c.u8Value);
            const std::string sExpected =
                (c.pchCause == nullptr) ? "" : (bRaw ? kRaw : kText) + c.pchCause + (bRaw ? "(record 7) \n" : "(line 7) \n");
            EXPECT_EQ(sExpected, testing::internal::GetCapturedStderr()) << std::hex << int(c.u8Type) << " " << bRaw;
            EXPECT_EQ(c.pchCause == nullptr ? 1 : 0, iResult);
        }
    }
}

TEST(Validate, ARawListStopsAtItsFirstBadRecordCountingOnlyOccupiedHolders)
{
    SDREntry* psList = static_cast<SDREntry*>(calloc(SDR_RECORD_LIMIT, sizeof(SDREntry)));
    for (uint32_t i = 0; i < SDR_RECORD_LIMIT; i++) psList[i].u16RecordID = SDR_EMPTY_RECORD_ID;
    const uint8_t au8Good[] = {0x01, 0x00, 0x51, 0xC0, 0x03, 0x57, 0x01, 0x00};
    for (uint32_t i : {3u, 9u, 200u, 65534u}) {
        psList[i].u16RecordID = static_cast<uint16_t>(i);
        psList[i].u8RecordType = 0xC0;
        psList[i].u8RecordLength = sizeof(au8Good);
        memcpy(psList[i].au8RecordData, au8Good, sizeof(au8Good));
    }
    psList[5].u8RecordLength = 0x08;  // an ID of FFFFh: an empty holder, never looked at
    EXPECT_EQ(1, SDRValidateRawData(psList));
    psList[200].au8RecordData[2] = 0x01;  // the third occupied holder
    psList[65534].u8RecordType = 0x05;
    testing::internal::CaptureStderr();
    EXPECT_EQ(0, SDRValidateRawData(psList));
    EXPECT_EQ(kRaw + "SDR version (01h) != 51h in record type C0h. (record 3) \n", testing::internal::GetCapturedStderr());
    psList[200].au8RecordData[2] = 0x51;
    testing::internal::CaptureStderr();
    EXPECT_EQ(0, SDRValidateRawData(psList));
    EXPECT_EQ(kRaw + "Record type (05h) is reserved. (record 4) \n", testing::internal::GetCapturedStderr());
    free(psList);
}

}  // namespace
