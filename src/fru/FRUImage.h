// The FRU images of one run: the one read from a local file and the one read from
// the FRU device, each with its size.
#ifndef TAVRIN_FRU_FRUIMAGE_H
#define TAVRIN_FRU_FRUIMAGE_H

#include <cstdint>

extern uint8_t* G_pu8LocalFRUDataBuffer;      // from a local file; freed by TavrinExit
extern uint8_t* G_pu8InventoryFRUDataBuffer;  // from the FRU device; freed by TavrinExit
extern uint16_t G_u16RawDataSizeFromFRUFile;
extern uint16_t G_u16ReadSizeFromFRUInventory;
extern uint16_t G_u16FRUInventoryAreaSize;    // the size the FRU device reports

#endif
