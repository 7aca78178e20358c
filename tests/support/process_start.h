#pragma once

// Starts a program of this build with its three standard streams on pipes, under the emulator in a
// cross build. What runs a program, or talks with one that runs, stands on this.

#include <sys/types.h>

#include "tests/support/process.h"

/** One pipe, closed at both ends when it goes. */
class Pipe
{
public:
    Pipe();
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

/** A program that was started. It is killed, if it still runs, and waited for with the object. */
class StartedProcess
{
public:
    StartedProcess(const QString &program, const QStringList &arguments, const ProcessInput &input);
    ~StartedProcess();
    StartedProcess(const StartedProcess &) = delete;
    StartedProcess &operator=(const StartedProcess &) = delete;

    bool isStarted() const { return m_id > 0; }
    pid_t id() const { return m_id; }

    /** Waits for the end; the status as `waitpid` gives it. Once per process. */
    int wait();

    Pipe in;
    Pipe out;
    Pipe err;

private:
    pid_t m_id = 0;
};

/** Reads what is there into `text`; false at the end of the pipe. */
bool readSome(int descriptor, QByteArray &text);
