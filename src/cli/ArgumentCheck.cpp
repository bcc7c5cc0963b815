#include "ArgumentCheck.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "OptionHandlers.h"
#include "common/TextHelpers.h"

namespace {

const char kFruIDPrefix[] = "fruID=";

// Reads the hexadecimal digits (already validated) into a number that saturates
// rather than wraps, so an over-long number can never pass as a small FRU ID.
uint32_t ReadHexNumber(const char* pchDigits)
{
    uint64_t u64Value = 0;
    for (const char* p = pchDigits; *p != '\0'; p++) {
        unsigned uDigit = (*p <= '9') ? static_cast<unsigned>(*p - '0')
                                      : static_cast<unsigned>((*p | 0x20) - 'a' + 10);
        u64Value = (u64Value << 4) | uDigit;
        if (u64Value > UINT32_MAX) {
            return UINT32_MAX;
        }
    }
    return static_cast<uint32_t>(u64Value);
}

}  // namespace

int CheckFruIDParameter(char* pchParameter, const char* pchOptions, uint16_t* pu16FruID)
{
    if (strncmp(pchParameter, kFruIDPrefix, sizeof(kFruIDPrefix) - 1) != 0) {
        fprintf(stderr, "<ERROR> '%s' is an invalid parameter for %s! \n\n", pchParameter, pchOptions);
        return 0;
    }
    char* pchValue = strchr(pchParameter, '=') + 1;
    if (!ValidateHexData(pchValue)) {
        fputs("<ERROR> FRU ID is not a number! \n", stderr);
        return 0;
    }
    uint32_t u32FruID = ReadHexNumber(pchValue);
    if (u32FruID == FRU_ID_RESERVED) {
        fprintf(stderr, "<ERROR> FRU ID (0x%02X) is reserved! \n \n", u32FruID);
        return 0;
    }
    if (u32FruID > FRU_ID_RESERVED) {
        fprintf(stderr, "<ERROR> FRU ID (0x%02X) is limited to 0x00~0xFE! \n \n", u32FruID);
        return 0;
    }
    *pu16FruID = static_cast<uint16_t>(u32FruID);
    return 1;
}

int CheckArgument(char** ppchArgs, uint16_t* pu16Index, char* pchFileName, uint16_t* pu16FruID,
                  int* pbFruIDGiven)
{
    int iToken = GetNextToken(ppchArgs[*pu16Index], pchFileName, FILE_NAME_SIZE);
    if (iToken == TOKEN_NONE) {
        fputs("<ERROR> Unknown flag: \n \n", stdout);
        fputs("Invalid operations. \n", stdout);
        fputs("\n\rUse " TAVRIN " -h for help.\n", stdout);
        return 0;
    }
    if (iToken == TOKEN_TOO_LONG) {
        fprintf(stderr, "<ERROR> The file name is longer than %d characters! \n \n", FILE_NAME_SIZE - 1);
        return 0;
    }
    char achParameter[PARAMETER_SIZE] = {0};
    iToken = GetNextToken(ppchArgs[*pu16Index + 1], achParameter, sizeof(achParameter));
    if (iToken == TOKEN_NONE) {
        *pu16Index = static_cast<uint16_t>(*pu16Index + 2);
        return 1;
    }
    if (iToken == TOKEN_TOO_LONG) {
        fprintf(stderr, "<ERROR> A parameter for -d/-v/-t is longer than %d characters! \n\n", PARAMETER_SIZE - 1);
        return 0;
    }
    if (!CheckFruIDParameter(achParameter, "-d/-v/-t", pu16FruID)) {
        return 0;
    }
    *pbFruIDGiven = 1;
    *pu16Index = static_cast<uint16_t>(*pu16Index + 2);
    return 1;
}

int ValidateAnalyzeParameters(uint16_t u16ArgCount, char** ppchArgs, int* pbIsSDRFile, char* pchFileName,
                              uint16_t* pu16FruID)
{
    if (u16ArgCount == 0) {
        fputs("<ERROR> Please specify a SDR/FRU filename! \n \n", stderr);
        return 0;
    }
    if (u16ArgCount == 1) {
        *pbIsSDRFile = 1;
    }
    int bFruIDGiven = 0;
    int iResult = 1;
    for (uint16_t u16Index = 0; u16Index < u16ArgCount && iResult == 1;) {
        iResult = CheckArgument(ppchArgs, &u16Index, pchFileName, pu16FruID, &bFruIDGiven);
    }
    // Two arguments select FRU data; without a readable fruID= there would be no
    // device to address, so such a line is refused rather than taken for FRU ID 0.
    if (iResult == 1 && u16ArgCount == 2 && !bFruIDGiven) {
        fputs("<ERROR> Please specify the FRU ID as fruID=<hex number> for FRU data! \n \n", stderr);
        return 0;
    }
    return iResult;
}

int IsFileExistReadOnly(const char* pchPath)
{
    // Only a regular file has an end to read to: a FIFO would block the run forever, a
    // directory has no bytes, and opening a device can act on it. So the kind is looked
    // at before the open, the open can't block, and the opened file is looked at again.
    struct stat sStat;
    if (stat(pchPath, &sStat) != 0 || !S_ISREG(sStat.st_mode)) {
        return 1;
    }
    int iFile = open(pchPath, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (iFile < 0) {
        return 1;
    }
    bool bRegular = fstat(iFile, &sStat) == 0 && S_ISREG(sStat.st_mode);
    close(iFile);
    return bRegular ? 0 : 1;
}
