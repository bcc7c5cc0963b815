// The FRU text file writer: saves the image that an upload read from a FRU device
// (G_pu8InventoryFRUDataBuffer, G_u16ReadSizeFromFRUInventory bytes) as a FRU text file
// in ASCII, UTF-8 or UTF-16, in the one form of the format that it uses, which the
// reader (FRUTextReader.h) reads back into the same bytes:
//   _FRU (                  the start line
//   _SEE_COMMON             a tag line for the header and each area it gives, in its order
//   01                      every byte a hex line "%02X" ...
//   C8                      ... but a field's contents stand in a quoted string behind
//   'Tavrin S'              its type/length byte, in the form that byte gives
//   )                       the end line
// No comments, no indentation, no blank lines. A management access record (type 3,
// sub-type other than 7) has its text in a string behind its sub-type.
//
// A field that no quoted string gives back byte for byte (binary data, a zero byte or a
// line feed, bits that the 6-bit form drops, Unicode of odd length in UTF-16, Unicode
// that UTF-8 can't carry, text that holds the start tag) is written in hex on the line
// of its type/length byte, so that each field still takes one hex line: the reader tells
// a field's place by its count of hex lines. A record whose text can't be a string is
// all hex lines.
//
// The walk runs twice over the image: once without a file, which makes every check and
// gives every refusal, and only then into the file. So a refused image leaves the file
// as it was; only a full disk can leave it half written, and then the user is asked
// whether it is to be deleted.
#ifndef TAVRIN_FRU_FRUTEXTWRITER_H
#define TAVRIN_FRU_FRUTEXTWRITER_H

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "FRUFile.h"
#include "text/TextFileOutput.h"

// The state of one walk through the image.
struct sFRUTextWriter {
    FILE* pStream;        // nullptr in the checking walk: nothing is written
    const char* pchPath;  // for messages and for the deletion in the disk-full dialogue
    sFeedCursor sCursor;  // over the image; u16DataSize is its length, which no step passes
};

// A string line composed ahead of its writing.
struct sFRUStringLine {
    // One-byte text with its apostrophes and line feed, zero-terminated; or, when bRaw
    // is set, the line's bytes in the file's encoding.
    char achText[FRU_LINE_BUFFER_SIZE];
    size_t uLength;  // the bytes of a raw line
    bool bRaw;       // a Unicode field, which goes to the file as it stands
};

// Saves the image to pchPath in eEncoding and prints "The FRU data has been saved in file
// %s! \n". Returns 1, or 0 after the report: the image fails FRUValidateRawData, a
// FRU text file can't describe it, the file can't be opened (these leave the file as it
// was), or a write fails (the disk-full dialogue has run).
int SaveFRUFile(const char* pchPath, eFileEncoding eEncoding);

// The blocks of the walk, each from its tag line on, the cursor at the area's start.
// 1, or 0 after the report.
int FRUWriteCommonArea(sFRUTextWriter* psWriter);
int FRUWriteInternalArea(sFRUTextWriter* psWriter);
int FRUWriteChassisArea(sFRUTextWriter* psWriter);
int FRUWriteBoardArea(sFRUTextWriter* psWriter);
int FRUWriteProductArea(sFRUTextWriter* psWriter);
int FRUWriteMultiRecordArea(sFRUTextWriter* psWriter);

// One field of u16BlockLength bytes, its type/length byte included, at the cursor: the
// type/length byte's hex line and the string line, or one hex line of the whole field.
// u16FieldIndex counts the area's fields from 0. 1, or 0 after the report of a field
// that neither form can carry (a byte C1, which would end the fields, in data that must
// be hex).
int FeedBlock(sFRUTextWriter* psWriter, uint16_t u16BlockLength, uint8_t u8LanguageCode, const char* pchAreaTag,
              uint16_t u16FieldIndex);

// The string line of the field whose type/length byte stands just before the cursor,
// with u16Length bytes. 1, or 0 with no message when no string gives back its bytes (a
// binary field among them).
int FeedQuotedStringInChassisBoardProductArea(sFRUTextWriter* psWriter, uint16_t u16Length, uint8_t u8LanguageCode,
                                              const char* pchAreaTag, uint16_t u16FieldIndex);

// u16Length bytes at the cursor as the string line of a record. 1, or 0 with no message
// when no string gives them back.
int FeedQuotedStringInMultiRecordArea(sFRUTextWriter* psWriter, uint16_t u16Length);

// Composes the string line of the field at pu8Field (its type/length byte, then its
// bytes), 8-bit or Unicode by bEightBit for type 3. 1 if the line reads back into
// exactly those bytes, else 0.
int FRUComposeFieldString(const uint8_t* pu8Field, bool bEightBit, eFileEncoding eEncoding, sFRUStringLine* psLine);

// Composes the string line of u16Length bytes of 8-bit text. 1 if it reads back into
// them, else 0.
int FRUComposeTextString(const uint8_t* pu8Text, uint16_t u16Length, sFRUStringLine* psLine);

// Writing through the walk; nothing reaches the file in the checking walk. Each returns
// 1, or 0 after a failed write (the disk-full dialogue has closed the stream) or, with
// "<ERROR> Internal Error!\n", for bytes outside the image.
int FRUWriterFeed(sFRUTextWriter* psWriter, uint16_t u16Count);     // hex lines, one byte each
int FRUWriterHexLine(sFRUTextWriter* psWriter, uint16_t u16Count);  // one line of hex bytes
int FRUWriterText(sFRUTextWriter* psWriter, const char* pchText);   // one-byte text
// A composed string line, standing for the u16Count bytes at the cursor.
int FRUWriterString(sFRUTextWriter* psWriter, const sFRUStringLine* psLine, uint16_t u16Count);

// Ends a walk that refuses the image: closes the stream, if there is one. Always 0.
int FRUWriterRefuse(sFRUTextWriter* psWriter);

#endif
