// The FRU kind of the file operations: what -t, -v and -d do with a fruID= parameter.
#ifndef TAVRIN_CLI_FRUOPERATIONS_H
#define TAVRIN_CLI_FRUOPERATIONS_H

#include <cstdint>

// Each returns 1 for success and 0 after its messages.
int TestFRUFile(const char* pchFileName);
int VerifyFRUFile(const char* pchFileName, uint16_t u16FruID);
int DownloadFRUFile(const char* pchFileName, uint16_t u16FruID);

#endif
