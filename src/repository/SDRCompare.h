// Verification of a local set of SDR records against the set read from the BMC.
#ifndef TAVRIN_REPOSITORY_SDRCOMPARE_H
#define TAVRIN_REPOSITORY_SDRCOMPARE_H

#include <cstdint>

// Compares the first u16FileCount holders of G_psLocalSDREntryList with the first
// u16BMCCount holders of G_psRepositorySDREntryList, pairing records by position and
// skipping empty holders; record IDs are not compared. 1 when equal, 0 otherwise.
int SDRCompare(uint16_t u16FileCount, uint16_t u16BMCCount);

#endif
