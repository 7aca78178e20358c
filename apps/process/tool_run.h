#pragma once

// One run of idcard-reader for a program with an event loop. The tool may crash, hang or print
// anything: when its time is over, or when it is to stop, it ends, by force if need be.

#include <functional>

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTimer>

#include "apps/process/output_pipe.h"

namespace app
{

/** Beside this program, where a build has it, or where it is installed. */
QString toolPath();

class ToolRun : private QProcess
{
public:
    enum class End {
        DONE,      ///< it ended by itself
        FAILED,    ///< it crashed, did not start, printed without end or had to be killed
        STOPPED,   ///< by `stop`
        TIMED_OUT, ///< its time was over
    };

    /** Takes what was printed so far, as much as it has a use for, out of the buffer. */
    using Take = std::function<void(QByteArray *output)>;
    /** Takes what is left at the end. The run may be deleted later, not at once (`deleteLater`). */
    using Ended = std::function<void(End end, const QByteArray &output)>;

    /**
     * `take` may be empty: all output is then left for the end, which is to follow it at once, as
     * where a command prints a result.
     */
    ToolRun(Take take, Ended ended);
    /** Ends the tool, and waits for that. */
    ~ToolRun() override;
    ToolRun(const ToolRun &) = delete;
    ToolRun(ToolRun &&) = delete;
    ToolRun &operator=(const ToolRun &) = delete;
    ToolRun &operator=(ToolRun &&) = delete;

    using QObject::deleteLater;

    /** Of the tool; that of this program if never called. */
    using QProcess::setProcessEnvironment;
    /** Of the tool; empty: that of this program. */
    void setLanguage(const QString &language);

    /** `timeoutMs` 0: it may take as long as it likes. To be called once. */
    void run(const QStringList &arguments, int timeoutMs, const QString &tool = toolPath());
    void stop();
    /** As after a crash. */
    void fail();

    /** Whether there was a program to start. */
    bool hasStarted() const { return error() != FailedToStart; }

    /** In words, once it has ended: "It was ended by signal 11.", "It ended with status 3." */
    QString howItEnded() const;

protected:
    void setupChildProcess() override;

private:
    void endBy(End end);
    void force();
    void takeOutput();
    void letTake();
    void finish(ExitStatus status);

    Take m_take;
    Ended m_ended;
    End m_end = End::DONE;
    QByteArray m_output;
    OutputPipe m_pipe;
    QTimer m_deadline;
    QTimer m_force;
};

} // namespace app
