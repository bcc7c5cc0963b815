// Whole transfers of a FRU image between memory and a FRU device, 16 bytes at a time,
// and the comparison of the local image with the one read from the device. A download
// overwrites the device in place from offset 0 for the image's length; there is no
// reservation, no erase and no undo.
#ifndef TAVRIN_REPOSITORY_FRUTRANSFER_H
#define TAVRIN_REPOSITORY_FRUTRANSFER_H

#include <cstdint>

#include "repository/RepositoryState.h"

// Writes G_pu8LocalFRUDataBuffer (G_u16RawDataSizeFromFRUFile bytes) to the device; the
// FRU ID is the low byte. 1 when the whole image was written, otherwise 0.
int DoFRUAddToBMC(uint16_t u16FruID);

// Reads the device's whole area into a new G_pu8InventoryFRUDataBuffer and sets
// G_u16ReadSizeFromFRUInventory. 1 when the read loop has run, even if a read failed on
// the way; 0 when the area is not readable or no buffer can be had.
int DoFRUGetFromBMC(uint16_t u16FruID);

// 1 when the first G_u16RawDataSizeFromFRUFile bytes of the two images are equal.
int FRUCompare();

// Writes the local image after the size check. eStateFRUDownloadDone, or the state of
// the failure.
eState DownloadFRUHandler(uint8_t u8FruID);

// Reads the whole area in blocks of 16. *pu16ReadSize becomes the offset of the last
// block read plus 16 (at most 65535) in both outcomes. eStateFRUUploadDone or eStateFailed.
eState UploadFRUHandler(uint8_t u8FruID, uint16_t* pu16ReadSize);

#endif
