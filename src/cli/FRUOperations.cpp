#include "FRUOperations.h"

#include <cstdio>

#include "fru/FRUFile.h"
#include "fru/FRUTextWriter.h"
#include "repository/FRUTransfer.h"

int TestFRUFile(const char* pchFileName)
{
    if (ReadFRUFile(pchFileName) != 1) {
        fprintf(stderr, "Error found in FRU file %s. \n", pchFileName);
        return 0;
    }
    fprintf(stdout, "No error found in FRU file %s! \n \n", pchFileName);
    return 1;
}

int VerifyFRUFile(const char* pchFileName, uint16_t u16FruID)
{
    if (ReadFRUFile(pchFileName) != 1 || DoFRUGetFromBMC(u16FruID) != 1) {
        fputs("Verify FRU file failed!\n", stderr);
        return 0;
    }
    if (FRUCompare() != 1) {
        fputs("The FRU data in file and FRU inventory are different!\n", stderr);
        fputs("Verify FRU file failed!\n", stderr);
        return 0;
    }
    fprintf(stdout, "Verify FRU file %s with FRU inventory successful! \n\n", pchFileName);
    return 1;
}

int DownloadFRUFile(const char* pchFileName, uint16_t u16FruID)
{
    if (ReadFRUFile(pchFileName) != 1 || DoFRUAddToBMC(u16FruID) != 1) {
        fputs("Failure to download FRU data! \n\n", stderr);
        return 0;
    }
    fputs("Download FRU data successful. \n\n", stdout);
    return 1;
}

int UploadFRUFile(const char* pchFileName, eFileEncoding eEncoding, uint16_t u16FruID)
{
    if (DoFRUGetFromBMC(u16FruID) != 1) {
        fputs("Failure to upload FRU data!\n", stderr);
        return 0;
    }
    fprintf(stdout, "Start to save FRU file, %s \n", pchFileName);
    if (!SaveFRUFile(pchFileName, eEncoding)) {
        fputs("Failure to upload FRU data!\n", stderr);
        return 0;
    }
    fputs("Upload FRU data successful. \n\n", stdout);
    return 1;
}
