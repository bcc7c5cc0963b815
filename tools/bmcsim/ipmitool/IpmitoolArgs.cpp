// Taking the ipmitool command line apart.
#include "IpmitoolArgs.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Options that take a value; those not listed here besides -V and -v are refused.
const char kValueOptions[] = "CIUPHLpNRyk";

bool CopyArg(char* pchTarget, const char* pchValue)
{
    if (strlen(pchValue) >= IPMITOOL_ARG_TEXT_MAX) {
        fprintf(stderr, "Error: option value too long\n");
        return false;
    }
    strcpy(pchTarget, pchValue);
    return true;
}

// A number as ipmitool reads one: decimal, 0x hex or 0 octal, within the limit.
bool ReadNumber(const char* pchText, unsigned long ulLimit, unsigned long* pulValue)
{
    char* pchEnd = nullptr;
    errno = 0;
    unsigned long ulValue = strtoul(pchText, &pchEnd, 0);
    if (errno != 0 || pchEnd == pchText || *pchEnd != '\0' || pchText[0] == '-' || ulValue > ulLimit) {
        return false;
    }
    *pulValue = ulValue;
    return true;
}

bool StoreOption(char chOption, const char* pchValue, sIpmitoolCall* psCall)
{
    unsigned long ulValue = 0;
    switch (chOption) {
    case 'C':
        if (!ReadNumber(pchValue, 255, &ulValue)) {
            fprintf(stderr, "Invalid parameter given or out of range for '-C'.\n");
            return false;
        }
        psCall->iCipherSuite = static_cast<int>(ulValue);
        return true;
    case 'I': return CopyArg(psCall->achInterface, pchValue);
    case 'U': return CopyArg(psCall->achUser, pchValue);
    case 'P': return CopyArg(psCall->achPassword, pchValue);
    case 'H':
        psCall->bHostGiven = true;
        return CopyArg(psCall->achHost, pchValue);
    default: return true;  // accepted and of no concern to a simulated BMC
    }
}

// Walks the options; returns the index of the first argument that is no option, or -1.
int ParseOptions(int iArgc, char** ppchArgv, sIpmitoolCall* psCall)
{
    int i = 1;
    while (i < iArgc && ppchArgv[i][0] == '-' && ppchArgv[i][1] != '\0') {
        char chOption = ppchArgv[i][1];
        if (chOption == 'V') {
            psCall->bVersion = true;
            return iArgc;
        }
        if (chOption == 'v') {
            i++;
            continue;
        }
        if (strchr(kValueOptions, chOption) == nullptr) {
            fprintf(stderr, "ipmitool: invalid option -- '%c'\n", chOption);
            return -1;
        }
        const char* pchValue = (ppchArgv[i][2] != '\0') ? ppchArgv[i] + 2 : nullptr;
        if (pchValue == nullptr && i + 1 < iArgc) {
            pchValue = ppchArgv[++i];
        }
        if (pchValue == nullptr) {
            fprintf(stderr, "ipmitool: option requires an argument -- '%c'\n", chOption);
            return -1;
        }
        if (!StoreOption(chOption, pchValue, psCall)) {
            return -1;
        }
        i++;
    }
    return i;
}

int ParseRaw(int iFirst, int iArgc, char** ppchArgv, sIpmitoolCall* psCall)
{
    if (iArgc - iFirst < 2) {
        fprintf(stderr, "Not enough parameters given.\nRAW Commands:  raw <netfn> <cmd> [data]\n");
        return 0;
    }
    if (iArgc - iFirst - 2 > IPMITOOL_RAW_DATA_MAX) {
        fprintf(stderr, "Raw command input limit (%d bytes) exceeded\n", IPMITOOL_RAW_DATA_MAX);
        return 0;
    }
    unsigned long ulValue = 0;
    for (int i = iFirst; i < iArgc; i++) {
        if (!ReadNumber(ppchArgv[i], 0xFF, &ulValue)) {
            fprintf(stderr, "Given data byte '%s' is invalid.\n", ppchArgv[i]);
            return 0;
        }
        uint8_t u8Value = static_cast<uint8_t>(ulValue);
        if (i == iFirst) {
            psCall->u8NetFn = u8Value;
        } else if (i == iFirst + 1) {
            psCall->u8Command = u8Value;
        } else {
            psCall->au8Data[psCall->u16DataLength++] = u8Value;
        }
    }
    return 1;
}

}  // namespace

int ParseIpmitoolArgs(int iArgc, char** ppchArgv, sIpmitoolCall* psCall)
{
    memset(psCall, 0, sizeof(*psCall));
    psCall->iCipherSuite = -1;
    int iCommand = ParseOptions(iArgc, ppchArgv, psCall);
    if (iCommand < 0) {
        return 0;
    }
    if (psCall->bVersion) {
        return 1;
    }
    if (iCommand >= iArgc) {
        fprintf(stderr, "No command provided!\n");
        return 0;
    }
    if (strcmp(ppchArgv[iCommand], "raw") != 0) {
        fprintf(stderr, "Invalid command: %s\n", ppchArgv[iCommand]);
        return 0;
    }
    return ParseRaw(iCommand + 1, iArgc, ppchArgv, psCall);
}
