// Options whose work this version does not carry out yet: each refuses clearly and
// fails, so that no script mistakes it for success.
#include <cstdio>

#include "OptionHandlers.h"

namespace {

eReturnCodeTag RefuseOption(const char* pchOption)
{
    fprintf(stderr, "<ERROR> %s is not available in this version of " TAVRIN ". \n", pchOption);
    return eRcHandlerFailed;
}

}  // namespace

eReturnCodeTag UpdateFRU(uint16_t, char**) { return RefuseOption("-updateFRU"); }
