#include "FruDescription.h"

#include <cstdlib>
#include <sstream>

namespace {

enum eSection { eNone, eChassis, eBoard, eProduct, eMultiRecord, ePowerSupply };

const std::vector<std::string> kStandardFields[] = {
    {},
    {"part-number", "serial-number"},
    {"manufacturer", "product-name", "serial-number", "part-number", "fru-file-id"},
    {"manufacturer", "product-name", "part-number", "version", "serial-number", "asset-tag", "fru-file-id"},
};

// A value of the power supply information record (type 00h): little-endian at the
// offset, shifted into its bits.
struct sPowerSupplyValue {
    const char* pchName;
    size_t uOffset;
    size_t uWidth;
    unsigned uShift;
    unsigned long ulMax;
};

const sPowerSupplyValue kPowerSupplyValues[] = {
    {"capacity-watts", 0, 2, 0, 0xFFF},   {"peak-va", 2, 2, 0, 0xFFFF},       {"inrush-amps", 4, 1, 0, 0xFF},
    {"inrush-ms", 5, 1, 0, 0xFF},         {"low-input-1", 6, 2, 0, 0xFFFF},   {"high-input-1", 8, 2, 0, 0xFFFF},
    {"low-input-2", 10, 2, 0, 0xFFFF},    {"high-input-2", 12, 2, 0, 0xFFFF}, {"low-frequency", 14, 1, 0, 0xFF},
    {"high-frequency", 15, 1, 0, 0xFF},   {"dropout-ms", 16, 1, 0, 0xFF},     {"flags", 17, 1, 0, 0xFF},
    {"peak-watts", 18, 2, 0, 0xFFF},      {"holdup-seconds", 18, 2, 12, 0xF}, {"combined-voltages", 20, 1, 0, 0xFF},
    {"combined-watts", 21, 2, 0, 0xFFFF}, {"tach-threshold", 23, 1, 0, 0xFF},
};
const size_t kPowerSupplySize = 24;
const uint8_t kPowerSupplyType = 0x00;

struct sRecord {
    uint8_t u8Type;
    TFruBytes vData;
};

// What the description has said so far.
struct sBuilder {
    eSection eArea = eNone;
    TFruBytes vFixed;
    std::vector<TFruBytes> vFields;
    size_t uStandard = 0;  // standard fields of the area given so far
    std::vector<sRecord> vRecords;
    sFruImageParts sParts;
};

bool Number(const std::string& sText, unsigned long ulMax, unsigned long* pulValue)
{
    char* pchEnd = nullptr;
    *pulValue = std::strtoul(sText.c_str(), &pchEnd, 0);
    return !sText.empty() && *pchEnd == '\0' && *pulValue <= ulMax && sText[0] != '-';
}

bool Hex(const std::string& sText, TFruBytes* pvBytes)
{
    std::istringstream sWords(sText);
    for (std::string sWord; sWords >> sWord;) {
        unsigned long ulByte = 0;
        if (sWord.size() != 2 || !Number("0x" + sWord, 0xFF, &ulByte)) {
            return false;
        }
        pvBytes->push_back(static_cast<uint8_t>(ulByte));
    }
    return true;
}

// Minutes from 1996-01-01 00:00 to the date and time, the FRU board area's count.
bool Minutes(const std::string& sText, unsigned long* pulMinutes)
{
    int iYear = 0, iMonth = 0, iDay = 0, iHour = 0, iMinute = 0;
    char chEnd = 0;
    if (std::sscanf(sText.c_str(), "%d-%d-%d %d:%d%c", &iYear, &iMonth, &iDay, &iHour, &iMinute, &chEnd) != 5 ||
        iYear < 1996 || iMonth < 1 || iMonth > 12 || iDay < 1 || iDay > 31 || iHour > 23 || iMinute > 59) {
        return false;
    }
    // Days from the civil date (proleptic Gregorian), counted from 1996-01-01.
    const int iY = iYear - (iMonth <= 2 ? 1 : 0);
    const int iEra = iY / 400, iYoe = iY - iEra * 400;
    const int iDoy = (153 * (iMonth + (iMonth > 2 ? -3 : 9)) + 2) / 5 + iDay - 1;
    const long lDays = iEra * 146097L + iYoe * 365L + iYoe / 4 - iYoe / 100 + iDoy - 728964L;
    *pulMinutes = static_cast<unsigned long>(lDays * 1440 + iHour * 60 + iMinute);
    return *pulMinutes <= 0xFFFFFF;
}

bool Fail(std::string* psError, const std::string& sWhy)
{
    *psError = sWhy;
    return false;
}

// The text between the first and the last double quote.
bool Quoted(const std::string& sText, std::string* psValue)
{
    size_t uFirst = sText.find('"'), uLast = sText.rfind('"');
    if (uFirst == std::string::npos || uLast == uFirst || sText.find_first_not_of(" \t") != uFirst ||
        sText.find_first_not_of(" \t", uLast + 1) != std::string::npos) {
        return false;
    }
    *psValue = sText.substr(uFirst + 1, uLast - uFirst - 1);
    return true;
}

bool AddField(sBuilder* ps, const std::string& sName, const std::string& sRest, std::string* psError)
{
    const std::vector<std::string>& vNames = kStandardFields[ps->eArea];
    if (sName != "custom" && (ps->uStandard >= vNames.size() || vNames[ps->uStandard] != sName)) {
        return Fail(psError, "\"" + sName + "\" where the field " +
                                 (ps->uStandard < vNames.size() ? "\"" + vNames[ps->uStandard] + "\"" : "\"custom\"") +
                                 " comes");
    }
    if (sName == "custom" && ps->uStandard < vNames.size()) {
        return Fail(psError, "custom fields come after \"" + vNames.back() + "\"");
    }
    std::istringstream sWords(sRest);
    std::string sEncoding, sValue;
    sWords >> sEncoding;
    std::getline(sWords, sValue);
    if (sEncoding != "binary" && !Quoted(sValue, &sValue)) {
        return Fail(psError, "the value needs double quotes");
    }
    TFruBytes vField;
    if (!FruEncodeField(sEncoding, sValue, &vField, psError)) {
        return false;
    }
    ps->vFields.push_back(vField);
    ps->uStandard += (sName == "custom") ? 0 : 1;
    return true;
}

bool SetFixed(sBuilder* ps, const std::string& sKey, const std::string& sRest, std::string* psError)
{
    unsigned long ulValue = 0;
    if (ps->eArea == eChassis && sKey == "type" && Number(sRest, 0xFF, &ulValue)) {
        ps->vFixed[0] = static_cast<uint8_t>(ulValue);
    } else if (ps->eArea != eChassis && sKey == "language" && Number(sRest, 0xFF, &ulValue)) {
        ps->vFixed[0] = static_cast<uint8_t>(ulValue);
    } else if (ps->eArea == eBoard && sKey == "made" && Minutes(sRest, &ulValue)) {
        for (size_t i = 0; i < 3; i++) {
            ps->vFixed[1 + i] = static_cast<uint8_t>(ulValue >> (8 * i));
        }
    } else {
        return Fail(psError, "\"" + sKey + " " + sRest + "\" is no setting of this area");
    }
    return true;
}

bool SetPowerSupplyValue(sBuilder* ps, const std::string& sKey, const std::string& sRest, std::string* psError)
{
    for (const sPowerSupplyValue& s : kPowerSupplyValues) {
        unsigned long ulValue = 0;
        if (sKey != s.pchName) {
            continue;
        }
        if (!Number(sRest, s.ulMax, &ulValue)) {
            return Fail(psError, sKey + " takes a number up to " + std::to_string(s.ulMax));
        }
        TFruBytes& vData = ps->vRecords.back().vData;
        for (size_t i = 0; i < s.uWidth; i++) {
            vData[s.uOffset + i] |= static_cast<uint8_t>((ulValue << s.uShift) >> (8 * i));
        }
        return true;
    }
    return Fail(psError, "\"" + sKey + "\" is no value of a power supply record");
}

// Puts the area that is being described into the image parts.
bool CloseArea(sBuilder* ps, std::string* psError)
{
    if (ps->eArea >= eChassis && ps->eArea <= eProduct) {
        const std::vector<std::string>& vNames = kStandardFields[ps->eArea];
        if (ps->uStandard < vNames.size()) {
            return Fail(psError, "the area lacks the field \"" + vNames[ps->uStandard] + "\"");
        }
        TFruBytes* apv[] = {nullptr, &ps->sParts.vChassis, &ps->sParts.vBoard, &ps->sParts.vProduct};
        *apv[ps->eArea] = FruInfoArea(ps->vFixed, ps->vFields);
    } else if (ps->eArea == eMultiRecord || ps->eArea == ePowerSupply) {
        if (ps->vRecords.empty()) {
            return Fail(psError, "the multi-record area has no record");
        }
        for (size_t i = 0; i < ps->vRecords.size(); i++) {
            TFruBytes v = FruMultiRecord(ps->vRecords[i].u8Type, i + 1 == ps->vRecords.size(), ps->vRecords[i].vData);
            ps->sParts.vMultiRecord.insert(ps->sParts.vMultiRecord.end(), v.begin(), v.end());
        }
    }
    ps->eArea = eNone;
    return true;
}

bool OpenArea(sBuilder* ps, eSection eArea, TFruBytes* pvPart, std::string* psError)
{
    if (!CloseArea(ps, psError)) {
        return false;
    }
    if (!pvPart->empty()) {
        return Fail(psError, "the area is described twice");
    }
    ps->eArea = eArea;
    ps->vFields.clear();
    ps->uStandard = 0;
    ps->vFixed = (eArea == eChassis) ? TFruBytes{0x02} : (eArea == eBoard) ? TFruBytes{0, 0, 0, 0} : TFruBytes{0};
    return true;
}

bool ParseLine(sBuilder* ps, const std::string& sKey, const std::string& sRest, std::string* psError)
{
    if (sKey == "internal") {
        if (!CloseArea(ps, psError)) {
            return false;
        }
        if (!ps->sParts.vInternal.empty()) {
            return Fail(psError, "the area is described twice");
        }
        if (!Hex(sRest, &ps->sParts.vInternal) || ps->sParts.vInternal.empty()) {
            return Fail(psError, "internal takes hex bytes");
        }
        return true;
    }
    if (sKey == "chassis") {
        return OpenArea(ps, eChassis, &ps->sParts.vChassis, psError);
    }
    if (sKey == "board") {
        return OpenArea(ps, eBoard, &ps->sParts.vBoard, psError);
    }
    if (sKey == "product") {
        return OpenArea(ps, eProduct, &ps->sParts.vProduct, psError);
    }
    if (sKey == "multirecord") {
        ps->vRecords.clear();
        return OpenArea(ps, eMultiRecord, &ps->sParts.vMultiRecord, psError);
    }
    if ((ps->eArea == eMultiRecord || ps->eArea == ePowerSupply) && sKey == "power-supply") {
        ps->vRecords.push_back({kPowerSupplyType, TFruBytes(kPowerSupplySize, 0)});
        ps->eArea = ePowerSupply;
        return true;
    }
    if ((ps->eArea == eMultiRecord || ps->eArea == ePowerSupply) && sKey == "record") {
        std::istringstream sWords(sRest);
        std::string sType, sData;
        sWords >> sType;
        std::getline(sWords, sData);
        unsigned long ulType = 0;
        sRecord sNew = {0, {}};
        if (!Number(sType, 0xFF, &ulType) || !Hex(sData, &sNew.vData) || sNew.vData.size() > 0xFF) {
            return Fail(psError, "record takes a type and up to 255 hex bytes");
        }
        sNew.u8Type = static_cast<uint8_t>(ulType);
        ps->vRecords.push_back(sNew);
        ps->eArea = eMultiRecord;
        return true;
    }
    if (ps->eArea == ePowerSupply) {
        return SetPowerSupplyValue(ps, sKey, sRest, psError);
    }
    if (ps->eArea == eNone || ps->eArea == eMultiRecord) {
        return Fail(psError, "\"" + sKey + "\" outside of an area");
    }
    if (sRest.find('"') != std::string::npos || sRest.compare(0, 6, "binary") == 0) {
        return AddField(ps, sKey, sRest, psError);
    }
    return SetFixed(ps, sKey, sRest, psError);
}

// The line without its comment and the blanks around it.
std::string Clean(const std::string& sLine)
{
    bool bQuoted = false;
    size_t uEnd = 0;
    for (; uEnd < sLine.size() && (bQuoted || sLine[uEnd] != '#'); uEnd++) {
        bQuoted ^= (sLine[uEnd] == '"');
    }
    std::string s = sLine.substr(0, uEnd);
    size_t uFirst = s.find_first_not_of(" \t\r"), uLast = s.find_last_not_of(" \t\r");
    return uFirst == std::string::npos ? "" : s.substr(uFirst, uLast - uFirst + 1);
}

}  // namespace

bool FruParseDescription(const std::string& sText, sFruImageParts* psParts, std::string* psError)
{
    sBuilder sState;
    std::istringstream sLines(sText);
    int iLine = 0;
    for (std::string sLine; std::getline(sLines, sLine);) {
        iLine++;
        std::string sClean = Clean(sLine);
        if (sClean.empty()) {
            continue;
        }
        size_t uSplit = sClean.find_first_of(" \t");
        std::string sKey = sClean.substr(0, uSplit);
        std::string sRest = uSplit == std::string::npos ? "" : Clean(sClean.substr(uSplit));
        if (!ParseLine(&sState, sKey, sRest, psError)) {
            *psError = "line " + std::to_string(iLine) + ": " + *psError;
            return false;
        }
    }
    if (!CloseArea(&sState, psError)) {
        *psError = "at the end: " + *psError;
        return false;
    }
    *psParts = sState.sParts;
    return true;
}
