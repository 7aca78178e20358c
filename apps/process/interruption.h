#pragma once

// Ends the program cleanly when the user or the system requests it (SIGINT, SIGTERM, SIGHUP).

#include <QByteArray>
#include <QString>

#include "apps/process/exit_status.h"

namespace app
{

/**
 * Call it after `setProgramName`. From here on these signals are only noted, also where the program
 * was started with them blocked. A reading that goes on two seconds after one came, such as one
 * that the reader never finishes, ends the program with `statusOfHangingRead`; a maker's library
 * that ends the program in a reading ends it as failed.
 */
void catchInterruption(ExitStatus statusOfHangingRead);

/** What a program that ends in the middle of a reading leaves behind. */
struct Farewell {
    QByteArray words;    ///< for standard error, with its line break
    QByteArray result;   ///< for standard output; may be empty
    int descriptor = -1; ///< of standard output
    ExitStatus status = ExitStatus::READ_FAILED;
};

/** The words with which an interrupted reading is left, without the program's name. */
QString hangingReadWords();

/** Replaces what an interrupted reading is left with, after `catchInterruption`. */
void setFarewellOfHangingRead(const Farewell &farewell);

/**
 * From here on a reading that takes longer than `seconds` ends the program with `farewell`. To be
 * called after `catchInterruption`, and not during a reading.
 */
void limitReadings(unsigned int seconds, const Farewell &farewell);

bool isInterrupted();

/** Becomes readable when a signal comes: for an event loop. Negative when there is none. */
int interruptionDescriptor();

/**
 * Waits; ends at once when a signal comes or has come, or when the program that reads from the
 * descriptor `output` has gone. Negative: there is none.
 */
void pauseFor(int milliseconds, int output = -1);

/**
 * Writes all `bytes`, however long whoever reads there takes for them. False when they could not be
 * written: `errno` says why, and is EINTR when none were taken for two seconds after a signal had
 * come, since whoever reads there does so no longer.
 */
bool writeUnlessInterrupted(int descriptor, const QByteArray &bytes);

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
