#pragma once

// A program of this build that a test talks with while it runs.

#include <memory>

#include "tests/support/process.h"

class StartedProcess;

class RunningProcess
{
public:
    /** As for `runProcess`; standard input stays open, and `input.standardInput` comes first. */
    RunningProcess(const QString &program, const QStringList &arguments,
                   const ProcessInput &input = {});
    /** Kills it if it still runs. */
    ~RunningProcess();
    RunningProcess(const RunningProcess &) = delete;
    RunningProcess &operator=(const RunningProcess &) = delete;

    void write(const QByteArray &bytes);
    void closeStandardInput();
    void closeStandardOutput();
    void signal(int number);
    /** Its number; in a cross build that of the emulator that runs it. */
    int id() const;

    /** The next line of standard output without its end; empty when none came in time. */
    QByteArray nextLine();

    /** Waits until standard error has held `part`; false when it did not in time. */
    bool hasTold(const QByteArray &part);

    /** Closes standard input, collects the rest and waits for the end, by force at the time-out. */
    ProcessResult result();

private:
    bool collectUntil(const QByteArray &text, const QByteArray &part);
    bool collectSome(int timeoutMs);

    std::unique_ptr<StartedProcess> m_process;
    int m_timeoutMs;
    QByteArray m_output; ///< not yet handed out by `nextLine`
    QByteArray m_error;
};
