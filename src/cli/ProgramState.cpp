#include "ProgramState.h"

#include <cstdio>
#include <cstdlib>

#include "common/DebugOutput.h"
#include "fru/FRUImage.h"
#include "sdr/SDREntry.h"

namespace {

SDREntry* AllocateEmptyList()
{
    SDREntry* psList = static_cast<SDREntry*>(calloc(SDR_RECORD_LIMIT, sizeof(SDREntry)));
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
