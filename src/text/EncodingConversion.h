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

// Little-endian UTF-16 to one-byte text, as a conversion from UTF-16LE to ISO-8859-1
// does it but with no call per line: each character below U+0100 becomes its byte, and
// the first character above U+00FF, or U+0000, ends the text. A lone last byte stands
// for a character whose high byte is 0. At most uOutputSize - 1 characters are written,
// always zero-terminated. Returns the number of characters written.
size_t NarrowUTF16LE(const unsigned char* pu8Input, size_t uInputSize, char* pchOutput, size_t uOutputSize);

#endif
