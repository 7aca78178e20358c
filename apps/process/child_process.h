#pragma once

// Starts other programs, and runs them for a time.

#include <array>
#include <functional>
#include <optional>

#include <QByteArrayList>
#include <QStringList>

#include <sys/types.h>

namespace app
{

/**
 * To be called at the start of a program that has children: one that was started by a host which
 * ignores or blocks SIGCHLD, and inherits this, would not learn how they end.
 */
void learnHowChildrenEnd();

/**
 * Starts a program, which is looked for in PATH, with these settings as its environment, or with
 * those of this process if there are none. `streams` become its standard streams; one that is
 * negative is /dev/null. `prepare` is the last that the child does before, and may do only what a
 * signal handler may. Returns the number of the process, or -1, and `errno` says why.
 */
pid_t startChild(const QByteArrayList &command, const QByteArrayList &environment,
                 const std::array<int, 3> &streams, const std::function<void()> &prepare);

struct ChildEnd {
    int error = 0;             ///< not 0: why the program could not be started
    std::optional<int> status; ///< as `waitpid` gives it; none: it did not end by itself
    QByteArray output;         ///< no more than 256 kB
    QByteArray errorOutput;    ///< likewise
};

/** Which outputs of a program are collected. */
enum class Collected { BOTH, ERRORS };

/**
 * Runs a program until it ends, its time is over, or a signal to end came. It is then killed with
 * what it started, and with this process. It has none of this process's files, leaves no core file,
 * and of what it writes to a file no more than 16 MB get there.
 */
ChildEnd runChild(const QStringList &command, int timeoutMs, Collected collected = Collected::BOTH);

} // namespace app
