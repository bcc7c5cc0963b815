// The IPMI Storage commands of FRU inventory devices: Get FRU Inventory Area Info,
// Read FRU Data and Write FRU Data, one request each on the command channel.
#ifndef TAVRIN_REPOSITORY_FRUCOMMANDS_H
#define TAVRIN_REPOSITORY_FRUCOMMANDS_H

#include <cstdint>

#include "repository/RepositoryState.h"

// Image bytes per Read FRU Data and Write FRU Data of a whole-image transfer.
constexpr uint8_t FRU_BLOCK_SIZE = 16;

// Sets G_u16FRUInventoryAreaSize. eStateFRUInfoOK, or eStateFailed on a failed
// exchange and on an area size of 0.
eState GetFRUInventoryAreaInfoCommand(uint8_t u8FruID);

// Reads a block at u16Offset into G_pu8InventoryFRUDataBuffer at the same offset: always
// 16 bytes, those that the device did not send (behind the end of its area) as 0.
// eStateFRUReadOK or eStateFailed.
eState ReadFRUDataCommand(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Count);

// Reads exactly u8Count bytes at u16Offset into pu8Buffer at u8Position.
// eStateFRUReadOK or eStateFailed.
eState ReadFRUDataCommandToLocalBuffer(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Count, uint8_t* pu8Buffer,
                                       uint8_t u8Position);

// Writes u8Size bytes of pu8Buffer, taken at u16Offset, to the device at u16Offset.
// eStateFRUWriteOK or eStateFailed.
eState WriteFRUDataCommand(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Size, const uint8_t* pu8Buffer);

// Writes u8Size bytes of pu8Buffer, taken at u8Position, to the device at u16Offset.
// eStateFRUWriteOK or eStateFailed. A short count the device reports is no failure (it
// is warned of); a caller that must know how much landed passes pu8Written, which
// receives that count after a successful exchange.
eState WriteFRUDataCommandFromLocalBuffer(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Size, const uint8_t* pu8Buffer,
                                          uint8_t u8Position, uint8_t* pu8Written = nullptr);

#endif
