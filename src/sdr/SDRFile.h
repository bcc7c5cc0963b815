// The one entry for reading an SDR file, binary or text.
#ifndef TAVRIN_SDR_SDRFILE_H
#define TAVRIN_SDR_SDRFILE_H

#include <cstdint>

// Fills G_psLocalSDREntryList from index *pu16RecordCount on (callers start it at 0)
// and adds the records to the count. 1 on success, 0 on failure (already reported).
int ReadSDRFile(const char* pchPath, uint16_t* pu16RecordCount);

#endif
