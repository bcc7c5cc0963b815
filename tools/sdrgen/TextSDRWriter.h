// A small emitter of SDR text files for the examples, the tests and the benchmarks.
// Text is composed as one-byte characters (ISO-8859-1) and encoded at the end.
#ifndef TAVRIN_TOOLS_TEXTSDRWRITER_H
#define TAVRIN_TOOLS_TEXTSDRWRITER_H

#include <string>
#include <vector>

#include "SampleRecords.h"
#include "text/FileEncoding.h"

// One record: its two tag lines, the bytes in front of the ID string in hex,
// uBytesPerLine to a line (the five header bytes on a line of their own when
// bHeaderLine is set), then the ID string: quoted when its code says 8-bit text,
// else in hex.
std::string SDRRecordText(const TRecord& vRecord, size_t uBytesPerLine, bool bHeaderLine);

// The example file: comments, a disabled section, and TextExampleRecordSet().
std::string ExampleSDRText();

// u32Count full sensor records of the largest length (40h, a 16-character ID string),
// laid out as an upload writes them: one byte a line, two blank lines behind each.
std::string LargestSDRText(uint32_t u32Count);

// The file's bytes: the mark of the encoding, then the text in it.
std::string EncodeSDRText(const std::string& sText, eFileEncoding eEncoding);

#endif
