// The two program-wide record lists; TavrinInit allocates them, TavrinExit frees them.
#include "SDREntry.h"

SDREntry* G_psLocalSDREntryList = nullptr;
SDREntry* G_psRepositorySDREntryList = nullptr;
