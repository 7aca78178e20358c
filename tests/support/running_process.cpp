#include "tests/support/running_process.h"

#include <algorithm>
#include <chrono>
#include <csignal>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/process_start.h"

namespace
{

using Clock = std::chrono::steady_clock;

int millisecondsUntil(Clock::time_point time)
{
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(time - Clock::now());
    return static_cast<int>(std::max<long long>(0, left.count()));
}

} // namespace

RunningProcess::RunningProcess(const QString &program, const QStringList &arguments,
                               const ProcessInput &input)
    : m_process(std::make_unique<StartedProcess>(program, arguments, input)),
      m_timeoutMs(input.timeoutMs)
{
    EXPECT_TRUE(m_process->isStarted()) << program.toStdString();
    write(input.standardInput);
}

RunningProcess::~RunningProcess() = default;

void RunningProcess::write(const QByteArray &bytes)
{
    int written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(m_process->in.writeEnd(), bytes.constData() + written,
                                      static_cast<std::size_t>(bytes.size() - written));
        if (count < 0)
            return; // the program does not want the rest
        written += static_cast<int>(count);
    }
}

void RunningProcess::closeStandardInput()
{
    m_process->in.closeWriteEnd();
}

void RunningProcess::closeStandardOutput()
{
    m_process->out.closeReadEnd();
}

void RunningProcess::signal(int number)
{
    ASSERT_GT(m_process->id(), 0); // 0 is the test's own group
    ASSERT_EQ(::kill(m_process->id(), number), 0);
}

int RunningProcess::id() const
{
    return m_process->id();
}

QByteArray RunningProcess::nextLine()
{
    if (!collectUntil(m_output, "\n"))
        return {};
    const int end = m_output.indexOf('\n');
    QByteArray line = m_output.left(end);
    m_output.remove(0, end + 1);
    return line;
}

bool RunningProcess::hasTold(const QByteArray &part)
{
    return collectUntil(m_error, part);
}

bool RunningProcess::collectUntil(const QByteArray &text, const QByteArray &part)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(m_timeoutMs);
    while (!text.contains(part)) {
        const int left = millisecondsUntil(deadline);
        if (left == 0 || !collectSome(left))
            return text.contains(part);
    }
    return true;
}

// Reads once from each stream that has something; false when both have ended or time is up.
bool RunningProcess::collectSome(int timeoutMs)
{
    Pipe &out = m_process->out;
    Pipe &err = m_process->err;
    if (out.readEnd() < 0 && err.readEnd() < 0)
        return false;
    pollfd descriptors[] = {{out.readEnd(), POLLIN, 0}, {err.readEnd(), POLLIN, 0}};
    if (::poll(descriptors, 2, timeoutMs) == 0)
        return false;
    if (descriptors[0].revents != 0 && !readSome(out.readEnd(), m_output))
        out.closeReadEnd();
    if (descriptors[1].revents != 0 && !readSome(err.readEnd(), m_error))
        err.closeReadEnd();
    return true;
}

ProcessResult RunningProcess::result()
{
    closeStandardInput();
    const auto deadline = Clock::now() + std::chrono::milliseconds(m_timeoutMs);
    while (collectSome(millisecondsUntil(deadline))) {
    }
    const bool ended = m_process->out.readEnd() < 0 && m_process->err.readEnd() < 0;
    if (!ended)
        ::kill(m_process->id(), SIGKILL);
    const int status = m_process->wait();
    ProcessResult result;
    result.finished = ended && WIFEXITED(status);
    if (WIFEXITED(status))
        result.exitStatus = WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        result.signal = WTERMSIG(status);
    result.standardOutput = m_output;
    result.standardError = m_error;
    return result;
}
