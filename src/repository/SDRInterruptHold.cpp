#include "SDRInterruptHold.h"

namespace {

const int kInterruptSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

bool IsIgnored(int iSignal)
{
    struct sigaction sAction;
    return sigaction(iSignal, nullptr, &sAction) == 0 && sAction.sa_handler == SIG_IGN;
}

}  // namespace

void HoldInterruptSignals(sInterruptHold* psHold)
{
    sigemptyset(&psHold->sHeld);
    for (int iSignal : kInterruptSignals) {
        // A blocked signal is kept pending even when it is ignored: leave those alone.
        if (!IsIgnored(iSignal)) {
            sigaddset(&psHold->sHeld, iSignal);
        }
    }
    psHold->bActive = sigprocmask(SIG_BLOCK, &psHold->sHeld, &psHold->sPrevious) == 0;
}

bool InterruptSignalPending()
{
    sigset_t sPending;
    if (sigpending(&sPending) != 0) {
        return false;
    }
    for (int iSignal : kInterruptSignals) {
        if (sigismember(&sPending, iSignal) == 1 && !IsIgnored(iSignal)) {
            return true;
        }
    }
    return false;
}

void ReleaseInterruptSignals(sInterruptHold* psHold)
{
    if (!psHold->bActive) {
        return;
    }
    sigset_t sPending;
    if (sigpending(&sPending) == 0) {
        for (int iSignal : kInterruptSignals) {
            if (sigismember(&psHold->sHeld, iSignal) == 1 && sigismember(&sPending, iSignal) == 1) {
                // The signal is pending, so the wait returns at once and takes it.
                sigset_t sOne;
                sigemptyset(&sOne);
                sigaddset(&sOne, iSignal);
                int iTaken = 0;
                sigwait(&sOne, &iTaken);
            }
        }
    }
    sigprocmask(SIG_SETMASK, &psHold->sPrevious, nullptr);
    psHold->bActive = false;
}
