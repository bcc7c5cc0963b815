// Holding back the signals that end a run while the SDR repository is being replaced:
// an interrupt then fails the download at the next exchange, and the back-up is written
// back, instead of leaving the repository half-written.
#ifndef TAVRIN_REPOSITORY_SDRINTERRUPTHOLD_H
#define TAVRIN_REPOSITORY_SDRINTERRUPTHOLD_H

#include <csignal>

// What HoldInterruptSignals changed, for ReleaseInterruptSignals to put back.
struct sInterruptHold {
    sigset_t sHeld;      // the signals that are held back
    sigset_t sPrevious;  // the signal mask before
    bool bActive;
};

// Holds back SIGINT, SIGTERM, SIGHUP and SIGQUIT, except those that are ignored (as
// under nohup): they stay ignored.
void HoldInterruptSignals(sInterruptHold* psHold);

// True if one of the four signals has come and is held back.
bool InterruptSignalPending();

// Takes every held signal that has come, so that none ends the run afterwards, and puts
// the signal mask back as it was.
void ReleaseInterruptSignals(sInterruptHold* psHold);

#endif
