#pragma once

// "idcard-reader watch --events" while the reader goes and comes a thousand times with a card on
// it: every event in its order, and no more memory and open files at the end than after the first
// tenth. IDCARD_WATCH_TIMES changes how often; the figures are printed.

#include <csignal>
#include <cstdio>
#include <functional>

#include <gmock/gmock.h>

#include <QJsonObject>
#include <QThread>

#include "tests/endurance/process_figures.h"
#include "tests/tool/tool_runner.h"

namespace endurance
{

#if defined(__SANITIZE_ADDRESS__)
constexpr bool KEEPS_WHAT_WAS_FREED = true; ///< the sanitizer, to report who uses it
#else
constexpr bool KEEPS_WHAT_WAS_FREED = false;
#endif

constexpr double GROWTH_LIMIT = 1.02;

inline int times()
{
    return qEnvironmentVariable("IDCARD_WATCH_TIMES", QStringLiteral("1000")).toInt();
}

/** A watch whose lines are looked at one after the other. */
class WatchedEvents
{
public:
    WatchedEvents(const QStringList &arguments, const ProcessInput &input)
        : m_tool(QStringList{"watch", "--events", "--interval", "10"} + arguments, input)
    {
    }

    /** Waits for the next event; it must be this one, and not before the last. */
    QJsonObject expect(const char *event)
    {
        const QJsonObject line = parsedObject(m_tool.nextLine());
        EXPECT_EQ(line["event"].toString().toStdString(), event);
        const QString time = line["time"].toString();
        EXPECT_GE(time.toStdString(), m_time.toStdString());
        m_time = time;
        return line;
    }

    const RunningProcess &process() const { return m_tool; }

    /** Between two looks, which have files of their own. */
    ProcessFigures figures() const
    {
        constexpr int SAMPLES = 50;
        ProcessFigures least = sample();
        for (int i = 0; i < SAMPLES; ++i) {
            QThread::msleep(1);
            const ProcessFigures next = sample();
            if (next.openFiles < least.openFiles)
                least = next;
        }
        return least;
    }

    /** By SIGTERM, after which no event comes. */
    ProcessResult ended() { return m_tool.endedBy(SIGTERM); }

private:
    ProcessFigures sample() const { return figuresOf(QString::number(m_tool.id())); }

    RunningTool m_tool;
    QString m_time;
};

inline void expectNoGrowth(const ProcessFigures &early, const ProcessFigures &late)
{
    std::printf("resident %ld -> %ld KiB, peak %ld -> %ld KiB, open files %d -> %d\n",
                early.residentKiB, late.residentKiB, early.peakKiB, late.peakKiB, early.openFiles,
                late.openFiles);
    ASSERT_GT(early.residentKiB, 0);
    EXPECT_EQ(late.openFiles, early.openFiles);
    // The emulator keeps what it has translated, and counts as the process.
    if (KEEPS_WHAT_WAS_FREED || !qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
        return;
    EXPECT_LT(static_cast<double>(late.residentKiB),
              GROWTH_LIMIT * static_cast<double>(early.residentKiB));
    EXPECT_LT(static_cast<double>(late.peakKiB), GROWTH_LIMIT * static_cast<double>(early.peakKiB));
}

} // namespace endurance
