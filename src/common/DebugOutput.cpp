#include "DebugOutput.h"

#include <cstdarg>
#include <cstdio>

int G_bVerboseMode = 0;

void DebugMessage(const char* pchFormat, ...)
{
    if (pchFormat == nullptr || G_bVerboseMode != 1) {
        return;
    }
    va_list args;
    va_start(args, pchFormat);
    vfprintf(stdout, pchFormat, args);
    va_end(args);
    fflush(stdout);
}

void DebugPrintArray(const uint8_t* pu8Data, uint16_t u16Length)
{
    if (G_bVerboseMode != 1) {
        return;
    }
    if (u16Length == 0) {
        fputs("None\n", stdout);
    } else if (pu8Data == nullptr) {
        fputs("An error occurs in displaying a hex data array.\n", stdout);
    } else {
        for (uint16_t i = 0; i < u16Length; i++) {
            fprintf(stdout, "%02X ", pu8Data[i]);
        }
        fputc('\n', stdout);
    }
    fflush(stdout);
}
