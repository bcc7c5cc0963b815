// The check of the -updateFRU parameters: split every word into name and value, refuse
// duplicates, interpret each in command-line order, then the rules of the field kind.
// The first fault ends the check with its message; nothing has touched the BMC yet.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ArgumentCheck.h"
#include "FRUDateTime.h"
#include "FRUUpdateData.h"
#include "common/TextHelpers.h"

namespace {

const char kDateTime[] = "datetime";
const int DATETIME_PARAMETER_COUNT = 3;
const unsigned long OFFSET_LIMIT = 0xFFFF;

// Name and value of one word. A value may hold further '=' and blanks; '=' in front of
// the name is skipped. 1, or 0 with the message.
int SplitUpdateParameter(const char* pchArgument, sUpdateParameter* psParameter)
{
    const char* pchWord = (pchArgument != nullptr) ? pchArgument : "";
    while (*pchWord == '=') {
        pchWord++;
    }
    const char* pchEqual = strchr(pchWord, '=');
    if (pchEqual == nullptr || pchWord[strlen(pchWord) - 1] == '=') {
        fputs("<ERROR> Parameter has no value! \n", stderr);
        return 0;
    }
    const int iNameLength = static_cast<int>(pchEqual - pchWord);
    if (iNameLength > FRU_UPDATE_NAME_LENGTH) {
        fprintf(stderr, "<ERROR> Parameter name (%.*s) is not allowed! \n", iNameLength, pchWord);
        return 0;
    }
    if (strlen(pchEqual + 1) > FRU_UPDATE_VALUE_LENGTH) {
        fprintf(stderr, "<ERROR> Parameter value (%s) is over the maximum length! \n", pchEqual + 1);
        return 0;
    }
    memcpy(psParameter->achName, pchWord, static_cast<size_t>(iNameLength));
    psParameter->achName[iNameLength] = '\0';
    strcpy(psParameter->achValue, pchEqual + 1);
    return 1;
}

int FindParameter(const sUpdateParameter* psParameters, uint16_t u16Count, const char* pchName)
{
    for (uint16_t i = 0; i < u16Count; i++) {
        if (strcmp(psParameters[i].achName, pchName) == 0) {
            return i;
        }
    }
    return -1;
}

int HasDuplicates(const sUpdateParameter* psParameters, uint16_t u16Count)
{
    for (uint16_t i = 1; i < u16Count; i++) {
        if (FindParameter(psParameters, i, psParameters[i].achName) >= 0) {
            return 1;
        }
    }
    return 0;
}

// Numbers are read whole, never cut to their field: a value too wide for its field is
// refused rather than wrapped onto another offset or length.
unsigned long ReadHexValue(const char* pchValue)
{
    return strtoul(pchValue, nullptr, 16);
}

int SetFieldName(char* pchValue, sFRUUpdateData* psData)
{
    static const char* const apchKnown[] = {kDateTime, "snChassis", "snBoard", "snProduct"};
    for (const char* pchKnown : apchKnown) {
        if (strcmp(pchValue, pchKnown) == 0) {
            strcpy(psData->achFieldName, pchKnown);
            return 1;
        }
    }
    fputs("<ERROR> Incorrect field name! \n", stderr);
    return 0;
}

int SetFRUID(char* pchValue, sFRUUpdateData* psData)
{
    if (!ValidateHexData(pchValue)) {
        fputs("<ERROR> FRU ID is not a number! \n", stderr);
        return 0;
    }
    const unsigned long ulFruID = ReadHexValue(pchValue);
    if (ulFruID == FRU_ID_RESERVED) {
        fputs("<ERROR> FRU ID specified is reserved! \n", stderr);
        return 0;
    }
    if (ulFruID > FRU_ID_RESERVED) {
        fputs("<ERROR> FRU ID must be in the range of 0x00~0xFE! \n", stderr);
        return 0;
    }
    psData->u8FRUID = static_cast<uint8_t>(ulFruID);
    return 1;
}

int SetOffset(char* pchValue, sFRUUpdateData* psData)
{
    if (!ValidateHexData(pchValue)) {
        fputs("<ERROR> Offset is not a number! \n", stderr);
        return 0;
    }
    const unsigned long ulOffset = ReadHexValue(pchValue);
    if (ulOffset > OFFSET_LIMIT) {
        fputs("<ERROR> Offset must be in the range of 0x0000~0xFFFF! \n", stderr);
        return 0;
    }
    psData->u16Offset = static_cast<uint16_t>(ulOffset);
    return 1;
}

// Read as far as the hex digits go, with or without 0x, and with no digit check: "3x" is 3.
int SetStringType(char* pchValue, sFRUUpdateData* psData)
{
    const unsigned long ulType = ReadHexValue(pchValue);
    if (ulType < FRU_STRING_BCD_PLUS || ulType > FRU_STRING_EIGHT_BIT) {
        fputs("<ERROR> Invalid string type! \n", stderr);
        return 0;
    }
    psData->u32StringType = static_cast<uint32_t>(ulType);
    return 1;
}

int SetStringLength(char* pchValue, sFRUUpdateData* psData)
{
    if (!ValidateHexData(pchValue)) {
        fputs("<ERROR> String length is not a number! \n", stderr);
        return 0;
    }
    const unsigned long ulLength = ReadHexValue(pchValue);
    if (ulLength > FRU_STRING_MAX_LENGTH) {
        fputs("<ERROR> String length must be less than or equal to 63 bytes! \n", stderr);
        return 0;
    }
    psData->u8StringLength = static_cast<uint8_t>(ulLength);
    return 1;
}

int SetStringValue(char* pchValue, sFRUUpdateData* psData)
{
    strcpy(psData->achStringValue, pchValue);
    return 1;
}

struct sParameterRule {
    const char* pchName;
    int (*pfnInterpret)(char* pchValue, sFRUUpdateData* psData);
};

const sParameterRule kParameterRules[] = {
    {"fieldName", SetFieldName}, {"fruID", SetFRUID},           {"offset", SetOffset},
    {"strType", SetStringType},  {"strLength", SetStringLength}, {"strValue", SetStringValue},
};

int InterpretUpdateParameter(sUpdateParameter* psParameter, sFRUUpdateData* psData)
{
    for (const sParameterRule& sRule : kParameterRules) {
        if (strcmp(psParameter->achName, sRule.pchName) == 0) {
            return sRule.pfnInterpret(psParameter->achValue, psData);
        }
    }
    fputs("<ERROR> Invalid parameter! \n", stderr);
    return 0;
}

// datetime takes fieldName, offset and fruID, and its new bytes are the present time.
int CompleteDateTimeUpdate(const sUpdateParameter* psParameters, uint16_t u16Count, sFRUUpdateData* psData)
{
    if (u16Count != DATETIME_PARAMETER_COUNT) {
        fputs("<ERROR> Incorrect number of parameters! \n", stderr);
        return 0;
    }
    if (FindParameter(psParameters, u16Count, "offset") < 0 || FindParameter(psParameters, u16Count, "fruID") < 0) {
        fputs("<ERROR> Required parameter is not specified! \n", stderr);
        return 0;
    }
    if (!ConvertCurrentDateTimeToHex(psData->au8NewData)) {
        fputs("Cannot get the current time! \n", stderr);
        fputs("Failure to update FRU data! \n", stderr);
        return 0;
    }
    return 1;
}

}  // namespace

int IsFRUUpdateOfDateTime(const sFRUUpdateData* psData)
{
    return strcmp(psData->achFieldName, kDateTime) == 0 ? 1 : 0;
}

int ValidateAnalyzeFRUUpdateDataParameters(uint16_t u16ArgCount, char** ppchArgs, sFRUUpdateData* psData)
{
    if (ppchArgs == nullptr || psData == nullptr) {
        fputs("<ERROR> Internal Error! \n", stderr);
        return 0;
    }
    if (u16ArgCount == 0) {
        fputs("<ERROR> Please specify the FRU data you wish to update! \n", stderr);
        return 0;
    }
    if (u16ArgCount > FRU_UPDATE_MAX_PARAMETERS) {
        fputs("<ERROR> The number of parameters exceeds the maximum allowed! \n", stderr);
        return 0;
    }
    sUpdateParameter asParameters[FRU_UPDATE_MAX_PARAMETERS] = {};
    for (uint16_t i = 0; i < u16ArgCount; i++) {
        if (!SplitUpdateParameter(ppchArgs[i], &asParameters[i])) {
            return 0;
        }
    }
    if (HasDuplicates(asParameters, u16ArgCount)) {
        fputs("<ERROR> Duplicated parameters found! \n", stderr);
        return 0;
    }
    for (uint16_t i = 0; i < u16ArgCount; i++) {
        if (!InterpretUpdateParameter(&asParameters[i], psData)) {
            return 0;
        }
    }
    if (IsFRUUpdateOfDateTime(psData)) {
        return CompleteDateTimeUpdate(asParameters, u16ArgCount, psData);
    }
    if (u16ArgCount != FRU_UPDATE_MAX_PARAMETERS) {
        fputs("<ERROR> Incorrect number of parameters! \n", stderr);
        return 0;
    }
    return PrepareFRUUpdateString(psData);
}
