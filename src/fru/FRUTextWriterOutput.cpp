// The FRU text writer's lines: written in the file's encoding, or, in the checking walk,
// only counted off the image.
#include <cstdio>

#include "FRUTextWriter.h"

namespace {

// Whether u16Count bytes from the cursor lie inside the image; "<ERROR> Internal Error!\n"
// if they don't.
bool InsideImage(const sFRUTextWriter* psWriter, uint16_t u16Count)
{
    const sFeedCursor& sCursor = psWriter->sCursor;
    if (sCursor.pu8Data != nullptr && static_cast<uint32_t>(sCursor.u16Offset) + u16Count <= sCursor.u16DataSize) {
        return true;
    }
    std::fputs("<ERROR> Internal Error!\n", stderr);
    return false;
}

void Skip(sFRUTextWriter* psWriter, uint16_t u16Count)
{
    psWriter->sCursor.u16Offset = static_cast<uint16_t>(psWriter->sCursor.u16Offset + u16Count);
}

}  // namespace

int FRUWriterFeed(sFRUTextWriter* psWriter, uint16_t u16Count)
{
    if (psWriter->pStream != nullptr) {
        return FeedData(psWriter->pStream, psWriter->pchPath, &psWriter->sCursor, u16Count);
    }
    if (!InsideImage(psWriter, u16Count)) {
        return 0;
    }
    Skip(psWriter, u16Count);
    return 1;
}

int FRUWriterHexLine(sFRUTextWriter* psWriter, uint16_t u16Count)
{
    // A field with its type/length byte: at most 64 bytes of three characters.
    char achLine[3 * 64 + 1];
    if (!InsideImage(psWriter, u16Count) || u16Count == 0 || 3u * u16Count >= sizeof(achLine)) {
        return 0;
    }
    const uint8_t* pu8Bytes = psWriter->sCursor.pu8Data + psWriter->sCursor.u16Offset;
    for (uint16_t i = 0; i < u16Count; i++) {
        std::snprintf(achLine + 3 * i, 4, "%02X%c", pu8Bytes[i], i + 1 < u16Count ? ' ' : '\n');
    }
    if (!FRUWriterText(psWriter, achLine)) {
        return 0;
    }
    Skip(psWriter, u16Count);
    return 1;
}

int FRUWriterText(sFRUTextWriter* psWriter, const char* pchText)
{
    return psWriter->pStream == nullptr ||
           WriteStringToFile(psWriter->pStream, psWriter->pchPath, pchText, psWriter->sCursor.eEncoding);
}

int FRUWriterString(sFRUTextWriter* psWriter, const sFRUStringLine* psLine, uint16_t u16Count)
{
    if (!InsideImage(psWriter, u16Count)) {
        return 0;
    }
    if (psWriter->pStream != nullptr) {
        const int iWritten = psLine->bRaw ? WriteBytesToFile(psWriter->pStream, psWriter->pchPath, psLine->achText,
                                                             psLine->uLength) == WRITE_SUCCESS
                                          : FRUWriterText(psWriter, psLine->achText);
        if (!iWritten) {
            return 0;
        }
    }
    Skip(psWriter, u16Count);
    return 1;
}

int FRUWriterRefuse(sFRUTextWriter* psWriter)
{
    if (psWriter->pStream != nullptr) {
        std::fclose(psWriter->pStream);
        psWriter->pStream = nullptr;
    }
    return 0;
}
