#include "ProgramState.h"

#include <cstdio>
#include <cstdlib>

#if defined(__linux__)
#include <sys/mman.h>
#endif

#include "common/DebugOutput.h"
#include "fru/FRUImage.h"
#include "sdr/SDREntry.h"

namespace {

// Each list is about 7 MB and every holder is touched to mark it empty. On Linux the
// list lies in transparent huge pages where the kernel offers them, which makes that
// first touch several times faster than with 4 KB pages.
SDREntry* AllocateList()
{
    const size_t uSize = sizeof(SDREntry) * SDR_RECORD_LIMIT;
#if defined(__linux__)
    const size_t uHugePage = 2u << 20;
    const size_t uRounded = (uSize + uHugePage - 1) & ~(uHugePage - 1);
    void* pvList = aligned_alloc(uHugePage, uRounded);
    if (pvList != nullptr) {
        madvise(pvList, uRounded, MADV_HUGEPAGE);
    }
    return static_cast<SDREntry*>(pvList);
#else
    return static_cast<SDREntry*>(malloc(uSize));
#endif
}

SDREntry* AllocateEmptyList()
{
    SDREntry* psList = AllocateList();
    if (psList != nullptr) {
        for (uint32_t i = 0; i < SDR_RECORD_LIMIT; i++) {
            psList[i].u16RecordID = SDR_EMPTY_RECORD_ID;
        }
    }
    return psList;
}

template <typename T>
void Release(T*& pBuffer)
{
    if (pBuffer != nullptr) {
        free(pBuffer);
        pBuffer = nullptr;
    }
}

}  // namespace

int TavrinInit()
{
    G_psLocalSDREntryList = AllocateEmptyList();
    if (G_psLocalSDREntryList == nullptr) {
        fputs("Add Memory allocation error!\n", stderr);
        return 0;
    }
    G_psRepositorySDREntryList = AllocateEmptyList();
    if (G_psRepositorySDREntryList == nullptr) {
        fputs("Get Memory allocation error!\n", stderr);
        return 0;
    }
    G_u16ReadSizeFromFRUInventory = 0;
    G_u16RawDataSizeFromFRUFile = 0;
    G_pu8LocalFRUDataBuffer = nullptr;
    G_pu8InventoryFRUDataBuffer = nullptr;
    return 1;
}

void TavrinExit()
{
    Release(G_psLocalSDREntryList);
    Release(G_psRepositorySDREntryList);
    Release(G_pu8LocalFRUDataBuffer);
    Release(G_pu8InventoryFRUDataBuffer);
    DebugMessage("memory space deallocation successful\n");
}
