#pragma once

// Runs what may crash or hang in a child process, so that this one survives it.

#include <functional>

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include "apps/process/json_object.h"

namespace app
{

struct ChildRun {
    enum class End { DONE, CRASHED, TIMED_OUT };
    End end = End::DONE;
    QString how;       ///< of a crash: the signal or the status
    JsonObject values; ///< sent by the work, up to its end
    QByteArray log;    ///< what came on standard output and standard error
};

/**
 * To be called at the start of a program that has children: one that was started by a host which
 * ignores SIGCHLD, and inherits this, would not learn how they end.
 */
void learnHowChildrenEnd();

/** Sends the parent values; those sent later replace those of the same keys. */
using SendValues = std::function<void(const JsonObject &values)>;

/**
 * Runs `work` in a forked child, which is killed with its own children after `timeoutMs`, and with
 * this process. The calling process must have no application object and one thread. The child has
 * none of this process's files and leaves no core file.
 */
ChildRun runInChild(const std::function<void(const SendValues &send)> &work, int timeoutMs);

} // namespace app
