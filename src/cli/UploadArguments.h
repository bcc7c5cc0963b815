// The arguments of -u: a file name, encoding= right behind it, and an optional fruID=;
// and the test before the file is written.
#ifndef TAVRIN_CLI_UPLOADARGUMENTS_H
#define TAVRIN_CLI_UPLOADARGUMENTS_H

#include <cstdint>

#include "text/FileEncoding.h"

// IsFileExist results.
enum { FILE_CREATED = 0, FILE_EXISTS = 2, FILE_ERROR = 3 };

// One or two arguments select SDR data (*pbIsSDRFile becomes 1), three FRU data (left as
// the caller set it, 0). Returns 1 for good, 0 for bad with its message given.
int ValidateAnalyzeUploadParameters(uint16_t u16ArgCount, char** ppchArgs, int* pbIsSDRFile, char* pchFileName,
                                    eFileEncoding* peEncoding, uint16_t* pu16FruID);

// Reads one group of arguments at *pu16Index (file name, encoding, optional fruID=) and
// moves the index behind it. Returns 1 or 0.
int CheckUploadArgument(char** ppchArgs, uint16_t* pu16Index, char* pchFileName, eFileEncoding* peEncoding,
                        uint16_t* pu16FruID);

// Creates the file exclusively, readable and writable by its owner only (mode 0600):
// FILE_CREATED, and the empty new file stays. FILE_EXISTS if a regular file (or a link
// to one) of that name is there; FILE_ERROR for any other failure, and for a name that
// belongs to a directory, a FIFO, a device or a broken link, which no upload replaces.
int IsFileExist(const char* pchPath);

#endif
