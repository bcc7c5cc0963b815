// The file is read in large blocks at the reader's own offset (pread), so that a line
// costs no call into the stream and nothing depends on where the stream's buffer stands.
#include "TextReadAhead.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

size_t TextFillAhead(sTextFileContext* psContext, size_t uWanted)
{
    sTextReadAhead& sAhead = psContext->sAhead;
    if (sAhead.uEnd - sAhead.uNext >= uWanted || sAhead.bEndOfFile) {
        return sAhead.uEnd - sAhead.uNext;
    }
    if (sAhead.lFileOffset < 0) {
        sAhead.lFileOffset = ftell(psContext->pFile);
        if (sAhead.lFileOffset < 0) {
            sAhead.bEndOfFile = true;
            return 0;
        }
    }
    memmove(sAhead.achData, sAhead.achData + sAhead.uNext, sAhead.uEnd - sAhead.uNext);
    sAhead.lFileOffset += static_cast<long>(sAhead.uNext);
    sAhead.uEnd -= sAhead.uNext;
    sAhead.uNext = 0;
    const int iFile = fileno(psContext->pFile);
    while (sAhead.uEnd < uWanted && sAhead.uEnd < sizeof(sAhead.achData) && !sAhead.bEndOfFile) {
        const ssize_t iRead = pread(iFile, sAhead.achData + sAhead.uEnd, sizeof(sAhead.achData) - sAhead.uEnd,
                                    sAhead.lFileOffset + static_cast<long>(sAhead.uEnd));
        if (iRead > 0) {
            sAhead.uEnd += static_cast<size_t>(iRead);
        } else if (iRead == 0 || errno != EINTR) {
            sAhead.bEndOfFile = true;
        }
    }
    return sAhead.uEnd;
}

void TextDropReadAhead(sTextFileContext* psContext, long lFileOffset)
{
    psContext->sAhead.lFileOffset = lFileOffset;
    psContext->sAhead.uNext = 0;
    psContext->sAhead.uEnd = 0;
    psContext->sAhead.bEndOfFile = false;
}

long TextFileTell(sTextFileContext* psContext)
{
    if (psContext == nullptr || psContext->pFile == nullptr) {
        return -1;
    }
    if (psContext->sAhead.lFileOffset < 0) {
        return ftell(psContext->pFile);
    }
    return psContext->sAhead.lFileOffset + static_cast<long>(psContext->sAhead.uNext);
}

int TextFileSeek(sTextFileContext* psContext, long lOffset)
{
    if (psContext == nullptr || psContext->pFile == nullptr || fseek(psContext->pFile, lOffset, SEEK_SET) != 0) {
        return 0;
    }
    TextDropReadAhead(psContext, lOffset);
    return 1;
}
