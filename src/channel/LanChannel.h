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
};

// One exchange over the LAN. 1 for success, 0 for failure.
int DoIPMILanCommand(uint8_t u8NetFnLun, uint8_t u8Command, IPMIMessage* psMessage);

// The steps of an attempt, each on text only, so they can be checked without ipmitool.

// Writes the command line for sIolData and the request into pchLine (uSize bytes);
// pchHead receives the part before the request bytes, for the trace. 0 if it doesn't fit.
int BuildLanCommandLine(uint8_t u8NetFn, uint8_t u8Command, const IPMIMessage* psMessage, char* pchLine,
                        size_t uSize, char* pchHead, size_t uHeadSize);

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
