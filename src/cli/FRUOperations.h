// The FRU kind of the file operations: what -t, -v, -d and -u do with a fruID= parameter.
#ifndef TAVRIN_CLI_FRUOPERATIONS_H
#define TAVRIN_CLI_FRUOPERATIONS_H

#include <cstdint>

#include "text/FileEncoding.h"

// Each returns 1 for success and 0 after its messages.
int TestFRUFile(const char* pchFileName);
int VerifyFRUFile(const char* pchFileName, uint16_t u16FruID);
int DownloadFRUFile(const char* pchFileName, uint16_t u16FruID);
// The device's image saved in a FRU text file, written only once the whole image has
// been read and found fit to be saved.
int UploadFRUFile(const char* pchFileName, eFileEncoding eEncoding, uint16_t u16FruID);

#endif
