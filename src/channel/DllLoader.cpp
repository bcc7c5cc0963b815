// Run-time loading of the route libraries through the dynamic loader.
#include "channel/TBMC_OSA.h"

#include <dlfcn.h>

void* OpenDllFile(const char* pchLibraryName)
{
    if (pchLibraryName == nullptr) {
        return nullptr;
    }
    // A bare name: the loader's search path (LD_LIBRARY_PATH, then the program's
    // run path) decides which build of the library is used.
    return dlopen(pchLibraryName, RTLD_NOW);
}

void* GetDllFunction(void* hLibrary, const char* pchSymbol)
{
    if (hLibrary == nullptr || pchSymbol == nullptr) {
        return nullptr;
    }
    return dlsym(hLibrary, pchSymbol);
}

bool CloseDllFile(void* hLibrary)
{
    if (hLibrary == nullptr) {
        return false;
    }
    return dlclose(hLibrary) == 0;
}
