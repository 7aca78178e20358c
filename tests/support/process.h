#pragma once

// Runs a program and talks with it. In a cross build one for the other processor is started under
// the emulator that runs the test itself.

#include <chrono>
#include <string>

#include <sys/types.h>

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

struct ProcessResult {
    bool finished = false; ///< ended by itself before the time-out, without a signal
    int exitStatus = -1;
    int signal = 0; ///< that ended it; 0: none did
    QByteArray standardOutput;
    QByteArray standardError;

    std::string output() const { return standardOutput.toStdString(); }
    std::string error() const { return standardError.toStdString(); }
};

/** Expects a status, and a part of standard error; an empty one: that there is nothing. */
void expectEnd(const ProcessResult &run, int exitStatus, const std::string &error = {});

/** Where a program's standard output goes. */
enum class StandardOutput {
    COLLECTED,
    CLOSED,      ///< nowhere: it is not open
    BROKEN_PIPE, ///< to a pipe that nobody reads
    SOCKET       ///< collected through a socket in the place of a pipe
};

struct ProcessInput {
    QMap<QString, QString> environment = {}; ///< set in addition; a null value removes the variable
    QByteArray standardInput = {};
    QString workingDirectory = {};
    int timeoutMs = 60000;
    StandardOutput standardOutput = StandardOutput::COLLECTED;
    QString standardOutputFile = {}; ///< in the place of what is collected
    QString standardErrorFile = {};
    bool ignoresBrokenPipes = false; ///< SIGPIPE is ignored, as where a system's service starts it
};

/** One pipe, or pair of sockets, closed at both ends when it goes. */
class Pipe
{
public:
    explicit Pipe(bool isSocket = false);
    ~Pipe();
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;

    int readEnd() const { return m_ends[0]; }
    int writeEnd() const { return m_ends[1]; }
    void closeReadEnd() { closeEnd(m_ends[0]); }
    void closeWriteEnd() { closeEnd(m_ends[1]); }

private:
    static void closeEnd(int &end);

    int m_ends[2] = {-1, -1};
};

/** A program that runs. It is killed, if it still does, and waited for with the object. */
class RunningProcess
{
public:
    /**
     * Starts `program`: an absolute path, or a name in this build's folder of programs. Its
     * standard input stays open.
     */
    RunningProcess(const QString &program, const QStringList &arguments,
                   const ProcessInput &input = {});
    ~RunningProcess();
    RunningProcess(const RunningProcess &) = delete;
    RunningProcess &operator=(const RunningProcess &) = delete;

    void write(const QByteArray &bytes);
    void closeStandardInput();
    void closeStandardOutput() { m_out.closeReadEnd(); }
    void signal(int number) const;
    /** Its number; in a cross build that of the emulator that runs it. */
    pid_t id() const { return m_id; }

    /** The next line of standard output without its end; empty when none came in time. */
    QByteArray nextLine();

    /** The next bytes of standard output; fewer when no more came in time. */
    QByteArray nextBytes(int count);

    /** Waits until standard error has held `part`; false when it did not in time. */
    bool waitForError(const QByteArray &part);

    /** Whether it ends in this time. */
    bool endsWithin(int milliseconds);

    /** Closes standard input, collects the rest and waits for the end, by force at the time-out. */
    ProcessResult result();

private:
    using Time = std::chrono::steady_clock::time_point;

    bool collectUntil(const QByteArray &text, const QByteArray &part);
    bool collectSome(Time limit);
    void writeSome();
    int wait();

    pid_t m_id = 0;
    int m_timeoutMs;
    Pipe m_in;
    Pipe m_out;
    Pipe m_err;
    QByteArray m_input; ///< not yet taken by the program
    bool m_isInputEnded = false;
    QByteArray m_output; ///< not yet handed out by `nextLine`
    QByteArray m_error;
};

/** Whether a program runs: one that has ended and that nobody has waited for does not. */
bool isRunning(pid_t id);

/** While it lives, none of a program's threads goes on. */
class HaltedProcess
{
public:
    explicit HaltedProcess(pid_t id);
    ~HaltedProcess();
    HaltedProcess(const HaltedProcess &) = delete;
    HaltedProcess &operator=(const HaltedProcess &) = delete;

private:
    pid_t m_id;
};

/** Runs a program to its end. */
ProcessResult runProcess(const QString &program, const QStringList &arguments,
                         const ProcessInput &input = {});
