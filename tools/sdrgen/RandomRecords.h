// Random SDR records that pass every check of the type tables, from a seed, for tests
// that hold a property over many record sets.
#ifndef TAVRIN_TOOLS_RANDOMRECORDS_H
#define TAVRIN_TOOLS_RANDOMRECORDS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "SampleRecords.h"

// uCount records of the types the tables know, each of a random length within its
// type's bounds, with a correct header and a unique record ID (neither 0000h nor FFFFh).
// An ID string is quoted 8-bit text (a code with both top bits set and as many
// characters as it says, any byte but 00h and 0Ah, Latin-1 letters included) or, with
// another code, raw bytes. The same seed gives the same records on every platform.
std::vector<TRecord> RandomRecordSet(uint32_t u32Seed, size_t uCount);

#endif
