#pragma once

// Does what may crash or hang in a child process, which is this program once more, so that this one
// survives it.

#include <functional>

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include "apps/process/json_object.h"

namespace app::doctor
{

struct ChildRun {
    enum class End { DONE, CRASHED, TIMED_OUT };
    End end = End::DONE;
    QString how;       ///< of a crash: the signal or the status
    JsonObject values; ///< sent by the work, up to its end
    QByteArray log;    ///< what came on standard output and standard error
};

/** Sends the parent values; those sent later replace those of the same keys. */
using SendValues = std::function<void(const JsonObject &values)>;

/** What children do, by the first of the words that follow as arguments. */
using Works = QMap<QString, void (*)(const QStringList &arguments, const SendValues &send)>;

/**
 * Runs this program again, as a child that does a work (its name and arguments), and kills it with
 * its own children after `timeoutMs`.
 */
ChildRun runInChild(const QStringList &work, int timeoutMs);

/**
 * To be called at the start of a program that has such children. In one of them it does the work
 * and ends the process; what others print on standard output is shown on standard error.
 */
void workIfChild(const QStringList &arguments, const Works &works);

} // namespace app::doctor
