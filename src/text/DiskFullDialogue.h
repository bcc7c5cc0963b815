// What the text writers do when a write comes up short: ask the user whether the
// partly written file is to be deleted.
#ifndef TAVRIN_TEXT_DISKFULLDIALOGUE_H
#define TAVRIN_TEXT_DISKFULLDIALOGUE_H

#include <cstdio>

// Reports the full disk, asks on standard output, reads one character from standard
// input (white space skipped), and closes pStream. Only y or Y deletes pchPath; an
// ended standard input, like any other answer, deletes nothing. If the deletion
// itself fails, the answer is reported as "was not deleted". Returns WRITE_DISK_FULL.
int RunDiskFullDialogue(FILE* pStream, const char* pchPath);

#endif
