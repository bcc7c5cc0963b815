// Validation of whole FRU images: a valid image broken in one place per row, and valid
// images with and without each area; the example images against their descriptions.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "FruDescription.h"
#include "TestSupport.h"
#include "fru/FRUValidate.h"

namespace {

sFruImageParts Parts(const std::string& sSample = "server")
{
    sFruImageParts sParts;
    std::string sError;
    const std::string sText = ReadFileText(SourceDir() + "/tools/frugen/samples/" + sSample + ".frudesc");
    EXPECT_TRUE(FruParseDescription(sText, &sParts, &sError)) << sError;
    return sParts;
}

struct Outcome {
    int iResult;
    std::string sErr;
};

Outcome Validate(const TFruBytes& vImage, int bInventoryData)
{
    testing::internal::CaptureStderr();
    // An exact copy on the heap, so that the sanitizer sees any read outside the image.
    std::vector<uint8_t> vCopy(vImage);
    int iResult = FRUValidateRawData(vCopy.data(), static_cast<uint16_t>(vCopy.size()), bInventoryData);
    return {iResult, testing::internal::GetCapturedStderr()};
}

size_t Offset(const TFruBytes& v, int iArea) { return v[iArea] * 8u; }
void FixHeader(TFruBytes& v) { v[7] = FruChecksum(v.data(), 7); }
void FixArea(TFruBytes& v, int iArea)
{
    const size_t uAt = Offset(v, iArea), uLength = v[uAt + 1] * 8u;
    v[uAt + uLength - 1] = FruChecksum(&v[uAt], uLength - 1);
}
// The first record of the multi-record area holds 24 data bytes; the second follows it.
const size_t kSecondRecord = 5 + 24;

// The image becomes its multi-record area alone, 8 bytes behind the header.
void GapBeforeRecords(TFruBytes& v)
{
    sFruImageParts s;
    s.vMultiRecord = Parts().vMultiRecord;
    v = FruImage(s);
    v.insert(v.begin() + 8, 8, 0), v[5]++, FixHeader(v);
}

struct BreakCase {
    const char* pchName;
    std::function<void(TFruBytes&)> fnBreak;
    int bInventoryData;
    std::string sErr;  // behind the first line, which says which kind of image
};

class FRUValidateBreakTest : public ::testing::TestWithParam<BreakCase> {};

TEST_P(FRUValidateBreakTest, RefusesWithTheMessage)
{
    const BreakCase& c = GetParam();
    TFruBytes vImage = FruImage(Parts());
    c.fnBreak(vImage);
    Outcome s = Validate(vImage, c.bInventoryData);
    const bool bOwnFirstLine = c.sErr.compare(0, 7, "<ERROR>") == 0;
    EXPECT_EQ(0, s.iResult);
    const std::string sFirst =
        c.bInventoryData ? "<ERROR> Incorrect FRU data. \n" : "<ERROR> Incorrect FRU binary file. \n";
    EXPECT_EQ((bOwnFirstLine ? "" : sFirst) + c.sErr, s.sErr);
}

INSTANTIATE_TEST_SUITE_P(
    OneFaultEach, FRUValidateBreakTest,
    ::testing::Values(
        BreakCase{"Short", [](TFruBytes& v) { v.resize(7); }, 0, "The FRU data length < 8. \n"},
        BreakCase{"HeaderVersion", [](TFruBytes& v) { v[0] = 2; }, 1,
                  "The version field (0x02) in COMMON Area != 0x01. \n"},
        BreakCase{"Pad", [](TFruBytes& v) { v[6] = 0x10; }, 0, "The PAD field (0x10) in COMMON Area != 0x00. \n"},
        BreakCase{"HeaderChecksum", [](TFruBytes& v) { v[7]++; }, 0, "Error checksum in COMMON Area. \n"},
        BreakCase{"OffsetsNotAscending", [](TFruBytes& v) { v[2] = v[3], FixHeader(v); }, 0,
                  "<ERROR> Unable to handle the FRU binary file. \n"
                  "In COMMON Area, the CHASSIS offset >= BOARD offset. \n"},
        BreakCase{"OffsetsSkipAnAbsentArea", [](TFruBytes& v) { v[3] = 0, v[4] = v[2], FixHeader(v); }, 1,
                  "<ERROR> Unable to handle the FRU data. \nIn COMMON Area, the CHASSIS offset >= PRODUCT offset. \n"},
        BreakCase{"InternalVersion", [](TFruBytes& v) { v[8] = 0; }, 0,
                  "The version field (0x00) in INTERNAL Area != 0x01. \n"},
        BreakCase{"InternalPastTheEnd", [](TFruBytes& v) { v.resize(Offset(v, 2) - 1); }, 0,
                  "Data is insufficient in INTERNAL Area. \n"},
        BreakCase{"ChassisVersion", [](TFruBytes& v) { v[Offset(v, 2)] = 3; }, 1,
                  "The version field (0x03) in CHASSIS Area != 0x01. \n"},
        BreakCase{"ChassisLengthZero", [](TFruBytes& v) { v[Offset(v, 2) + 1] = 0; }, 0,
                  "The area length field (0x00) in CHASSIS Area is not correct. \n"},
        BreakCase{"BoardLengthDisagreesWithHeader", [](TFruBytes& v) { v[Offset(v, 3) + 1]--, FixArea(v, 3); }, 0,
                  "The area length field (0x09) in BOARD Area is not consistent with the information in "
                  "COMMON Area. \n"},
        BreakCase{"ProductChecksum", [](TFruBytes& v) { v[Offset(v, 4) + 5] ^= 0x20; }, 0,
                  "Error checksum in PRODUCT Area. \n"},
        BreakCase{"ProductHeadPastTheEnd", [](TFruBytes& v) { v.resize(Offset(v, 4) + 1); }, 1,
                  "Data is insufficient in PRODUCT Area. \n"},
        BreakCase{"ProductPastTheEnd", [](TFruBytes& v) { v[5] = 0, FixHeader(v), v.resize(Offset(v, 4) + 16); }, 1,
                  "Data is insufficient in PRODUCT Area. \n"},
        BreakCase{"RecordHeaderChecksum", [](TFruBytes& v) { v[Offset(v, 5)]++; }, 0,
                  "Error checksum in MULTIRECORD Area record 1's header. \n"},
        BreakCase{"RecordDataChecksum", [](TFruBytes& v) { v[Offset(v, 5) + 7]++; }, 1,
                  "Error checksum in MULTIRECORD Area record 1's record data. \n"},
        BreakCase{"RecordDataPastTheEnd", [](TFruBytes& v) { v.pop_back(); }, 0,
                  "Data is insufficient in MULTIRECORD Area record 2's record data. \n"},
        BreakCase{"NoEndOfListFlag",
                  [](TFruBytes& v) {
                      uint8_t* pu8 = &v[Offset(v, 5) + kSecondRecord];
                      pu8[1] &= 0x7F, pu8[4] = FruChecksum(pu8, 4);
                  },
                  1, "Data is insufficient in MULTIRECORD Area record 3's header. \n"},
        // A gap between the header and the multi-record area: in an inventory image the
        // walk must still stop at the end of the image, which the length validated so
        // far doesn't tell.
        BreakCase{"GapBeforeRecordsInventory", [](TFruBytes& v) { GapBeforeRecords(v), v.resize(v.size() - 4); }, 1,
                  "Data is insufficient in MULTIRECORD Area record 2's record data. \n"},
        BreakCase{"GapBeforeRecordsFile", GapBeforeRecords, 0,
                  "<ERROR> Incorrect FRU file. \nFound data outside the scope of a FRU record. \n"},
        BreakCase{"TrailingByteInFile", [](TFruBytes& v) { v.push_back(0); }, 0,
                  "<ERROR> Incorrect FRU file. \nFound data outside the scope of a FRU record. \n"}),
    [](const ::testing::TestParamInfo<BreakCase>& i) { return std::string(i.param.pchName); });

// Every combination of the five areas is valid from a file and from a device. A byte
// behind the image is refused in a file, unless the internal use area is the only area,
// whose end nothing tells; a device may hold anything behind its image.
TEST(FRUValidateAreas, EveryCombinationIsValidAndTrailingBytesCountOnlyInAFile)
{
    const sFruImageParts sAll = Parts();
    for (int iMask = 0; iMask < 32; iMask++) {
        sFruImageParts s;
        if (iMask & 1) s.vInternal = sAll.vInternal;
        if (iMask & 2) s.vChassis = sAll.vChassis;
        if (iMask & 4) s.vBoard = sAll.vBoard;
        if (iMask & 8) s.vProduct = sAll.vProduct;
        if (iMask & 16) s.vMultiRecord = sAll.vMultiRecord;
        TFruBytes vImage = FruImage(s);
        for (int bInventory : {0, 1}) {
            Outcome sOutcome = Validate(vImage, bInventory);
            EXPECT_EQ(1, sOutcome.iResult) << "areas " << iMask << sOutcome.sErr;
        }
        vImage.push_back(0x5A);
        EXPECT_EQ(1, Validate(vImage, 1).iResult) << "areas " << iMask;
        EXPECT_EQ(iMask == 1 ? 1 : 0, Validate(vImage, 0).iResult) << "areas " << iMask;
    }
}

TEST(FruExamples, AreWhatTavrinFrugenMakesOfTheirDescriptions)
{
    for (const char* pchName : {"server", "card"}) {
        EXPECT_EQ(ReadFileBytes(SourceDir() + "/examples/sample-" + pchName + ".fru"), FruImage(Parts(pchName)))
            << pchName << ": run scripts/make-examples.sh";
    }
}

}  // namespace
