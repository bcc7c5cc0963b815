// The IPMI 2.0 numbers the simulated BMC answers to: network functions and completion
// codes; the command codes are the command channel's own.
#ifndef TAVRIN_BMCSIM_SIMIPMICODES_H
#define TAVRIN_BMCSIM_SIMIPMICODES_H

#include <cstdint>

#include "channel/CommandChannel.h"

enum : uint8_t {
    SIM_NETFN_APP = 0x06,
    SIM_NETFN_STORAGE = 0x0A,
};

// Completion codes (IPMI 2.0, table 5-2, and the command-specific 80h of Partial Add SDR).
enum : uint8_t {
    SIM_CC_OK = 0x00,
    SIM_CC_PARTIAL_ADD_LENGTH_MISMATCH = 0x80,
    SIM_CC_INVALID_COMMAND = 0xC1,
    SIM_CC_OUT_OF_SPACE = 0xC4,
    SIM_CC_INVALID_RESERVATION = 0xC5,
    SIM_CC_REQUEST_LENGTH_INVALID = 0xC7,
    SIM_CC_REQUEST_TOO_LONG = 0xC8,
    SIM_CC_PARAMETER_OUT_OF_RANGE = 0xC9,
    SIM_CC_CANNOT_RETURN_COUNT = 0xCA,
    SIM_CC_NOT_PRESENT = 0xCB,
    SIM_CC_INVALID_DATA_FIELD = 0xCC,
};

// Record IDs with a meaning of their own in Get SDR and Partial Add SDR.
enum : uint16_t {
    SIM_SDR_FIRST_RECORD_ID = 0x0000,
    SIM_SDR_LAST_RECORD_ID = 0xFFFF,
};

#endif
