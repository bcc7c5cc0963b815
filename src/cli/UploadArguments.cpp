#include "UploadArguments.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "ArgumentCheck.h"
#include "OptionHandlers.h"
#include "common/TextHelpers.h"

namespace {

const char kEncodingPrefix[] = "encoding=";

void ReportLongParameter()
{
    fprintf(stderr, "<ERROR> A parameter for -u is longer than %d characters! \n\n", PARAMETER_SIZE - 1);
}

// The encoding= token into *peEncoding: 1, or 0 with its message on standard output.
int CheckEncodingToken(const char* pchToken, eFileEncoding* peEncoding)
{
    if (strncmp(pchToken, kEncodingPrefix, sizeof(kEncodingPrefix) - 1) != 0) {
        fputs("<ERROR> Incorrect command format.\n\rInvalid operations.\n\rUse " TAVRIN " -h for help.\n", stdout);
        return 0;
    }
    const char* pchValue = strchr(pchToken, '=') + 1;
    if (strcmp(pchValue, "utf16") == 0) {
        *peEncoding = eEncodingUTF16;
    } else if (strcmp(pchValue, "utf8") == 0) {
        *peEncoding = eEncodingUTF8;
    } else if (strcmp(pchValue, "ascii") == 0) {
        *peEncoding = eEncodingASCII;
    } else {
        fputs("<ERROR> Unrecognized encoding type!\n\rUse " TAVRIN " -h for help.\n", stdout);
        return 0;
    }
    return 1;
}

}  // namespace

int CheckUploadArgument(char** ppchArgs, uint16_t* pu16Index, char* pchFileName, eFileEncoding* peEncoding,
                        uint16_t* pu16FruID)
{
    if (ppchArgs == nullptr || pu16Index == nullptr || pchFileName == nullptr || peEncoding == nullptr ||
        pu16FruID == nullptr) {
        fputs("<ERROR> Internal Error!", stderr);
        return 0;
    }
    int iToken = GetNextToken(ppchArgs[*pu16Index], pchFileName, FILE_NAME_SIZE);
    if (iToken == TOKEN_NONE) {
        fputs("<ERROR> Unknown flag: \n \nInvalid operations. \n\n\rUse " TAVRIN " -h for help.\n", stdout);
        return 0;
    }
    if (iToken == TOKEN_TOO_LONG) {
        fprintf(stderr, "<ERROR> The file name is longer than %d characters! \n \n", FILE_NAME_SIZE - 1);
        return 0;
    }
    // Both tokens are taken before either is judged: the tokeniser carries on in the
    // encoding argument when the slot behind it is empty.
    char achEncoding[PARAMETER_SIZE] = {0};
    char achParameter[PARAMETER_SIZE] = {0};
    const int iEncoding = GetNextToken(ppchArgs[*pu16Index + 1], achEncoding, sizeof(achEncoding));
    int iParameter = TOKEN_NONE;
    if (iEncoding != TOKEN_NONE) {
        iParameter = GetNextToken(ppchArgs[*pu16Index + 2], achParameter, sizeof(achParameter));
    }
    if (iEncoding == TOKEN_NONE) {
        fputs("<ERROR> Please specify a file encoding type!\n\rUse " TAVRIN " -h for help.\n", stdout);
        return 0;
    }
    if (iEncoding == TOKEN_TOO_LONG) {
        ReportLongParameter();
        return 0;
    }
    if (!CheckEncodingToken(achEncoding, peEncoding)) {
        return 0;
    }
    if (iParameter == TOKEN_NONE) {
        *pu16Index = static_cast<uint16_t>(*pu16Index + 2);
        return 1;
    }
    if (iParameter == TOKEN_TOO_LONG) {
        ReportLongParameter();
        return 0;
    }
    if (!CheckFruIDParameter(achParameter, "-u", pu16FruID)) {
        return 0;
    }
    *pu16Index = static_cast<uint16_t>(*pu16Index + 3);
    return 1;
}

int ValidateAnalyzeUploadParameters(uint16_t u16ArgCount, char** ppchArgs, int* pbIsSDRFile, char* pchFileName,
                                    eFileEncoding* peEncoding, uint16_t* pu16FruID)
{
    if (ppchArgs == nullptr || pbIsSDRFile == nullptr || pchFileName == nullptr || peEncoding == nullptr ||
        pu16FruID == nullptr) {
        fputs("<ERROR> Internal Error!", stderr);
        return 0;
    }
    if (u16ArgCount == 0) {
        fputs("<ERROR> Please specify a SDR/FRU filename! \n \n", stderr);
        return 0;
    }
    if (u16ArgCount <= 2) {
        *pbIsSDRFile = 1;
    }
    int iResult = 1;
    for (uint16_t u16Index = 0; u16Index < u16ArgCount && iResult == 1;) {
        iResult = CheckUploadArgument(ppchArgs, &u16Index, pchFileName, peEncoding, pu16FruID);
    }
    return iResult;
}

int IsFileExist(const char* pchPath)
{
    if (pchPath == nullptr) {
        return FILE_ERROR;
    }
    const int iFile = open(pchPath, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (iFile >= 0) {
        close(iFile);
        return FILE_CREATED;
    }
    if (errno != EEXIST) {
        return FILE_ERROR;
    }
    // Only a regular file is offered for replacing: writing a FIFO would wait for a
    // reader, and a directory or a device is no place for a text file. One that can't be
    // written is refused now, before the BMC is asked for anything.
    struct stat sStat;
    if (stat(pchPath, &sStat) != 0 || !S_ISREG(sStat.st_mode) || access(pchPath, W_OK) != 0) {
        return FILE_ERROR;
    }
    return FILE_EXISTS;
}
