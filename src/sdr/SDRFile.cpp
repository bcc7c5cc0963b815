#include "SDRFile.h"

#include <cstdio>

#include "SDRBinFile.h"
#include "text/FileEncoding.h"

namespace {

// Files that match no binary format are SDR text files; this build reads binary ones only.
int ReadSDRTextFile(FILE* /*pFile*/, const char* pchPath, eFileEncoding /*eEncoding*/, uint16_t* /*pu16Count*/)
{
    fprintf(stderr, "<ERROR> %s is not a binary SDR file, and SDR text files cannot be read yet. \n", pchPath);
    return 0;
}

}  // namespace

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
    int iResult = ReadSDRTextFile(pFile, pchPath, eEncoding, pu16RecordCount);
    fclose(pFile);
    return iResult;
}
