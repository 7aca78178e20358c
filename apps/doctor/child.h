#pragma once

// Runs what may crash or hang in a child process, so that the doctor survives it.

#include <functional>

#include <QByteArray>
#include <QString>

namespace app::doctor
{

struct ChildRun {
    enum class End { Done, Crashed, TimedOut };
    End end = End::Done;
    QString how;       ///< of a crash: the signal or the status
    QByteArray output; ///< what the work told, up to its end
    QByteArray log;    ///< what came on standard output and standard error
};

/** What the work in a child tells. */
using Telling = std::function<void(const QByteArray &line)>;

enum class FileWriting { Allowed, Forbidden };

/**
 * Runs `work` in a forked child, which is killed with its own children after `timeoutMs`. The
 * calling process must have no application object and one thread. Nothing is kept of the child, not
 * even a core file; where the kernel can, it is also kept from writing files if it is `Forbidden`.
 */
ChildRun runInChild(const std::function<void(const Telling &tell)> &work, int timeoutMs,
                    FileWriting writing);

} // namespace app::doctor
