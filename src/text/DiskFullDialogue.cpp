#include "DiskFullDialogue.h"

#include "text/TextFileOutput.h"

namespace {

// The first character of the answer that is not white space, or EOF.
int ReadAnswer()
{
    char chAnswer = 0;
    if (scanf(" %c", &chAnswer) != 1) {
        return EOF;
    }
    return static_cast<unsigned char>(chAnswer);
}

}  // namespace

int RunDiskFullDialogue(FILE* pStream, const char* pchPath)
{
    fprintf(stderr, "<ERROR> Disk Full! %s may be corrupt or incomplete.\n", pchPath);
    printf("Would you like to delete %s? (y='YES')", pchPath);
    fflush(stdout);
    const int iAnswer = ReadAnswer();
    // The stream is closed before the file goes, and whatever stays in its buffer is
    // lost with the file or with the full disk; its closing result tells nothing new.
    fclose(pStream);
    if ((iAnswer == 'y' || iAnswer == 'Y') && remove(pchPath) == 0) {
        printf("%s has been deleted.\n", pchPath);
    } else {
        printf("%s was not deleted.\n", pchPath);
    }
    fflush(stdout);
    return WRITE_DISK_FULL;
}
