// Program entry: banner, option table, parse, the three passes, exit status.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "CmdLnExe.h"
#include "OptionHandlers.h"
#include "channel/CommandChannel.h"
#include "common/TextHelpers.h"

namespace {

enum {
    EXIT_HANDLER_FAILED = 1,
    EXIT_REGISTER_FAILED = 3,
    EXIT_BAD_COMMAND_LINE = 4,
    OPTION_TABLE_CAPACITY = 15,
};

void RegisterFunctionOrExit(TCommandLineExecution& sDispatcher, const char* pchName, uint8_t u8MaxArgs,
                            uint8_t u8MinArgs, TOptionHandler pfnHandler)
{
    if (sDispatcher.FunctionRegistry(pchName, u8MaxArgs, u8MinArgs, pfnHandler) != eRcSuccess) {
        sDispatcher.ShowOptionReturnCodeString(stderr);
        exit(EXIT_REGISTER_FAILED);
    }
}

void RegisterOptions(TCommandLineExecution& sDispatcher)
{
    RegisterFunctionOrExit(sDispatcher, "h", 0, 0, ShowHelp);
    RegisterFunctionOrExit(sDispatcher, "d", 2, 1, Download);
    RegisterFunctionOrExit(sDispatcher, "u", 3, 2, Upload);
    RegisterFunctionOrExit(sDispatcher, "v", 2, 1, Verify);
    RegisterFunctionOrExit(sDispatcher, "t", 2, 1, Test);
    RegisterFunctionOrExit(sDispatcher, "version", 0, 0, ShowVersion);
    RegisterFunctionOrExit(sDispatcher, GetLowerCaseString("KCS"), 0, 0, CheckKCS);
    RegisterFunctionOrExit(sDispatcher, "msgintf", 1, 1, SetMessagingInterface);
    RegisterFunctionOrExit(sDispatcher, "n", 1, 1, SaveLanIF);
    RegisterFunctionOrExit(sDispatcher, "H", 1, 1, SaveHostIP);
    RegisterFunctionOrExit(sDispatcher, "U", 1, 1, SaveUserName);
    RegisterFunctionOrExit(sDispatcher, "P", 1, 1, SavePassWord);
    RegisterFunctionOrExit(sDispatcher, "C", 1, 1, SaveCipherValue);
    RegisterFunctionOrExit(sDispatcher, "updateFRU", 6, 3, UpdateFRU);
    RegisterFunctionOrExit(sDispatcher, "debugmsg", 0, 0, VerboseMode);
}

// The dispatcher counts the words in 16 bits with a sign; a longer line would wrap to a
// short one, so it is refused as a line with too many arguments.
int ParseCommandLine(int iArgCount, char** ppchArgs, TCommandLineExecution& sDispatcher)
{
    if (iArgCount > INT16_MAX) {
        return sDispatcher.RefuseCommandLine(eRcIncorrectFormat);
    }
    return sDispatcher.ParseCommandOptions(static_cast<int16_t>(iArgCount), ppchArgs);
}

// One character more than the longest password that -P accepts, so that a copy of a
// longer one is still refused as too long.
const size_t kPasswordCopySize = sizeof(sIolData.achPassWord) + 1;

bool IsOptionWord(const char* pchWord)
{
    return pchWord[0] == '-' || pchWord[0] == '/';
}

// The process list shows tavrin's own argument vector. Before any option runs (the
// check for ipmitool among them), the value of -P moves to a copy of its own and is
// blanked where it stood, as ipmitool does with its own.
void HidePassword(int iArgCount, char** ppchArgs, char (&achCopy)[kPasswordCopySize])
{
    for (int i = 1; i + 1 < iArgCount; i++) {
        if (!IsOptionWord(ppchArgs[i]) || strcmp(ppchArgs[i] + 1, "P") != 0) {
            continue;
        }
        char* pchValue = ppchArgs[i + 1];
        if (!IsOptionWord(pchValue)) {
            snprintf(achCopy, sizeof(achCopy), "%s", pchValue);
            memset(pchValue, 0, strlen(pchValue));
            ppchArgs[i + 1] = achCopy;
        }
        return;
    }
}

void ShowBadCommandLine(const TCommandLineExecution& sDispatcher)
{
    sDispatcher.ShowOptionReturnCodeString(stderr);
    fputs("Use " TAVRIN " -h for help.\n", stderr);
}

}  // namespace

int main(int argc, char** argv)
{
    ShowProductHeader();
    fflush(stdout);
    TCommandLineExecution* psDispatcher = new TCommandLineExecution(OPTION_TABLE_CAPACITY);
    RegisterOptions(*psDispatcher);

    char achPassword[kPasswordCopySize] = {0};
    HidePassword(argc, argv, achPassword);
    int iStatus = EXIT_SUCCESS;
    if (ParseCommandLine(argc, argv, *psDispatcher) != 1) {
        ShowBadCommandLine(*psDispatcher);
        iStatus = EXIT_BAD_COMMAND_LINE;
    } else if (psDispatcher->Trigger() != eRcSuccess) {
        iStatus = EXIT_HANDLER_FAILED;
        if (eInterfaceInUse != eIntfLANPlus) {
            fputs("\nNote: If the option, -msgintf kcsio, is used,", stderr);
            fputs("\n      make sure KCS driver modules are not loaded!\n\n", stderr);
        }
    }
    delete psDispatcher;
    return iStatus;
}
