// Start and stop of the program-wide record lists and image buffers of one operation.
#ifndef TAVRIN_CLI_PROGRAMSTATE_H
#define TAVRIN_CLI_PROGRAMSTATE_H

// Allocates both SDR record lists whole, all holders empty. 1, or 0 when out of memory.
int TavrinInit();
// Releases every list and image buffer that is allocated.
void TavrinExit();

#endif
