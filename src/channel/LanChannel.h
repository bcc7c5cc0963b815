// The LAN route: every IPMI request is one run of the external ipmitool in raw mode.
#ifndef TAVRIN_CHANNEL_LANCHANNEL_H
#define TAVRIN_CHANNEL_LANCHANNEL_H

#include <cstddef>
#include <cstdint>

#include "CommandChannel.h"

enum {
    LAN_ATTEMPTS = 6,           // the first and at most 5 retries
    LAN_OUTPUT_LIMIT = 256,     // bytes of ipmitool's output that are read
    LAN_START_RETRY_WAIT_US = 200000,
    LAN_NUMBER_SIZE = 8,        // "0x%02x" or a cipher suite ID, with the terminator
    LAN_ADDRESS_SIZE = 16,      // "255.255.255.255" and the terminator
    LAN_CODE_WORDS = 2 + IPMI_REQUEST_DATA_SIZE,  // NetFn, command, request bytes
    // ipmitool -C n -I if -U user -P password -H host raw, the code words, the null.
    LAN_ARGV_SIZE = 12 + LAN_CODE_WORDS + 1,
};

// One exchange over the LAN. 1 for success, 0 for failure.
int DoIPMILanCommand(uint8_t u8NetFnLun, uint8_t u8Command, IPMIMessage* psMessage);

// The steps of an attempt, each on text only, so they can be checked without ipmitool.

// The argument vector of one run: the words of the command line, each option value one
// word whatever it holds, so no shell ever reads them. The pointers lead into sIolData
// and into the buffers of this record.
struct sLanArgv {
    char achCipher[LAN_NUMBER_SIZE];
    char achHost[LAN_ADDRESS_SIZE];
    char aachCodes[LAN_CODE_WORDS][LAN_NUMBER_SIZE];
    char* apchArgv[LAN_ARGV_SIZE];
};

// Fills psArgv for sIolData and the request. The address goes to ipmitool in its
// canonical form. 0 if the address is no dotted-decimal IPv4 address.
int BuildLanArgv(uint8_t u8NetFn, uint8_t u8Command, const IPMIMessage* psMessage, sLanArgv* psArgv);

// The head of the command line as the trace shows it, the address as typed: the words
// up to the command code, each followed by a blank. 0 if it doesn't fit.
int BuildLanTraceHead(uint8_t u8NetFn, uint8_t u8Command, char* pchHead, size_t uSize);

// Writes the four groups of a dotted-decimal address without leading zeros, so that
// ipmitool, which reads a leading 0 as octal, contacts the address that was checked.
// 0 if the text is not four groups of digits of 255 at most.
int CanonicalIPv4Address(const char* pchTyped, char* pchCanonical, size_t uSize);

enum eLanRun {
    eLanRunSucceeded,   // it ran and exited with status 0
    eLanRunFailed,      // it exited with another status or died by a signal
    eLanRunNotStarted,  // it could not be started (not found, not executable)
};

// Runs the program that ppchArgv names (looked up on the search path) without a shell,
// with its standard error joined to its standard output, and reads at most uLimit bytes
// of that output into pchText, which gets a terminating zero behind them.
eLanRun RunLanProcess(char* const* ppchArgv, char* pchText, size_t uLimit, size_t* puRead);

// 1 if the text holds any of ipmitool's failure markers.
int HasLanFailureMarker(const char* pchText);

// 1 if the text holds a marker of an unsupported cipher suite.
int HasLanCipherMarker(const char* pchText);

// Turns the printed hex bytes into the response. 0 if there are more pieces than the
// response area holds (nothing is written past it).
int ParseLanResponseText(const char* pchText, IPMIMessage* psMessage);

// Copies the first line of the text that is not empty, without its line end.
void GetLanErrorLine(const char* pchText, char* pchLine, size_t uSize);

// Reads the completion code from the four characters in front of the first ")" of
// the error line into the message; unchanged when there is no ")".
void ReadLanCompletionCode(const char* pchErrorLine, IPMIMessage* psMessage);

#endif
