#include "tests/support/process.h"

#include <cerrno>
#include <chrono>
#include <csignal>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/process_start.h"

namespace
{

using Clock = std::chrono::steady_clock;

/** Hands over standard input and collects both outputs until they end; false at the time-out. */
bool exchange(StartedProcess &process, const ProcessInput &input, ProcessResult &result)
{
    Pipe &in = process.in;
    Pipe &out = process.out;
    Pipe &err = process.err;
    const auto deadline = Clock::now() + std::chrono::milliseconds(input.timeoutMs);
    int written = 0;
    while (out.readEnd() >= 0 || err.readEnd() >= 0) {
        if (written == input.standardInput.size())
            in.closeWriteEnd();
        pollfd descriptors[] = {
            {in.writeEnd(), POLLOUT, 0}, {out.readEnd(), POLLIN, 0}, {err.readEnd(), POLLIN, 0}};
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0 || poll(descriptors, 3, static_cast<int>(left.count())) == 0)
            return false;
        if (descriptors[0].revents != 0) {
            const ssize_t count = write(in.writeEnd(), input.standardInput.constData() + written,
                                        static_cast<size_t>(input.standardInput.size() - written));
            if (count < 0)
                written = input.standardInput.size(); // the program does not want the rest
            else
                written += static_cast<int>(count);
        }
        if (descriptors[1].revents != 0 && !readSome(out.readEnd(), result.standardOutput))
            out.closeReadEnd();
        if (descriptors[2].revents != 0 && !readSome(err.readEnd(), result.standardError))
            err.closeReadEnd();
    }
    return true;
}

} // namespace

ProcessResult runProcess(const QString &program, const QStringList &arguments,
                         const ProcessInput &input)
{
    StartedProcess process(program, arguments, input);
    ProcessResult result;
    if (!process.isStarted())
        return result;
    const bool ended = exchange(process, input, result);
    if (!ended)
        kill(process.id(), SIGKILL);
    const int status = process.wait();
    result.finished = ended && WIFEXITED(status);
    if (WIFEXITED(status))
        result.exitStatus = WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        result.signal = WTERMSIG(status);
    return result;
}
