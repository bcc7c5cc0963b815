// The arguments that -d, -v and -t share: a file name and an optional fruID=.
#ifndef TAVRIN_CLI_ARGUMENTCHECK_H
#define TAVRIN_CLI_ARGUMENTCHECK_H

#include <cstdint>

enum {
    FILE_NAME_SIZE = 256,  // 255 characters at most
    PARAMETER_SIZE = 32,   // 31 characters at most
    FRU_ID_RESERVED = 0xFF,
};

// One argument selects SDR data (*pbIsSDRFile becomes 1), two select FRU data (left
// as the caller set it, 0). Returns 1 for good, 0 for bad with its message given.
int ValidateAnalyzeParameters(uint16_t u16ArgCount, char** ppchArgs, int* pbIsSDRFile, char* pchFileName,
                              uint16_t* pu16FruID);

// Reads one group of arguments at *pu16Index and moves the index behind it.
// *pbFruIDGiven becomes 1 when a fruID= parameter was read.
int CheckArgument(char** ppchArgs, uint16_t* pu16Index, char* pchFileName, uint16_t* pu16FruID,
                  int* pbFruIDGiven);

// A fruID= parameter (pchParameter is changed in place) into *pu16FruID: 1, or 0 with
// its message, which names pchOptions ("-d/-v/-t" or "-u") for a parameter of another name.
int CheckFruIDParameter(char* pchParameter, const char* pchOptions, uint16_t* pu16FruID);

// 0 if the path names a regular file that can be opened for reading, else 1.
int IsFileExistReadOnly(const char* pchPath);

#endif
