#pragma once

// Ends the program cleanly when the user or the system requests it (SIGINT, SIGTERM).

#include "apps/process/exit_status.h"

namespace app
{

/**
 * Call it after `setProgramName`. From here on the two signals are only noted. A reading that goes
 * on two seconds after one came, such as one that the reader never finishes, ends the program with
 * `statusOfHangingRead`.
 */
void catchInterruption(ExitStatus statusOfHangingRead);

bool isInterrupted();

/** Becomes readable when a signal comes: for an event loop. Negative when there is none. */
int interruptionDescriptor();

/**
 * Waits; ends at once when a signal comes or has come, or when the program that reads from the
 * descriptor `output` has gone. Negative: there is none.
 */
void pauseFor(int milliseconds, int output = -1);

/** Lives while a card is read, which cannot be broken off otherwise. Not to be nested. */
class ReadInProgress
{
public:
    ReadInProgress();
    ~ReadInProgress();
    ReadInProgress(const ReadInProgress &) = delete;
    ReadInProgress(ReadInProgress &&) = delete;
    ReadInProgress &operator=(const ReadInProgress &) = delete;
    ReadInProgress &operator=(ReadInProgress &&) = delete;
};

} // namespace app
