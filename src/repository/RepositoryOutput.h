// Small output helpers of the repository commands and transfers.
#ifndef TAVRIN_REPOSITORY_REPOSITORYOUTPUT_H
#define TAVRIN_REPOSITORY_REPOSITORYOUTPUT_H

#include <cstdint>
#include <cstdio>

// The text, a line end, and a flush of the stream.
inline void RepositoryWriteLine(FILE* pStream, const char* pchText)
{
    std::fputs(pchText, pStream);
    std::fputc('\n', pStream);
    std::fflush(pStream);
}

// The line that follows every failed exchange's sentence.
inline void RepositoryWriteCompletionCode(uint8_t u8CompletionCode)
{
    std::fprintf(stderr, "cc = %X \n", u8CompletionCode);
    std::fflush(stderr);
}

// A caller broke a precondition (null pointer, holder out of shape): refuse, touch nothing.
inline void RepositoryReportInternalError()
{
    RepositoryWriteLine(stderr, "<ERROR> Internal Error!");
}

#endif
