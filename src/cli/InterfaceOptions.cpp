// -msgintf chooses a local route; -n, -H, -U, -P and -C together choose the LAN and
// give its parameters. Each handler judges only its own value.
#include "InterfaceOptions.h"

#include <cstdio>
#include <cstring>

#include "MachineChecks.h"
#include "OptionHandlers.h"
#include "common/DebugOutput.h"
#include "common/TextHelpers.h"

namespace {

const char kUseHelp[] = "Use " TAVRIN " -h for help.\n";

void WriteClosingLines(FILE* pStream)
{
    fputs("Invalid operations. \n", pStream);
    fputs(kUseHelp, pStream);
}

eReturnCodeTag RefuseValue(const char* pchRefusal)
{
    fputs(pchRefusal, stderr);
    WriteClosingLines(stderr);
    return eRcHandlerFailed;
}

// The first step of the LAN handlers: a null argument list fails silently, a missing
// value with the handler's own message.
bool HasValue(uint16_t u16ArgCount, char** ppchArgs, const char* pchMissing)
{
    if (ppchArgs == nullptr) {
        return false;
    }
    if (u16ArgCount == 0) {
        fputs(pchMissing, stderr);
        return false;
    }
    return true;
}

// The steps that -H, -U and -P share: a value shorter than its field is stored.
eReturnCodeTag SaveTextValue(uint16_t u16ArgCount, char** ppchArgs, char* pchField, size_t uFieldSize,
                             const char* pchMissing, const char* pchRefusal, const char* pchConfirm,
                             int (*pfnValid)(const char*), const char* pchInvalid)
{
    if (!HasValue(u16ArgCount, ppchArgs, pchMissing)) {
        return eRcHandlerFailed;
    }
    const char* pchValue = ppchArgs[0];
    if (strlen(pchValue) >= uFieldSize) {
        return RefuseValue(pchRefusal);
    }
    if (pfnValid != nullptr && !pfnValid(pchValue)) {
        return RefuseValue(pchInvalid);
    }
    memset(pchField, 0, uFieldSize);
    memcpy(pchField, pchValue, strlen(pchValue));
    DebugMessage(pchConfirm, pchValue);
    return eRcSuccess;
}

}  // namespace

int CheckMsgIntfArgument(char** ppchArgs, uint16_t* pu16Index, eInterface* peInterface)
{
    // The three lines of a refused -msgintf value all go to standard output.
    char achToken[32] = {0};
    int iToken = GetNextToken(ppchArgs[*pu16Index], achToken, sizeof(achToken));
    if (iToken == TOKEN_NONE) {
        fputs("<ERROR> Unknown property value for -msgintf. \n", stdout);
        WriteClosingLines(stdout);
        return 0;
    }
    // A token too long for the buffer can't be a known value either.
    const char* pchValue = (iToken == TOKEN_FOUND) ? GetLowerCaseString(achToken) : "";
    if (strcmp(pchValue, "kcsio") == 0) {
        if (CheckSystemInterfaceInConfigFile("KCS") == CONFIG_INTERFACE_MISMATCH) {
            fputs("<ERROR> The system interface specified in intf.ini is not allowed!\n", stderr);
            return 0;
        }
        if (CheckForLoadedIPMIModules() == MODULES_IPMI_LOADED) {
            fputs("<ERROR> -msgintf kcsio cannot be used with IPMI modules loaded.\n", stdout);
            WriteClosingLines(stdout);
            return 0;
        }
        *peInterface = eIntfKCSIO;
    } else if (strcmp(pchValue, "openipmi") == 0) {
        *peInterface = eIntfOpenIPMI;
    } else {
        fputs("<ERROR> Unrecognized property value for -msgintf. \n", stdout);
        WriteClosingLines(stdout);
        return 0;
    }
    *pu16Index = static_cast<uint16_t>(*pu16Index + 2);
    return 1;
}

int ValidateAnalyzeMsgIntfParameters(uint16_t u16ArgCount, char** ppchArgs, eInterface* peInterface)
{
    if (u16ArgCount == 0) {
        fputs("<ERROR> Please specify the messaging interface! \n \n", stderr);
        return 0;
    }
    int iResult = 1;
    for (uint16_t u16Index = 0; u16Index < u16ArgCount && iResult == 1;) {
        iResult = CheckMsgIntfArgument(ppchArgs, &u16Index, peInterface);
    }
    return iResult;
}

eReturnCodeTag SetMessagingInterface(uint16_t u16ArgCount, char** ppchArgs)
{
    eInterfaceInUse = eIntfOpenIPMI;
    if (!ValidateAnalyzeMsgIntfParameters(u16ArgCount, ppchArgs, &eInterfaceInUse)) {
        return eRcHandlerFailed;
    }
    DebugMessage("\nMessaging interface in use: %s\n", ppchArgs[0]);
    return eRcSuccess;
}

eReturnCodeTag SaveLanIF(uint16_t u16ArgCount, char** ppchArgs)
{
    if (!HasValue(u16ArgCount, ppchArgs, "<ERROR> Please specify the LAN+ interface! \n \n")) {
        return eRcHandlerFailed;
    }
    const char* pchValue = ppchArgs[0];
    if (strlen(pchValue) >= sizeof(sIolData.achLanIF) || strcmp(GetLowerCaseString(pchValue), "lanplus") != 0) {
        return RefuseValue("<ERROR> Unrecognized property value for -n. \n");
    }
    eInterfaceInUse = eIntfLANPlus;
    memset(sIolData.achLanIF, 0, sizeof(sIolData.achLanIF));
    memcpy(sIolData.achLanIF, pchValue, strlen(pchValue));
    if (!CheckIpmitoolInstalled()) {
        DebugMessage("ipmitool command not found\n");
        fputs("\n   Cannot find ipmitool command, please check if it is installed\n", stderr);
        return eRcHandlerFailed;
    }
    DebugMessage("     ipmitool is installed\n");
    DebugMessage("\nMessaging interface in use: %s\n", pchValue);
    return eRcSuccess;
}

eReturnCodeTag SaveHostIP(uint16_t u16ArgCount, char** ppchArgs)
{
    return SaveTextValue(u16ArgCount, ppchArgs, sIolData.achHostIP, sizeof(sIolData.achHostIP),
                         "<ERROR> Please specify the IP address! \n \n",
                         "<ERROR> Unrecognized property value for -H. \n", "\nBMC IP address: %s\n",
                         IsValidHostIPFormat, "<ERROR> Invalid IP address for -H. \n");
}

eReturnCodeTag SaveUserName(uint16_t u16ArgCount, char** ppchArgs)
{
    return SaveTextValue(u16ArgCount, ppchArgs, sIolData.achUserName, sizeof(sIolData.achUserName),
                         "<ERROR> Please specify the user name! \n \n",
                         "<ERROR> Unrecognized property value for -U. \n", "\nBMC User Name: %s\n", nullptr, nullptr);
}

eReturnCodeTag SavePassWord(uint16_t u16ArgCount, char** ppchArgs)
{
    return SaveTextValue(u16ArgCount, ppchArgs, sIolData.achPassWord, sizeof(sIolData.achPassWord),
                         "<ERROR> Please specify the pasword! \n \n",
                         "<ERROR> Unrecognized property value for -P. \n", "\nBMC User Password: %s\n", nullptr,
                         nullptr);
}

eReturnCodeTag SaveCipherValue(uint16_t u16ArgCount, char** ppchArgs)
{
    if (!HasValue(u16ArgCount, ppchArgs, "<ERROR> Please specify the cipher suite ID! \n \n")) {
        return eRcHandlerFailed;
    }
    if (!IsValidCipherSuite(ppchArgs[0])) {
        return RefuseValue("<ERROR> Invalid property value for -C. \n");
    }
    int32_t i32Cipher = 0;
    StringToInteger(ppchArgs[0], &i32Cipher);
    sIolData.u16CipherSuiteID = static_cast<uint16_t>(i32Cipher);
    DebugMessage("\nCipher Suite ID: %d\n", i32Cipher);
    return eRcSuccess;
}
