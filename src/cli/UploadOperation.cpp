// -u: what the BMC holds (the SDR repository, or with fruID= a FRU device), saved in a
// local text file. The fixed order: arguments, file test (with the replace prompt),
// route, lists, fetch and save, lists, route. The file is written only after the data
// were fetched, so a failed read leaves an existing file as it was.
#include <cctype>
#include <cstdio>

#include "ArgumentCheck.h"
#include "FRUOperations.h"
#include "OptionHandlers.h"
#include "ProgramState.h"
#include "UploadArguments.h"
#include "channel/CommandChannel.h"
#include "repository/SDRTransfer.h"
#include "sdr/SDRTextWriter.h"

namespace {

// What the user answered to the replace prompt.
enum eReplaceAnswer { eReplaceYes, eReplaceNo, eReplaceNoInput };

// One blank-delimited word from standard input, of which only the first character
// counts; the rest of the word is read and dropped, so that no later question takes it.
eReplaceAnswer ReadReplaceAnswer()
{
    int iChar = getchar();
    while (iChar != EOF && isspace(iChar)) {
        iChar = getchar();
    }
    if (iChar == EOF) {
        return eReplaceNoInput;
    }
    const int iFirst = iChar;
    while (iChar != EOF && !isspace(iChar)) {
        iChar = getchar();
    }
    return (iFirst == 'y' || iFirst == 'Y') ? eReplaceYes : eReplaceNo;
}

// The file test: 1 to go on, 0 to stop with *pbFailed telling whether that is a failure.
// Declining the prompt stops with success; an ended standard input is no answer, and a
// script that runs without one must not take the untouched file for a saved one.
int PrepareTargetFile(const char* pchFileName, int* pbFailed)
{
    *pbFailed = 1;
    const int iExist = IsFileExist(pchFileName);
    if (iExist == FILE_ERROR) {
        fputs("<ERROR> Directory does not exist or file error.\n", stderr);
        return 0;
    }
    if (iExist == FILE_CREATED) {
        return 1;
    }
    fputs("File exists, do you want to replace it, y/n? ", stdout);
    fflush(stdout);
    const eReplaceAnswer eAnswer = ReadReplaceAnswer();
    if (eAnswer == eReplaceNoInput) {
        fputs("\n", stdout);
        fprintf(stderr, "<ERROR> No answer: standard input has ended. %s was not replaced.\n", pchFileName);
        return 0;
    }
    *pbFailed = 0;
    return eAnswer == eReplaceYes ? 1 : 0;
}

// The work of the SDR kind: the repository into G_psRepositorySDREntryList, then into
// the file. 1 when both succeeded.
int UploadSDRData(const char* pchFileName, eFileEncoding eEncoding)
{
    uint16_t u16RecordCount = 0;
    if (DoSDRGetFromBMC(&u16RecordCount) != 1) {
        fputs("Failure to upload SDR data!\n", stderr);
        return 0;
    }
    fprintf(stdout, "Start to save sdr file, %s \n", pchFileName);
    if (!SaveSDRFile(pchFileName, eEncoding)) {
        fputs("Failure to upload SDR data!\n", stderr);
        return 0;
    }
    return 1;
}

}  // namespace

eReturnCodeTag Upload(uint16_t u16ArgCount, char** ppchArgs)
{
    int bIsSDRFile = 0;
    char achFileName[FILE_NAME_SIZE] = {0};
    eFileEncoding eEncoding = eEncodingASCII;
    uint16_t u16FruID = 0;
    if (!ValidateAnalyzeUploadParameters(u16ArgCount, ppchArgs, &bIsSDRFile, achFileName, &eEncoding, &u16FruID)) {
        return eRcHandlerFailed;
    }
    int bFailed = 0;
    if (!PrepareTargetFile(achFileName, &bFailed)) {
        return bFailed ? eRcHandlerFailed : eRcSuccess;
    }
    if (!InitializeInterface()) {
        return eRcHandlerFailed;
    }
    if (!TavrinInit()) {
        TerminateConnSession();
        return eRcHandlerFailed;
    }
    const int iResult = bIsSDRFile ? UploadSDRData(achFileName, eEncoding)
                                   : UploadFRUFile(achFileName, eEncoding, u16FruID);
    TavrinExit();
    TerminateConnSession();
    return (iResult == 1) ? eRcSuccess : eRcHandlerFailed;
}
