#include "FRUImage.h"

uint8_t* G_pu8LocalFRUDataBuffer = nullptr;
uint8_t* G_pu8InventoryFRUDataBuffer = nullptr;
uint16_t G_u16RawDataSizeFromFRUFile = 0;
uint16_t G_u16ReadSizeFromFRUInventory = 0;
uint16_t G_u16FRUInventoryAreaSize = 0;
