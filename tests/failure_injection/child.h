#pragma once

// Something that may crash, done in a forked child of the test, which reports what became of it.

#include <functional>

#include <QByteArray>

namespace failure_injection
{

struct ChildOutcome {
    bool ended = false; ///< by itself, not by a signal
    QByteArray report;  ///< what it has sent
    QByteArray place;   ///< of a crash: the innermost functions that say something
    int signal = 0;
};

/**
 * Runs `work` in a child, whose standard error goes nowhere, and waits for it; what it returns is
 * the report. One that does nothing for two seconds (a read takes two milliseconds), or twenty
 * under an emulator, counts as hanging and is ended.
 */
ChildOutcome runInChild(const std::function<QByteArray()> &work);

} // namespace failure_injection
