// Every option handler that main registers. Each takes the number of its arguments
// and its argument slots, and returns 0 for success or 1 for failure.
#ifndef TAVRIN_CLI_OPTIONHANDLERS_H
#define TAVRIN_CLI_OPTIONHANDLERS_H

#include "CmdLnExe.h"

// The executable's name as the help and error texts show it (the program file is tavrin).
#define TAVRIN "TAVRIN"

eReturnCodeTag ShowHelp(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag ShowVersion(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag VerboseMode(uint16_t u16ArgCount, char** ppchArgs);

eReturnCodeTag Download(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag Upload(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag Verify(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag Test(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag UpdateFRU(uint16_t u16ArgCount, char** ppchArgs);

eReturnCodeTag CheckKCS(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag SetMessagingInterface(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag SaveLanIF(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag SaveHostIP(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag SaveUserName(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag SavePassWord(uint16_t u16ArgCount, char** ppchArgs);
eReturnCodeTag SaveCipherValue(uint16_t u16ArgCount, char** ppchArgs);

void ShowProductHeader();

#endif
