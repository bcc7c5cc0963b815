// text_write_helper string|feed full|readonly PATH ENCODING TEXT
// Writes TEXT (as a string, or its bytes as a hex dump) in ENCODING (0, 1, 2) to a
// stream whose writes fail: /dev/full, or PATH opened for reading only. PATH is what
// the disk-full dialogue names and may delete. Exit status 0 if the writer succeeded.
#include "text/TextFileOutput.h"

#include <cstdlib>
#include <cstring>

int main(int argc, char** argv)
{
    if (argc != 6) {
        return 2;
    }
    const bool bFull = strcmp(argv[2], "full") == 0;
    FILE* pStream = bFull ? fopen("/dev/full", "w") : fopen(argv[3], "r");
    if (pStream == nullptr) {
        return 3;
    }
    const eFileEncoding eEncoding = static_cast<eFileEncoding>(atoi(argv[4]));
    if (strcmp(argv[1], "feed") == 0) {
        const uint16_t u16Count = static_cast<uint16_t>(strlen(argv[5]));
        sFeedCursor sCursor{reinterpret_cast<const uint8_t*>(argv[5]), 0, eEncoding, u16Count};
        const int iResult = FeedData(pStream, argv[3], &sCursor, u16Count);
        printf("offset=%u\n", sCursor.u16Offset);
        return iResult ? 0 : 1;
    }
    return WriteStringToFile(pStream, argv[3], argv[5], eEncoding) ? 0 : 1;
}
