// Running ipmitool as a child process of its own, without a shell: the words of its
// command line reach it as they are, whatever characters they hold.
#include <fcntl.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "LanChannel.h"

extern char** environ;

namespace {

// Starts the program with both its output streams on the pipe's write end. The child's
// signal mask is tavrin's: signals held back during an SDR replace are held back in the
// exchange too, so that an interrupt never cuts one in half.
bool SpawnWithPipe(char* const* ppchArgv, int iWriteEnd, pid_t* piPid)
{
    posix_spawn_file_actions_t sActions;
    if (posix_spawn_file_actions_init(&sActions) != 0) {
        return false;
    }
    bool bStarted = posix_spawn_file_actions_adddup2(&sActions, iWriteEnd, STDOUT_FILENO) == 0 &&
                    posix_spawn_file_actions_adddup2(&sActions, iWriteEnd, STDERR_FILENO) == 0 &&
                    posix_spawnp(piPid, ppchArgv[0], &sActions, nullptr, ppchArgv, environ) == 0;
    posix_spawn_file_actions_destroy(&sActions);
    return bStarted;
}

// Reads until uLimit bytes have come or the writer has ended.
size_t ReadOutput(int iReadEnd, char* pchText, size_t uLimit)
{
    size_t uRead = 0;
    while (uRead < uLimit) {
        ssize_t iChunk = read(iReadEnd, pchText + uRead, uLimit - uRead);
        if (iChunk < 0 && errno == EINTR) {
            continue;
        }
        if (iChunk <= 0) {
            break;
        }
        uRead += static_cast<size_t>(iChunk);
    }
    return uRead;
}

// The end of the run. A child that wrote on after all that is read had come, and so
// died of the closed pipe, ended as well as one that exited with 0.
eLanRun WaitForEnd(pid_t iPid, bool bOutputCut)
{
    int iStatus = 0;
    pid_t iWaited;
    do {
        iWaited = waitpid(iPid, &iStatus, 0);
    } while (iWaited < 0 && errno == EINTR);
    if (iWaited != iPid) {
        return eLanRunFailed;
    }
    if (WIFEXITED(iStatus) && WEXITSTATUS(iStatus) == 0) {
        return eLanRunSucceeded;
    }
    if (bOutputCut && WIFSIGNALED(iStatus) && WTERMSIG(iStatus) == SIGPIPE) {
        return eLanRunSucceeded;
    }
    return eLanRunFailed;
}

}  // namespace

eLanRun RunLanProcess(char* const* ppchArgv, char* pchText, size_t uLimit, size_t* puRead)
{
    *puRead = 0;
    pchText[0] = '\0';
    int aiPipe[2];
    if (pipe(aiPipe) != 0) {
        return eLanRunNotStarted;
    }
    // Only the child's copies of the write end may stay open, or the read never ends.
    fcntl(aiPipe[0], F_SETFD, FD_CLOEXEC);
    fcntl(aiPipe[1], F_SETFD, FD_CLOEXEC);
    pid_t iPid = 0;
    bool bStarted = SpawnWithPipe(ppchArgv, aiPipe[1], &iPid);
    close(aiPipe[1]);
    if (!bStarted) {
        close(aiPipe[0]);
        return eLanRunNotStarted;
    }
    *puRead = ReadOutput(aiPipe[0], pchText, uLimit);
    pchText[*puRead] = '\0';
    close(aiPipe[0]);
    return WaitForEnd(iPid, *puRead == uLimit);
}
