// The edge between a file's encoding and the internal one-byte text (ISO-8859-1):
// one iconv conversion of a line buffer.
#ifndef TAVRIN_TEXT_ENCODINGCONVERSION_H
#define TAVRIN_TEXT_ENCODINGCONVERSION_H

#include <iconv.h>

#include <cstddef>

// iconv names of the character sets; conversions neither write nor skip a byte-order mark.
#define CHARSET_ONE_BYTE "ISO-8859-1"
#define CHARSET_UTF16LE "UTF-16LE"
#define CHARSET_UTF8 "UTF-8"

// The size of the line and conversion buffers of the text readers and writers.
constexpr size_t CONVERT_BUFFER_SIZE = 258;

// What iconv_open returns on failure.
#define INVALID_CONVERTER (reinterpret_cast<iconv_t>(-1))

// Presents uInputSize bytes of pInput and uOutputSize bytes of room at pOutput to iconv,
// once, and ignores iconv's verdict: zero bytes behind a line convert to zero bytes,
// and what iconv can't convert (a character the target lacks, a cut-off character, no
// more room) ends the conversion there. pOutput is not cleared here: the caller zeroes
// it first, so that it holds a zero-terminated text if there is room behind it.
// Returns the number of bytes produced. A null buffer or an invalid descriptor prints
// "<ERROR> Internal Error!" and converts nothing.
size_t ConvertEncodingType(iconv_t cd, const char* pInput, size_t uInputSize, char* pOutput,
                           size_t uOutputSize);

#endif
