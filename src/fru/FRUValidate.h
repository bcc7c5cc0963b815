// The check of a whole FRU image: its framing (versions, offsets, lengths, checksums),
// not the fields inside the areas. It never changes the image.
#ifndef TAVRIN_FRU_FRUVALIDATE_H
#define TAVRIN_FRU_FRUVALIDATE_H

#include <cstdint>

#include "FRUAreaTable.h"

// The running state of one validation.
struct sFRUValidateState {
    uint16_t u16ValidatedLength;  // the sum of the lengths of the parts validated so far
    uint16_t u16TotalLength;      // the image's length
    const uint8_t* pu8Data;       // the image; not owned
};

// Checks an image of u16Length bytes: bInventoryData nonzero for an image read from a
// FRU device, 0 for a binary file, which must hold its image and nothing else.
// 1 when acceptable; 0 after the messages on standard error.
int FRUValidateRawData(const uint8_t* pu8Data, uint16_t u16Length, int bInventoryData);

// Each checks one part of the image and adds its length to u16ValidatedLength; 1 or 0.
// For the common header psRow is row 0, the start of the table that it fills.
int FRUValidateCommonArea(sFRUValidateState* psState, sFRUAreaInfo* psRow, int bInventoryData);
int FRUValidateInternalArea(sFRUValidateState* psState, sFRUAreaInfo* psRow, int bInventoryData);
int FRUValidateChassisBoardProductArea(sFRUValidateState* psState, sFRUAreaInfo* psRow, int bInventoryData);
int FRUValidateMultiRecordArea(sFRUValidateState* psState, sFRUAreaInfo* psRow, int bInventoryData);

#endif
