// Whole FRU transfers: download with its size check, upload, and the comparison.
#include "repository/FRUTransfer.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "fru/FRUImage.h"
#include "repository/FRUCommands.h"
#include "repository/RepositoryOutput.h"

namespace {

constexpr uint32_t FRU_READ_SIZE_LIMIT = 0xFFFF;  // what G_u16ReadSizeFromFRUInventory can hold

// How far the device was read when the last block started at u32Offset; a device of
// 65535 bytes is read up to its end, which the 16-bit size just holds.
uint16_t ReadSizeAt(uint32_t u32Offset)
{
    const uint32_t u32End = u32Offset + FRU_BLOCK_SIZE;
    return static_cast<uint16_t>(u32End < FRU_READ_SIZE_LIMIT ? u32End : FRU_READ_SIZE_LIMIT);
}

}  // namespace

eState DownloadFRUHandler(uint8_t u8FruID)
{
    if (G_u16FRUInventoryAreaSize < G_u16RawDataSizeFromFRUFile) {
        RepositoryWriteLine(stderr, "FRU file size too big, can not download. ");
        return eStateFailed;
    }
    if (G_pu8LocalFRUDataBuffer == nullptr && G_u16RawDataSizeFromFRUFile != 0) {
        RepositoryReportInternalError();
        return eStateFailed;
    }
    eState eResult = eStateFRUInfoOK;
    const uint32_t u32Size = G_u16RawDataSizeFromFRUFile;
    for (uint32_t u32Offset = 0; u32Offset < u32Size;) {
        const uint32_t u32Block =
            (u32Offset + FRU_BLOCK_SIZE >= u32Size) ? u32Size - u32Offset : uint32_t{FRU_BLOCK_SIZE};
        eResult = WriteFRUDataCommand(u8FruID, static_cast<uint16_t>(u32Offset), static_cast<uint8_t>(u32Block),
                                      G_pu8LocalFRUDataBuffer);
        if (eResult == eStateFailed) {
            break;
        }
        u32Offset += u32Block;
    }
    return eResult == eStateFRUWriteOK ? eStateFRUDownloadDone : eResult;
}

eState UploadFRUHandler(uint8_t u8FruID, uint16_t* pu16ReadSize)
{
    if (pu16ReadSize == nullptr) {
        RepositoryReportInternalError();
        return eStateFailed;
    }
    // Every request asks for a whole block: the last one may run past the end of the
    // area, into the 16 spare bytes of the buffer.
    eState eResult = eStateFailed;
    uint32_t u32Offset = 0;
    while (ReadFRUDataCommand(u8FruID, static_cast<uint16_t>(u32Offset), FRU_BLOCK_SIZE) == eStateFRUReadOK) {
        if (u32Offset + FRU_BLOCK_SIZE >= G_u16FRUInventoryAreaSize) {
            eResult = eStateFRUUploadDone;
            break;
        }
        u32Offset += FRU_BLOCK_SIZE;
    }
    *pu16ReadSize = ReadSizeAt(u32Offset);
    return eResult;
}

int DoFRUAddToBMC(uint16_t u16FruID)
{
    const uint8_t u8FruID = static_cast<uint8_t>(u16FruID & 0xFF);
    if (GetFRUInventoryAreaInfoCommand(u8FruID) == eStateFailed) {
        return 0;
    }
    RepositoryWriteLine(stdout, "Start to download FRU data! ");
    return DownloadFRUHandler(u8FruID) == eStateFRUDownloadDone ? 1 : 0;
}

int DoFRUGetFromBMC(uint16_t u16FruID)
{
    const uint8_t u8FruID = static_cast<uint8_t>(u16FruID & 0xFF);
    if (GetFRUInventoryAreaInfoCommand(u8FruID) == eStateFailed) {
        RepositoryWriteLine(stderr, "Failure to check the FRU Inventory device.");
        return 0;
    }
    std::free(G_pu8InventoryFRUDataBuffer);
    // Zero-filled, so that the bytes of a block that was refused, and those behind the
    // end of the area, never hold stale memory.
    G_pu8InventoryFRUDataBuffer = static_cast<uint8_t*>(std::calloc(G_u16FRUInventoryAreaSize + FRU_BLOCK_SIZE, 1));
    if (G_pu8InventoryFRUDataBuffer == nullptr) {
        RepositoryWriteLine(stderr, "FRU read Memory allocation error! ");
        return 0;
    }
    uint16_t u16ReadSize = 0;
    UploadFRUHandler(u8FruID, &u16ReadSize);
    G_u16ReadSizeFromFRUInventory = u16ReadSize;
    return 1;
}

int FRUCompare()
{
    // A file longer than what was read from the device has bytes with nothing to
    // compare them with: it differs.
    if (G_pu8LocalFRUDataBuffer == nullptr || G_pu8InventoryFRUDataBuffer == nullptr ||
        G_u16RawDataSizeFromFRUFile > G_u16ReadSizeFromFRUInventory) {
        return 0;
    }
    return std::memcmp(G_pu8LocalFRUDataBuffer, G_pu8InventoryFRUDataBuffer, G_u16RawDataSizeFromFRUFile) == 0 ? 1 : 0;
}
