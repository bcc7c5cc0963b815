// The command line of the ipmitool look-alike, taken apart as ipmitool's option parser
// does: options (a value either joined or in the next argument), then the command.
#ifndef TAVRIN_BMCSIM_IPMITOOLARGS_H
#define TAVRIN_BMCSIM_IPMITOOLARGS_H

#include <cstdint>

enum {
    IPMITOOL_ARG_TEXT_MAX = 256,
    IPMITOOL_RAW_DATA_MAX = 255,
};

struct sIpmitoolCall {
    bool bVersion;  // -V: print the version and stop
    int iCipherSuite;  // -C, or -1
    char achInterface[IPMITOOL_ARG_TEXT_MAX];
    char achUser[IPMITOOL_ARG_TEXT_MAX];
    char achPassword[IPMITOOL_ARG_TEXT_MAX];
    char achHost[IPMITOOL_ARG_TEXT_MAX];
    bool bHostGiven;
    uint8_t u8NetFn;
    uint8_t u8Command;
    uint8_t au8Data[IPMITOOL_RAW_DATA_MAX];
    uint16_t u16DataLength;
};

// 1 when the line is usable (or asks for -V); 0 after printing ipmitool's complaint
// to standard error.
int ParseIpmitoolArgs(int iArgc, char** ppchArgv, sIpmitoolCall* psCall);

#endif
