// Value checks of the interface options.
#ifndef TAVRIN_CLI_INTERFACEOPTIONS_H
#define TAVRIN_CLI_INTERFACEOPTIONS_H

#include <cstdint>

#include "channel/CommandChannel.h"

int ValidateAnalyzeMsgIntfParameters(uint16_t u16ArgCount, char** ppchArgs, eInterface* peInterface);
int CheckMsgIntfArgument(char** ppchArgs, uint16_t* pu16Index, eInterface* peInterface);

int IsValidHostIPFormat(const char* pchText);
int IsValidIPv4Format(const char* pchText);
int IsValidCipherSuite(const char* pchText);
// Decimal, or hexadecimal with 0x/0X; no sign. The number is written only on success.
int StringToInteger(const char* pchText, int32_t* pi32Value);
int GetCharCount(const char* pchText, char chWanted);

#endif
