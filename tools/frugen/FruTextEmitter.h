// FRU text files from raw images, for the examples, the tests and the benchmarks. The
// generator's own walk through an image whose areas lie end to end from offset 8, as
// FruImage lays them out.
//
// Each field's contents go into a quoted string in the form of its type/length byte
// (BCD Plus and 6-bit ASCII decoded, 8-bit text, Unicode as UTF-16 or UTF-8), unless the
// string couldn't give back the same bytes (a zero byte or a line feed, bits that the
// packed form drops, Unicode in an ASCII file): such a field, and a binary one, is given
// in hex on the line of its type/length byte. A management access record (type 3, sub-type
// other than 7) has its text in a string too; all other bytes are hex.
//
// Annotated: a comment on what each line holds, a header, fixed part or record header on
// one line, other hex bytes 16 to a line. Plain: one hex byte a line and no comments, as
// an upload writes the file.
#ifndef TAVRIN_TOOLS_FRUTEXTEMITTER_H
#define TAVRIN_TOOLS_FRUTEXTEMITTER_H

#include <string>

#include "FruImageBuilder.h"

// The file's bytes in sEncoding ("ascii", "utf8" or "utf16", the last two with their
// byte-order mark), sTitle as a first comment line if it isn't empty. False with
// *psError for an encoding it doesn't know or an image it can't walk.
bool FruTextFile(const TFruBytes& vImage, const std::string& sEncoding, bool bAnnotated, const std::string& sTitle,
                 std::string* psFile, std::string* psError);

#endif
