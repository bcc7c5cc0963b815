// -t: checks a local file and never contacts the BMC.
#include <cstdio>

#include "ArgumentCheck.h"
#include "FRUOperations.h"
#include "OptionHandlers.h"
#include "ProgramState.h"
#include "sdr/SDRFile.h"

eReturnCodeTag Test(uint16_t u16ArgCount, char** ppchArgs)
{
    int bIsSDRFile = 0;
    char achFileName[FILE_NAME_SIZE] = {0};
    uint16_t u16FruID = 0;
    if (!ValidateAnalyzeParameters(u16ArgCount, ppchArgs, &bIsSDRFile, achFileName, &u16FruID)) {
        return eRcHandlerFailed;
    }
    if (!TavrinInit()) {
        return eRcHandlerFailed;
    }
    if (IsFileExistReadOnly(achFileName) == 1) {
        fprintf(stderr, "<ERROR> File %s does not exist.\n", achFileName);
        return eRcHandlerFailed;
    }
    int iRead = 0;
    if (bIsSDRFile) {
        uint16_t u16RecordCount = 0;
        iRead = ReadSDRFile(achFileName, &u16RecordCount);
        if (iRead == 1) {
            fprintf(stdout, "No error found in SDR file %s! \n \n", achFileName);
        } else {
            fprintf(stderr, "Error found in SDR file %s. \n", achFileName);
        }
    } else {
        iRead = TestFRUFile(achFileName);
    }
    TavrinExit();
    return (iRead == 1) ? eRcSuccess : eRcHandlerFailed;
}
