// -d and -v: a local file to the BMC, and a local file compared with what the BMC holds.
// Both keep the fixed order: arguments, file check, route, lists, work, lists, route.
#include <cstdio>

#include "ArgumentCheck.h"
#include "FRUOperations.h"
#include "OptionHandlers.h"
#include "ProgramState.h"
#include "channel/CommandChannel.h"
#include "repository/SDRCompare.h"
#include "repository/SDRTransfer.h"
#include "sdr/SDRFile.h"

namespace {

// The steps both operations share before their work: 1 when the lists are ready.
int PrepareTransfer(uint16_t u16ArgCount, char** ppchArgs, int* pbIsSDRFile, char* pchFileName,
                    uint16_t* pu16FruID)
{
    if (!ValidateAnalyzeParameters(u16ArgCount, ppchArgs, pbIsSDRFile, pchFileName, pu16FruID)) {
        return 0;
    }
    if (IsFileExistReadOnly(pchFileName) == 1) {
        fprintf(stderr, "<ERROR> File %s does not exist.\n", pchFileName);
        return 0;
    }
    if (!InitializeInterface()) {
        return 0;
    }
    if (!TavrinInit()) {
        TerminateConnSession();
        return 0;
    }
    return 1;
}

int VerifySDRFile(const char* pchFileName)
{
    uint16_t u16FileCount = 0;
    if (ReadSDRFile(pchFileName, &u16FileCount) != 1) {
        fputs("Failure to verify the SDR data! (Cannot read SDR from input file)\n", stderr);
        return 0;
    }
    uint16_t u16BMCCount = 0;
    if (DoSDRGetFromBMC(&u16BMCCount) != 1) {
        fputs("Failure to verify the SDR data! (Cannot Get SDR from BMC)\n", stderr);
        return 0;
    }
    if (SDRCompare(u16FileCount, u16BMCCount) != 1) {
        fputs("Failure to verify the SDR data! (different SDR)\n", stderr);
        return 0;
    }
    fprintf(stdout, "Verify SDR file %s with SDR repository successful! \n\n", pchFileName);
    return 1;
}

int DownloadSDRFile(const char* pchFileName)
{
    uint16_t u16RecordCount = 0;
    if (ReadSDRFile(pchFileName, &u16RecordCount) != 1) {
        fputs("Failure to download SDR data!\n\n", stderr);
        return 0;
    }
    return DoSDRAddToBMC(u16RecordCount);
}

// One operation: the preparation, the work of the data kind on the named file, then
// the lists and the route are closed in that order.
eReturnCodeTag RunTransfer(uint16_t u16ArgCount, char** ppchArgs, int (*pfnSDRWork)(const char*),
                           int (*pfnFRUWork)(const char*, uint16_t))
{
    int bIsSDRFile = 0;
    char achFileName[FILE_NAME_SIZE] = {0};
    uint16_t u16FruID = 0;
    if (!PrepareTransfer(u16ArgCount, ppchArgs, &bIsSDRFile, achFileName, &u16FruID)) {
        return eRcHandlerFailed;
    }
    int iResult = bIsSDRFile ? pfnSDRWork(achFileName) : pfnFRUWork(achFileName, u16FruID);
    TavrinExit();
    TerminateConnSession();
    return (iResult == 1) ? eRcSuccess : eRcHandlerFailed;
}

}  // namespace

eReturnCodeTag Verify(uint16_t u16ArgCount, char** ppchArgs)
{
    return RunTransfer(u16ArgCount, ppchArgs, VerifySDRFile, VerifyFRUFile);
}

eReturnCodeTag Download(uint16_t u16ArgCount, char** ppchArgs)
{
    return RunTransfer(u16ArgCount, ppchArgs, DownloadSDRFile, DownloadFRUFile);
}
