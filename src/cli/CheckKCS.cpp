// The kcs option: reports whether a local route to the BMC can be opened.
#include <cstdio>

#include "OptionHandlers.h"
#include "channel/CommandChannel.h"

eReturnCodeTag CheckKCS(uint16_t u16ArgCount, char** ppchArgs)
{
    if (u16ArgCount != 0 || ppchArgs != nullptr) {
        return eRcHandlerFailed;
    }
    if (InitializeKCS() != 1) {
        return eRcHandlerFailed;
    }
    fputs("\n\nKCS is available\n\n", stdout);
    return eRcSuccess;
}
