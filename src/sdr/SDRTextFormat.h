// What the parts of the SDR text reader share: the tags, the line buffers and the
// two-line format report.
#ifndef TAVRIN_SDR_SDRTEXTFORMAT_H
#define TAVRIN_SDR_SDRTEXTFORMAT_H

#include <cstddef>
#include <cstdint>

#include "text/TextFileInput.h"

#define SDR_TAG_SECTION "_SDR ("
#define SDR_TAG_DISABLED_SECTION "_DISABLED_SDR ("
#define SDR_TAG_END ")"
#define SDR_TAG_RECORD_TYPE "_SDR_TYPE"
#define SDR_TAG_RECORD_LENGTH "_REC_LEN"

// A line is read into a buffer of SDR_LINE_BUFFER_SIZE bytes, SDR_LINE_MAX_READ at a time.
constexpr size_t SDR_LINE_BUFFER_SIZE = 256;
constexpr size_t SDR_LINE_MAX_READ = 254;

// "<ERROR> SDR file format error.\n", then the printf-formatted second line.
void SDRReportFormatError(const char* pchFormat, ...) __attribute__((format(printf, 1, 2)));

// The next line by the line rule of SDR text (no conversion of UTF-8): 1, or 0 at the end.
int SDRReadTextLine(sTextFileContext* psContext, char* pchLine);

// A token of exactly two hex digits, either case, into *pu8Value. 1 if it is one.
int SDRParseHexByte(const char* pchToken, uint8_t* pu8Value);

#endif
