#include "FruImageBuilder.h"

#include <algorithm>

#include "text/DatTrans.h"

namespace {

enum : uint8_t {
    kVersion = 0x01,
    kEndOfFields = 0xC1,
    kTypeBinary = 0x00,
    kTypeBCDPlus = 0x40,
    kTypeSixBit = 0x80,
    kTypeEightBit = 0xC0,
    kFieldLengthMax = 0x3F,
    kRecordFormatVersion = 0x02,
    kRecordEndOfList = 0x80,
};

const size_t kUnit = 8;

void PadToUnit(TFruBytes* pvBytes, size_t uReserve)
{
    while ((pvBytes->size() + uReserve) % kUnit != 0) {
        pvBytes->push_back(0);
    }
}

// The bytes of a packed text, or false for a character the codec refuses.
bool Pack(int (*pfnPack)(const char*, uint8_t*, size_t), const std::string& sValue, size_t uBytes, TFruBytes* pvBytes)
{
    pvBytes->assign(uBytes, 0);
    return uBytes == 0 || pfnPack(sValue.c_str(), pvBytes->data(), uBytes) == 1;
}

bool HexBytes(const std::string& sValue, TFruBytes* pvBytes)
{
    size_t uAt = 0;
    while ((uAt = sValue.find_first_not_of(" \t", uAt)) != std::string::npos) {
        size_t uEnd = sValue.find_first_of(" \t", uAt);
        std::string sByte = sValue.substr(uAt, uEnd - uAt);
        if (sByte.size() != 2 || sByte.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
            return false;
        }
        pvBytes->push_back(static_cast<uint8_t>(std::stoul(sByte, nullptr, 16)));
        uAt = uEnd;
    }
    return true;
}

}  // namespace

uint8_t FruChecksum(const uint8_t* pu8Data, size_t uLength)
{
    unsigned uSum = 0;
    for (size_t i = 0; i < uLength; i++) {
        uSum += pu8Data[i];
    }
    return static_cast<uint8_t>(-uSum);
}

bool FruEncodeField(const std::string& sEncoding, const std::string& sValue, TFruBytes* pvField, std::string* psError)
{
    TFruBytes vBytes;
    uint8_t u8Type = kTypeEightBit;
    bool bGood = true;
    if (sEncoding == "8bit") {
        vBytes.assign(sValue.begin(), sValue.end());
    } else if (sEncoding == "6bit") {
        u8Type = kTypeSixBit;
        bGood = Pack(ConvertASCIIStrToSixBitASCII, sValue, (3 * sValue.size() + 3) / 4, &vBytes);
    } else if (sEncoding == "bcd") {
        u8Type = kTypeBCDPlus;
        bGood = sValue.size() % 2 == 0 && Pack(ConvertASCIIStrToBCDPlus, sValue, sValue.size() / 2, &vBytes);
    } else if (sEncoding == "binary") {
        u8Type = kTypeBinary;
        bGood = HexBytes(sValue, &vBytes);
    } else {
        *psError = "unknown encoding \"" + sEncoding + "\" (8bit, 6bit, bcd or binary)";
        return false;
    }
    if (u8Type == kTypeEightBit && vBytes.size() == 1) {
        *psError = "an 8bit field of one byte would read as the end mark C1";
        return false;
    }
    if (!bGood || vBytes.size() > kFieldLengthMax) {
        *psError = "\"" + sValue + "\" can't be a field in " + sEncoding +
                   (sEncoding == "bcd" ? " (an even number of 0-9, blank, - and .)" : "") + " of at most 63 bytes";
        return false;
    }
    pvField->assign(1, static_cast<uint8_t>(u8Type | vBytes.size()));
    pvField->insert(pvField->end(), vBytes.begin(), vBytes.end());
    return true;
}

TFruBytes FruInfoArea(const TFruBytes& vFixed, const std::vector<TFruBytes>& vFields)
{
    TFruBytes vArea(2 + vFixed.size(), 0);
    vArea[0] = kVersion;
    std::copy(vFixed.begin(), vFixed.end(), vArea.begin() + 2);
    for (const TFruBytes& vField : vFields) {
        vArea.insert(vArea.end(), vField.begin(), vField.end());
    }
    vArea.push_back(kEndOfFields);
    PadToUnit(&vArea, 1);
    vArea[1] = static_cast<uint8_t>((vArea.size() + 1) / kUnit);
    vArea.push_back(FruChecksum(vArea.data(), vArea.size()));
    return vArea;
}

TFruBytes FruMultiRecord(uint8_t u8Type, bool bLast, const TFruBytes& vData)
{
    TFruBytes vRecord = {u8Type, static_cast<uint8_t>(kRecordFormatVersion | (bLast ? kRecordEndOfList : 0)),
                         static_cast<uint8_t>(vData.size()), FruChecksum(vData.data(), vData.size())};
    vRecord.push_back(FruChecksum(vRecord.data(), vRecord.size()));
    vRecord.insert(vRecord.end(), vData.begin(), vData.end());
    return vRecord;
}

TFruBytes FruImage(const sFruImageParts& sParts)
{
    const TFruBytes* apvAreas[] = {&sParts.vInternal, &sParts.vChassis, &sParts.vBoard, &sParts.vProduct,
                                   &sParts.vMultiRecord};
    TFruBytes vImage(kUnit, 0);
    vImage[0] = kVersion;
    for (size_t i = 0; i < 5; i++) {
        if (apvAreas[i]->empty()) {
            continue;
        }
        PadToUnit(&vImage, 0);
        vImage[1 + i] = static_cast<uint8_t>(vImage.size() / kUnit);
        vImage.insert(vImage.end(), apvAreas[i]->begin(), apvAreas[i]->end());
    }
    vImage[7] = FruChecksum(vImage.data(), 7);
    return vImage;
}
