// Checks of the machine that the interface options make before the route is chosen.
#ifndef TAVRIN_CLI_MACHINECHECKS_H
#define TAVRIN_CLI_MACHINECHECKS_H

enum {
    MODULES_NONE_LOADED = 0,
    MODULES_LISTING_FAILED = 1,
    MODULES_IPMI_LOADED = 19,
    CONFIG_INTERFACE_MISMATCH = 20,
};

// MODULES_IPMI_LOADED if an IPMI system-interface driver is loaded,
// MODULES_LISTING_FAILED if the listing failed, else MODULES_NONE_LOADED.
int CheckForLoadedIPMIModules();

// The same, on the listing that the given shell command prints (tests use this).
int CheckForLoadedIPMIModulesIn(const char* pchListingCommand);

// CONFIG_INTERFACE_MISMATCH if the first token of intf.ini's first line isn't the
// expected system interface name, else 0. A missing or empty intf.ini is no mismatch.
int CheckSystemInterfaceInConfigFile(const char* pchExpected);

// 1 if "ipmitool -V" runs and exits with status 0.
int CheckIpmitoolInstalled();

#endif
