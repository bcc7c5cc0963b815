// The encoding of a text file, told by its byte-order mark.
#ifndef TAVRIN_TEXT_FILEENCODING_H
#define TAVRIN_TEXT_FILEENCODING_H

enum eFileEncoding {
    eEncodingASCII = 0,  // no mark (also the big-endian UTF-16 mark FE FF)
    eEncodingUTF8 = 1,   // EF BB BF
    eEncodingUTF16 = 2,  // FF FE, little-endian only
};

// Reads the first three bytes of the file and sets the encoding by its mark; the
// file is closed again. Returns 1, or 0 with a message on standard error.
int GetFileEncoding(const char* pchPath, eFileEncoding* peEncoding);

#endif
