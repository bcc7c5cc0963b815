// The FRU text file reader: the branch of ReadFRUFile for a file with the start tag, and
// the two block parsers that turn its lines into image bytes.
//
// The format, in ASCII, UTF-8 or UTF-16 (little-endian, with its mark); "//" starts a
// comment, and tokens are separated by blanks, tabs and line ends:
//   _FRU (                      the start line, alone on its line
//   _SEE_COMMON 01 00 01 00 00 00 00 FE
//   _SEE_CHASSIS                one block for each area the header gives, in its order
//   01 02 17                    version, length in 8-byte units, chassis type
//   C3                          a field's type/length byte,
//   'ABC'                       its contents as a quoted string alone on its line
//   C1 00 00 00 00 00 00 00 9C  the end of the fields, zeroes (may be left out), checksum
//   )
// Every byte of the image stands in the text; the reader compares the offsets, lengths
// and checksums it is given with what it has built, and computes none of them. Every
// fault of the format is reported on standard error as "<ERROR> Incorrect FRU file.\n"
// and a second line with its cause, most with the line number.
//
// The bytes go to G_pu8LocalFRUDataBuffer at index G_u16RawDataSizeFromFRUFile, which
// grows with each byte. No store passes u16ImageLimit, the buffer's size (the file's)
// and never more than the 65535 bytes that an image can have: one that would is refused.
#ifndef TAVRIN_FRU_FRUTEXTREADER_H
#define TAVRIN_FRU_FRUTEXTREADER_H

#include <cstddef>
#include <cstdint>

#include "FRUAreaTable.h"
#include "FRUFile.h"
#include "text/TextFileInput.h"

enum {
    // The longest line of a mixed block, in the file's bytes with its line end. The
    // longest line that can describe an image is a multi-record string of 254
    // characters, which takes 516 bytes in UTF-16 with CR LF; the rest is room for
    // indentation and a comment behind the string. A longer line is refused.
    FRU_RAW_LINE_LIMIT = 1023,
    FRU_RAW_LINE_SIZE = FRU_RAW_LINE_LIMIT + 1,
    FRU_END_OF_FIELDS = 0xC1,  // the type/length byte that ends the fields of an area
};

#define FRU_END_TAG ")"
#define FRU_TAG_PREFIX "_SEE_"

// The state of one FRU text file being read, owned by ReadFRUFile.
struct sFRUTextReader {
    sTextFileContext sContext;
    // The rest of the current line, not yet taken apart; empty when the next function
    // that needs a token is to read a line. This is how a block ends in the middle of a
    // line and the next one goes on from there.
    char achPendingLine[FRU_LINE_BUFFER_SIZE];
    uint16_t u16ImageLimit;  // the bytes the image may take
};

// Fills the reader for a stream opened for binary reading and positioned behind its
// mark: the context (line count 0), an empty pending line, and the image limit from
// the size of the buffer. 1, or 0 with "<ERROR> Internal Error!\n".
int FRUInitTextReader(sFRUTextReader* psReader, const char* pchPath, FILE* pFile, eFileEncoding eEncoding,
                      size_t uBufferSize);

// Steps of ReadFRUFile behind the first line that holds the start tag: the checks
// around the start and the end, and the blocks of the areas. 1, or 0 after the report.
int FRUReadTextFile(sFRUTextReader* psReader, uint32_t u32OutsideFlag);

// 1 if anything but blank lines and comments remains in the file, the pending line
// included; else 0.
int FRUSearchInvalidArea(sFRUTextReader* psReader);

// Takes the next token, reading lines as needed, and requires it to be pchTag; the rest
// of its line stays pending. 1, or 0 after the report.
int SearchAreaTag(sFRUTextReader* psReader, const char* pchTag);

// One block each, from its tag to its last byte. 1, or 0 after the report.
int FRUReadCommonArea(sFRUTextReader* psReader);
int FRUReadInternalArea(sFRUTextReader* psReader, const sFRUAreaInfo* psRow);
int FRUReadChassisBoardProductArea(sFRUTextReader* psReader, const sFRUAreaInfo* psRow);
int FRUReadMultiRecordArea(sFRUTextReader* psReader);

// Reads up to u16Count hex bytes into the image. Stops early, with 1 and the token put
// back in front of the pending line, at a token that starts with ")" or "_SEE_": the
// caller tells an early end by the bytes stored. 0 after the report for a token that
// isn't a hex byte or a file that ends first.
int FRUReadHexBlock(sFRUTextReader* psReader, const char* pchAreaName, uint16_t u16Count);

// Reads a mixed block of u16BlockLength bytes, hex bytes and quoted strings, into the
// image; pchAreaName is "CHASSIS", "BOARD", "PRODUCT" or "MULTIRECORD". In the first
// three a quoted string is a field's contents in the form its type/length byte (the
// byte stored last) gives, 8-bit or Unicode by u8LanguageCode and the field's place;
// the byte C1 ends the fields, and the zeroes between it and the area checksum may be
// left out. In a multi-record a string is 8-bit text, and C1 is a byte like any other.
// 1, or 0 after the report. The pending line is empty behind it.
int FRUReadHexDataQuotedStringMixBlockWithLanguageCode(sFRUTextReader* psReader, const char* pchAreaName,
                                                       uint16_t u16BlockLength, uint8_t u8LanguageCode);

// One quoted string of a mixed block: the bytes between its apostrophes, in the file's
// encoding. Stores what it stands for and adds that to *pu16Stored. u16HexLineCount is
// the number of the block's hex lines so far, which tells a field's place. 1, or 0
// after the report.
int FRUStoreQuotedString(sFRUTextReader* psReader, const char* pchAreaName, const uint8_t* pu8String,
                         size_t uLength, uint8_t u8LanguageCode, uint16_t u16HexLineCount, uint16_t* pu16Stored);

// Whether a type 3 field (8-bit ASCII/Latin-1 or 16-bit Unicode) of the area named
// "CHASSIS", "BOARD" or "PRODUCT" is 8-bit: English text (language 0 or 25), every field
// of the chassis area, which has no language, and of another language only the serial
// number and the FRU file ID, the 3rd and 5th field of a board area and the 5th and 7th
// of a product area. u16FieldNumber counts the area's fields from 1; the reader counts
// its hex lines, which the writer keeps in step by giving each field one hex line.
bool FRUIsEightBitField(const char* pchAreaName, uint8_t u8LanguageCode, uint16_t u16FieldNumber);

// "<ERROR> Incorrect FRU file.\n", then the printf-formatted second line.
void FRUReportFormatError(const char* pchFormat, ...) __attribute__((format(printf, 1, 2)));

// 1 if uCount more bytes fit the image; else the report, naming the area and the
// current line, and 0.
int FRUImageHasRoom(const sFRUTextReader* psReader, const char* pchAreaName, size_t uCount);

// Stores uCount bytes at the end of the image, if they fit. 1, or 0 after the report.
int FRUStoreBytes(sFRUTextReader* psReader, const char* pchAreaName, const uint8_t* pu8Bytes, size_t uCount);

// A token of exactly two hex digits, either case, into *pu8Value. 1 if it is one.
int FRUParseHexByte(const char* pchToken, uint8_t* pu8Value);

#endif
