// Verbose-mode output: the only way any part of Tavrin writes debug text.
#ifndef TAVRIN_COMMON_DEBUGOUTPUT_H
#define TAVRIN_COMMON_DEBUGOUTPUT_H

#include <cstdint>

// 1 while -debugmsg is in force; written only by the -debugmsg handler (and tests).
extern int G_bVerboseMode;

// printf-style text to standard output, flushed, in verbose mode only.
void DebugMessage(const char* pchFormat, ...) __attribute__((format(printf, 1, 2)));

// Bytes as "%02X " and one line feed, in verbose mode only.
void DebugPrintArray(const uint8_t* pu8Data, uint16_t u16Length);

#endif
