// intf.ini, the configuration of the direct KCS route: up to four lines with the
// system interface, the port address, the register spacing and the firmware
// information address.
#include "channel/TBMC_OSA.h"

#include <strings.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const char* const kDefaultIniFile = "intf.ini";
const char* const kTokenSeparators = " _\r\n";

enum {
    CONFIG_LINE_SIZE = 64,  // a longer line spills into the next read
    SYSINTF_NAME_COUNT = sizeof(S_pachSysIntfStr) / sizeof(S_pachSysIntfStr[0]),
    REGSPACE_NAME_COUNT = sizeof(S_pachRegSpaceStr) / sizeof(S_pachRegSpaceStr[0]),
};

const long kMinPortAddress = 0x10;
const long kMaxPortAddress = 0xFFFE;

// Reads the next line, at most 63 characters of it, into a zeroed buffer.
// False at the end of the file.
bool ReadConfigLine(FILE* pFile, char* pchLine)
{
    memset(pchLine, 0, CONFIG_LINE_SIZE);
    return fgets(pchLine, CONFIG_LINE_SIZE, pFile) != nullptr;
}

// The first token of the line (terminated in place), or null when there is none.
char* FirstToken(char* pchLine)
{
    char* pchToken = pchLine + strspn(pchLine, kTokenSeparators);
    if (*pchToken == '\0') {
        return nullptr;
    }
    pchToken[strcspn(pchToken, kTokenSeparators)] = '\0';
    return pchToken;
}

// A table entry by value, for the trace; values outside the table have no name.
const char* NameOf(const char* const* ppchTable, int iCount, int iValue)
{
    return (iValue >= 0 && iValue < iCount) ? ppchTable[iValue] : "?";
}

int LookUpName(const char* pchText, const char* const* ppchTable, int iFirst, int iCount)
{
    if (pchText == nullptr) {
        return -1;
    }
    for (int i = iFirst; i < iCount; i++) {
        if (strcasecmp(pchText, ppchTable[i]) == 0) {
            return i;
        }
    }
    return -1;
}

bool ParseSysIntfLine(char* pchLine, SystemInterface* peSysIntf)
{
    char* pchToken = FirstToken(pchLine);
    int iValue = ConvertIntfType(pchToken);
    if (iValue < 0) {
        TBMCDebug("Error config: %s ==> not a valid System interface type.\n", pchToken ? pchToken : pchLine);
        return false;
    }
    *peSysIntf = static_cast<SystemInterface>(iValue);
    return true;
}

bool ParsePortLine(const char* pchLine, uint16_t* pu16PortAddress)
{
    long lValue = strtol(pchLine, nullptr, 16);
    if (lValue < kMinPortAddress || lValue > kMaxPortAddress) {
        TBMCDebug("Error config: %s ==> not a valid Port Address.\n", pchLine);
        return false;
    }
    *pu16PortAddress = static_cast<uint16_t>(lValue);
    return true;
}

bool ParseRegSpaceLine(char* pchLine, RegisterSpacing* peSpacing)
{
    char* pchToken = FirstToken(pchLine);
    int iValue = ConvertRegSpace(pchToken);
    if (iValue < 0) {
        TBMCDebug("Error config: %s ==> not a valid Register Spacing type.\n", pchToken ? pchToken : pchLine);
        return false;
    }
    *peSpacing = static_cast<RegisterSpacing>(iValue);
    return true;
}

// Reads the four lines in order; a line missing at the end of the file leaves its
// value untouched. 0, or 1 at the first invalid line.
int ReadConfigLines(FILE* pFile, SystemInterface* peSysIntf, uint16_t* pu16PortAddress,
                    RegisterSpacing* peSpacing, long* plFirmwareInfoAddress)
{
    char achLine[CONFIG_LINE_SIZE];
    if (ReadConfigLine(pFile, achLine) && !ParseSysIntfLine(achLine, peSysIntf)) {
        return BMC_STATUS_CONFIG_INVALID;
    }
    if (ReadConfigLine(pFile, achLine) && !ParsePortLine(achLine, pu16PortAddress)) {
        return BMC_STATUS_CONFIG_INVALID;
    }
    if (ReadConfigLine(pFile, achLine) && !ParseRegSpaceLine(achLine, peSpacing)) {
        return BMC_STATUS_CONFIG_INVALID;
    }
    *plFirmwareInfoAddress = BMC_DEFAULT_FIRMWARE_INFO_ADDRESS;
    if (ReadConfigLine(pFile, achLine)) {
        *plFirmwareInfoAddress = strtol(achLine, nullptr, 16);
    }
    TBMCDebug("Read Config:\nSysIntf = %s, PortAddr = 0x%03X, RegSpace = %s\n",
              NameOf(S_pachSysIntfStr, SYSINTF_NAME_COUNT, *peSysIntf), *pu16PortAddress,
              NameOf(S_pachRegSpaceStr, REGSPACE_NAME_COUNT, *peSpacing));
    return BMC_STATUS_SUCCESS;
}

}  // namespace

int ConvertIntfType(const char* pchText)
{
    // Entries 0 (empty) and 4 ("NULL") name no usable interface.
    return LookUpName(pchText, S_pachSysIntfStr, SysIntfKCS, SysIntfBT + 1);
}

int ConvertRegSpace(const char* pchText)
{
    return LookUpName(pchText, S_pachRegSpaceStr, 0, REGSPACE_NAME_COUNT);
}

bool TTalkToBMC::SaveIniFilePath(const char* pchPath)
{
    if (pchPath == nullptr || strlen(pchPath) >= sizeof(achIniFilePath)) {
        return false;
    }
    memset(achIniFilePath, 0, sizeof(achIniFilePath));
    memcpy(achIniFilePath, pchPath, strlen(pchPath));
    return true;
}

int TTalkToBMC::GetConfig(SystemInterface* peSysIntf, uint16_t* pu16PortAddress, RegisterSpacing* peSpacing,
                          long* plFirmwareInfoAddress)
{
    if (peSysIntf == nullptr || pu16PortAddress == nullptr || peSpacing == nullptr ||
        plFirmwareInfoAddress == nullptr) {
        TBMCDebug("Error config: Invalid input parameters.\n");
        return BMC_STATUS_NULL_ARGUMENT;
    }
    const char* pchPath = (achIniFilePath[0] != '\0') ? achIniFilePath : kDefaultIniFile;
    FILE* pFile = fopen(pchPath, "r");
    if (pFile == nullptr) {
        TBMCDebug("Cannot find %s, abort.\n", pchPath);
        return BMC_STATUS_CONFIG_NOT_FOUND;
    }
    int iResult = ReadConfigLines(pFile, peSysIntf, pu16PortAddress, peSpacing, plFirmwareInfoAddress);
    fclose(pFile);
    return iResult;
}
