#include "SDRFile.h"

#include <cstdio>

#include "SDRBinFile.h"
#include "SDRTextFile.h"
#include "text/FileEncoding.h"

int ReadSDRFile(const char* pchPath, uint16_t* pu16RecordCount)
{
    if (pchPath == nullptr || pu16RecordCount == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    eFileEncoding eEncoding = eEncodingASCII;
    if (!GetFileEncoding(pchPath, &eEncoding)) {
        fprintf(stderr, "<ERROR> Failure to get encoding info from file %s.\n", pchPath);
        return 0;
    }
    FILE* pFile = fopen(pchPath, "rb");
    if (pFile == nullptr) {
        fprintf(stderr, "<ERROR> Failure to open SDR file %s. \n", pchPath);
        return 0;
    }
    eSDRFileState eState = ReadSDRBinFile(pchPath, pu16RecordCount);
    if (eState == eSdrBinaryDone || eState == eSdrBinaryError) {
        fclose(pFile);
        return (eState == eSdrBinaryDone) ? 1 : 0;
    }
    // No binary format matched: a text file, read from the open stream, which the text
    // reader closes.
    return ReadSDRTextFile(pFile, pchPath, eEncoding, pu16RecordCount);
}
