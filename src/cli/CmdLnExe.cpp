#include "CmdLnExe.h"

#include <cstring>

namespace {

const char* const kOperationalCommands[] = {"d", "u", "t", "v", "h", "version", "updateFRU"};
const char* const kInterfaceOptions[] = {"msgintf", "n", "H", "U", "P", "C"};
const char* const kLanOptions[] = {"n", "H", "U", "P", "C"};

template <size_t N>
int IndexIn(const char* const (&apchNames)[N], const char* pchName)
{
    for (size_t i = 0; i < N; i++) {
        if (strcmp(apchNames[i], pchName) == 0) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

bool IsOptionShaped(const char* pchWord)
{
    return pchWord[0] == '-' || pchWord[0] == '/';
}

// What the parse has seen so far, for the compatibility rules after the word loop.
struct sParseFlags {
    int iNoArgOptions = 0;
    int iArgOptions = 0;
    bool bLastEntrySeen = false;
    bool bOperationalSeen = false;
    bool abInterfaceSeen[sizeof(kInterfaceOptions) / sizeof(kInterfaceOptions[0])] = {};
};

}  // namespace

TCommandLineExecution::TCommandLineExecution(uint8_t u8TableCapacity)
    : eReturnCode(eRcSuccess),
      psRegistered(new sRegisteredOption[u8TableCapacity]),
      asParsed(),
      asExecuted(),
      u16RegisteredCount(0),
      u16ParsedCount(0),
      u16ExecutedCount(0),
      u8Capacity(u8TableCapacity)
{
}

TCommandLineExecution::~TCommandLineExecution()
{
    delete[] psRegistered;
}

eReturnCodeTag TCommandLineExecution::FunctionRegistry(const char* pchName, uint8_t u8MaxArgs, uint8_t u8MinArgs,
                                                       TOptionHandler pfnHandler)
{
    // Beyond null arguments, a full table or a name that doesn't fit is refused too,
    // rather than written past the table or cut.
    if (pchName == nullptr || pfnHandler == nullptr || u16RegisteredCount >= u8Capacity ||
        strlen(pchName) >= MAX_OPTION_NAME) {
        eReturnCode = eRcRegisterFailed;
        return eReturnCode;
    }
    sRegisteredOption& sEntry = psRegistered[u16RegisteredCount];
    strcpy(sEntry.achName, pchName);
    sEntry.u8MaxArgs = u8MaxArgs;
    sEntry.u8MinArgs = u8MinArgs;
    sEntry.pfnHandler = pfnHandler;
    sEntry.bSeen = 0;
    u16RegisteredCount++;
    eReturnCode = eRcSuccess;
    return eReturnCode;
}

int TCommandLineExecution::FindRegisteredOption(const char* pchName) const
{
    for (uint16_t i = 0; i < u16RegisteredCount; i++) {
        if (strcmp(psRegistered[i].achName, pchName) == 0) {
            return i;
        }
    }
    return -1;
}

int TCommandLineExecution::ParseCommandOptions(int16_t i16ArgCount, char** ppchArgs)
{
    u16ParsedCount = 0;
    eReturnCode = eRcSuccess;
    sParseFlags sFlags;

    if (i16ArgCount <= 1 || ppchArgs == nullptr) {
        eReturnCode = eRcNoCommandOption;
        return 0;
    }
    if (!IsOptionShaped(ppchArgs[1]) || strlen(ppchArgs[1]) == 1) {
        eReturnCode = eRcIncorrectFormat;
        return 0;
    }
    for (int16_t iArg = 1; iArg < i16ArgCount; iArg++) {
        char* pchWord = ppchArgs[iArg];
        if (!IsOptionShaped(pchWord)) {
            // A value: it belongs to the option parsed last, whatever its bounds say.
            sParsedOption& sOwner = asParsed[u16ParsedCount - 1];
            if (sOwner.u8ArgCount < MAX_OPTION_ARGS) {
                sOwner.apchArgs[sOwner.u8ArgCount] = pchWord;
            }
            if (sOwner.u8ArgCount < UINT8_MAX) {
                sOwner.u8ArgCount++;  // counted beyond the slots, so that the bounds test rejects it
            }
            continue;
        }
        const char* pchName = pchWord + 1;
        int iIndex = FindRegisteredOption(pchName);
        if (iIndex < 0) {
            eReturnCode = eRcUnrecognizedOption;
            return 0;
        }
        sRegisteredOption& sEntry = psRegistered[iIndex];
        if (sEntry.bSeen) {
            eReturnCode = eRcDuplicateOption;
            return 0;
        }
        if (u16ParsedCount >= MAX_PARSED_OPTIONS) {
            eReturnCode = eRcIncorrectFormat;
            return 0;
        }
        sParsedOption& sParsed = asParsed[u16ParsedCount];
        memset(&sParsed, 0, sizeof(sParsed));
        sParsed.u16OptionIndex = static_cast<uint16_t>(iIndex);
        sParsed.u8MaxArgs = sEntry.u8MaxArgs;
        sParsed.u8MinArgs = sEntry.u8MinArgs;
        sEntry.bSeen = 1;
        (sEntry.u8MaxArgs == 0 ? sFlags.iNoArgOptions : sFlags.iArgOptions)++;
        if (iIndex == u16RegisteredCount - 1) {
            sFlags.bLastEntrySeen = true;
        }
        if (IndexIn(kOperationalCommands, pchName) >= 0) {
            if (sFlags.bOperationalSeen) {
                eReturnCode = eRcIncompatibleOptions;
                return 0;
            }
            sFlags.bOperationalSeen = true;
        }
        int iInterface = IndexIn(kInterfaceOptions, pchName);
        if (iInterface >= 0) {
            sFlags.abInterfaceSeen[iInterface] = true;
        }
        u16ParsedCount++;
    }

    int iLanSeen = 0;
    for (const char* pchLan : kLanOptions) {
        iLanSeen += sFlags.abInterfaceSeen[IndexIn(kInterfaceOptions, pchLan)] ? 1 : 0;
    }
    const int iLanCount = static_cast<int>(sizeof(kLanOptions) / sizeof(kLanOptions[0]));
    if (!sFlags.bOperationalSeen) {
        eReturnCode = eRcNoOperationalCommand;
    } else if (sFlags.iNoArgOptions > 1) {
        eReturnCode = eRcIncompatibleOptions;
    } else if (sFlags.iNoArgOptions == 1 && !sFlags.bLastEntrySeen && sFlags.iArgOptions > 0) {
        eReturnCode = eRcIncompatibleOptions;
    } else if (sFlags.abInterfaceSeen[IndexIn(kInterfaceOptions, "msgintf")] &&
               sFlags.abInterfaceSeen[IndexIn(kInterfaceOptions, "n")]) {
        eReturnCode = eRcIncompatibleOptions;
    } else if (iLanSeen > 0 && iLanSeen < iLanCount) {
        eReturnCode = eRcInvalidLanOptions;
    } else {
        for (uint16_t i = 0; i < u16ParsedCount; i++) {
            if (asParsed[i].u8ArgCount > asParsed[i].u8MaxArgs || asParsed[i].u8ArgCount < asParsed[i].u8MinArgs) {
                eReturnCode = eRcIncorrectFormat;
                break;
            }
        }
    }
    return (eReturnCode == eRcSuccess) ? 1 : 0;
}

int TCommandLineExecution::RefuseCommandLine(eReturnCodeTag eCode)
{
    u16ParsedCount = 0;
    eReturnCode = eCode;
    return 0;
}

eReturnCodeTag TCommandLineExecution::RunParsedOption(const sParsedOption& sParsed)
{
    sExecutedOption& sLog = asExecuted[u16ExecutedCount];
    sLog.u16OptionIndex = sParsed.u16OptionIndex;
    // The handler may change its argument strings in place, not the slots themselves.
    char** ppchArgs = const_cast<char**>(sParsed.apchArgs);
    sLog.eResult = psRegistered[sParsed.u16OptionIndex].pfnHandler(sParsed.u8ArgCount, ppchArgs);
    u16ExecutedCount++;
    return sLog.eResult;
}

eReturnCodeTag TCommandLineExecution::Trigger()
{
    // Pass 1: no-argument options; pass 2: route options; pass 3: the operation.
    for (int iPass = 1; iPass <= 3; iPass++) {
        for (uint16_t i = 0; i < u16ParsedCount; i++) {
            const sParsedOption& sParsed = asParsed[i];
            bool bInterface = IndexIn(kInterfaceOptions, psRegistered[sParsed.u16OptionIndex].achName) >= 0;
            int iPassOfOption = (sParsed.u8MaxArgs == 0) ? 1 : (bInterface ? 2 : 3);
            if (iPassOfOption != iPass || u16ExecutedCount >= MAX_PARSED_OPTIONS) {
                continue;
            }
            eReturnCodeTag eResult = RunParsedOption(sParsed);
            if (eResult != eRcSuccess) {
                return eResult;
            }
        }
    }
    return eRcSuccess;
}

eReturnCodeTag TCommandLineExecution::Trigger(uint16_t u16OptionNumber)
{
    if (u16OptionNumber == 0 || u16OptionNumber > u16RegisteredCount) {
        return eRcIncompatibleOptions;
    }
    for (uint16_t i = 0; i < u16ParsedCount; i++) {
        if (asParsed[i].u16OptionIndex == u16OptionNumber - 1 && u16ExecutedCount < MAX_PARSED_OPTIONS) {
            return RunParsedOption(asParsed[i]);
        }
    }
    return eRcIncompatibleOptions;
}

void TCommandLineExecution::ShowOptionReturnCodeString(FILE* pStream) const
{
    static const char* const kTexts[] = {
        "<ERROR> Unrecognized error code!! \n",
        "<ERROR> No command option specified. \n",
        "<ERROR> Incompatible options are specified. \n",
        "<ERROR> Duplicate command option. \n",
        "<ERROR> Register Function is failed. \n",
        "<ERROR> Incorrect command format. \n",
        "<ERROR> Unrecognized command option. \n",
        "<ERROR> Invalid LAN+ interface options. \n",
        "<ERROR> No operational command specified. (-d/-u/-v/-t/-h/-version/-updateFRU) \n",
    };
    int iCode = static_cast<int>(eReturnCode);
    fputs(kTexts[(iCode >= 1 && iCode <= 8) ? iCode : 0], pStream);
    fputs("Invalid operations. \n", pStream);
}
