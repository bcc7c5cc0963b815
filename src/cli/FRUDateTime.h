// The manufacturing date/time of a FRU board area: minutes since 1 January 1996, 00:00
// local time, in 24 bits, low byte first (IPMI FRU Information Storage Definition).
#ifndef TAVRIN_CLI_FRUDATETIME_H
#define TAVRIN_CLI_FRUDATETIME_H

#include <cstdint>
#include <ctime>

// The clock that ConvertCurrentDateTimeToHex reads, with the form of time(): the
// system's clock. Only a test build of tavrin points it elsewhere, at a fixed time.
extern time_t (*G_pfnSystemClock)(time_t* ptNow);

// Writes the present time in the encoding above to pu8DateTime (3 bytes). 1, or 0 if the
// clock gives no time, or one before 1996; a null pointer prints "<ERROR> Internal Error! \n".
int ConvertCurrentDateTimeToHex(uint8_t* pu8DateTime);

#endif
