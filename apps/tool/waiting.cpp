#include "apps/tool/waiting.h"

#include <algorithm>

#include <QElapsedTimer>

#include "apps/process/interruption.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

constexpr int MILLISECONDS = 1000;
constexpr int WAIT_INTERVAL_MS = 250;

/** A line on a terminal that is updated while the program waits, and then goes away. */
class WaitingLine
{
public:
    WaitingLine() = default;
    ~WaitingLine()
    {
        if (m_isShown)
            printToStandardError(QStringLiteral("\r\033[K"));
    }
    WaitingLine(const WaitingLine &) = delete;
    WaitingLine(WaitingLine &&) = delete;
    WaitingLine &operator=(const WaitingLine &) = delete;
    WaitingLine &operator=(WaitingLine &&) = delete;

    void show(qint64 secondsLeft)
    {
        if (!isStandardErrorTerminal())
            return;
        printToStandardError(
            QStringLiteral("\r%1 \033[K")
                .arg(tr("Lay a card on the reader (%1 s left, Ctrl-C ends)").arg(secondsLeft)));
        m_isShown = true;
    }

private:
    bool m_isShown = false;
};

} // namespace

void lookWithin(int seconds, const std::function<ExitStatus()> &look)
{
    QElapsedTimer time;
    time.start();
    WaitingLine line;
    while (true) {
        const ExitStatus status = look();
        const qint64 left = qint64(seconds) * MILLISECONDS - time.elapsed();
        if (status != ExitStatus::NO_CARD || left <= 0 || isInterrupted())
            return;
        line.show((left + MILLISECONDS - 1) / MILLISECONDS);
        pauseFor(static_cast<int>(std::min<qint64>(left, WAIT_INTERVAL_MS)));
    }
}

Failure failedLook(const Failure &failure)
{
    if (failure.exitStatus != ExitStatus::NO_CARD || !isInterrupted())
        return failure;
    return toolFailure(ToolFault::INTERRUPTED,
                       tr("Broken off before a card was found; nothing was read."));
}

} // namespace app
