#include "FileEncoding.h"

#include <cstdio>

int GetFileEncoding(const char* pchPath, eFileEncoding* peEncoding)
{
    if (pchPath == nullptr || peEncoding == nullptr) {
        fputs("<ERROR> Internal Error!", stderr);
        return 0;
    }
    FILE* pFile = fopen(pchPath, "rb");
    if (pFile == nullptr) {
        fprintf(stderr, "<ERROR> Failure to open file, %s.\n", pchPath);
        return 0;
    }
    unsigned char au8Mark[3] = {0, 0, 0};
    size_t uRead = fread(au8Mark, 1, sizeof(au8Mark), pFile);
    fclose(pFile);
    if (uRead < sizeof(au8Mark)) {
        fprintf(stderr, "<ERROR> Error reading file, %s.\n", pchPath);
        return 0;
    }
    if (au8Mark[0] == 0xEF && au8Mark[1] == 0xBB && au8Mark[2] == 0xBF) {
        *peEncoding = eEncodingUTF8;
    } else if (au8Mark[0] == 0xFF && au8Mark[1] == 0xFE) {
        *peEncoding = eEncodingUTF16;
    } else {
        *peEncoding = eEncodingASCII;
    }
    return 1;
}
