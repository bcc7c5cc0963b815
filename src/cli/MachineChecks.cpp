#include "MachineChecks.h"

#include <cstdio>
#include <cstring>

#include "channel/LanChannel.h"
#include "common/DebugOutput.h"

namespace {

// The platform's listing of loaded kernel modules, and how a loaded IPMI
// system-interface driver shows in it.
#if defined(__FreeBSD__)
const char* const kModuleListing = "/sbin/kldstat 2>&1";
const char* const kListingName = "/sbin/kldstat";
const char* const kIPMIModuleMarks[] = {"ipmi."};
#else
// Linux: /proc/modules has one loaded module a line, its name first. ipmi_si is the
// driver that owns the KCS ports; ipmi_ssif and ipmi_devintf reach the same BMC.
const char* const kModuleListing = "cat /proc/modules 2>&1";
const char* const kListingName = "/proc/modules";
const char* const kIPMIModuleMarks[] = {"ipmi_si ", "ipmi_ssif ", "ipmi_devintf "};
#endif

bool LineNamesIPMIModule(const char* pchLine)
{
    for (const char* pchMark : kIPMIModuleMarks) {
        if (strstr(pchLine, pchMark) != nullptr) {
            return true;
        }
    }
    return false;
}

}  // namespace

int CheckForLoadedIPMIModulesIn(const char* pchListingCommand)
{
    DebugMessage("Check for loaded IPMI module(s).\n");
    FILE* pListing = popen(pchListingCommand, "r");
    if (pListing == nullptr) {
        DebugMessage("%s failed\n", kListingName);
        return MODULES_LISTING_FAILED;
    }
    int iResult = MODULES_NONE_LOADED;
    char achLine[258];
    while (fgets(achLine, sizeof(achLine), pListing) != nullptr) {
        // The shell's complaint about the listing command names the command itself.
        if (strstr(achLine, kListingName) != nullptr) {
            DebugMessage("%s failed\n", kListingName);
            iResult = MODULES_LISTING_FAILED;
            break;
        }
        if (LineNamesIPMIModule(achLine)) {
            DebugMessage("IPMI module(s) found!\n");
            iResult = MODULES_IPMI_LOADED;
            break;
        }
    }
    pclose(pListing);
    return iResult;
}

int CheckForLoadedIPMIModules()
{
    return CheckForLoadedIPMIModulesIn(kModuleListing);
}

int CheckSystemInterfaceInConfigFile(const char* pchExpected)
{
    FILE* pFile = fopen("intf.ini", "r");
    if (pFile == nullptr) {
        return 0;
    }
    char achLine[64] = {0};
    char* pchRead = fgets(achLine, sizeof(achLine), pFile);
    fclose(pFile);
    if (pchRead == nullptr) {
        return 0;
    }
    char* pchPosition = nullptr;
    const char* pchToken = strtok_r(achLine, " _\r\n", &pchPosition);
    // A first line without any name can't name the expected interface either.
    if (pchToken == nullptr || strcmp(pchToken, pchExpected) != 0) {
        DebugMessage("System Interface in intf.ini is %s, should be %s!\n", pchToken ? pchToken : "(none)",
                     pchExpected);
        return CONFIG_INTERFACE_MISMATCH;
    }
    return 0;
}

int CheckIpmitoolInstalled()
{
    // Run as every exchange runs it, without a shell; what it prints is not looked at.
    char achVersion[] = "-V";
    char achName[] = "ipmitool";
    char* apchArgv[] = {achName, achVersion, nullptr};
    char achOutput[LAN_OUTPUT_LIMIT + 1];
    size_t uRead = 0;
    return RunLanProcess(apchArgv, achOutput, LAN_OUTPUT_LIMIT, &uRead) == eLanRunSucceeded ? 1 : 0;
}
