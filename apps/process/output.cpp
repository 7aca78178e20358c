#include "apps/process/output.h"

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "apps/process/interruption.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Process)

/** A closed standard stream would hand its number to the next file opened. */
void occupyClosedStandardStreams()
{
    const int null = ::open("/dev/null", O_RDWR);
    if (null < 0)
        return;
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (stream != null && ::fcntl(stream, F_GETFD) == -1)
            ::dup2(null, stream);
    }
    if (null > STDERR_FILENO)
        ::close(null);
}

void sendStandardOutputToNull()
{
    const int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (null < 0)
        return;
    ::dup2(null, STDOUT_FILENO);
    ::close(null);
}

} // namespace

Output::Output()
    // A number above the standard streams, also when one of them is closed.
    : m_descriptor(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1))
{
    if (m_descriptor < 0)
        m_error = errno;
    occupyClosedStandardStreams();
    sendStandardOutputToNull();
    // `write` then reports a lost reader, so the program still ends cleanly.
    m_isLossIgnored = std::signal(SIGPIPE, SIG_IGN) == SIG_IGN;
    std::signal(SIGXFSZ, SIG_IGN); // so it does a file that may not become so large
}

Output::~Output()
{
    close();
}

bool Output::write(const QByteArray &bytes)
{
    if (m_error == 0 && !writeUnlessInterrupted(m_descriptor, bytes))
        m_error = errno;
    return m_error == 0;
}

bool Output::close()
{
    if (m_descriptor >= 0 && ::close(m_descriptor) != 0 && m_error == 0)
        m_error = errno;
    m_descriptor = -1;
    return m_error == 0;
}

bool Output::isReaderGone()
{
    pollfd output = {m_descriptor, 0, 0}; // a pipe reports an error then, a socket that it hung up
    if (m_error == 0 && ::poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0)
        m_error = EPIPE;
    return m_error == EPIPE;
}

void Output::endIfReaderGone() const
{
    if (m_error != EPIPE || m_isLossIgnored)
        return;
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
}

QString Output::problem() const
{
    return m_error == 0 ? QString() : systemError(m_error);
}

ExitStatus closedWith(ExitStatus status, Output *output)
{
    output->close();
    if (output->problem().isEmpty())
        return status;
    output->endIfReaderGone();
    printMessage(tr("Standard output could not be written: %1. See that the file or the program it "
                    "goes to can take it all, and start again.")
                     .arg(output->problem()));
    return status == ExitStatus::DONE ? ExitStatus::PROGRAM_FAILED : status;
}

ExitStatus answer(const QString &problem, const QString &text, Output *output)
{
    if (!problem.isEmpty()) {
        printMessage(problem);
        return ExitStatus::WRONG_USAGE;
    }
    output->write(text.toUtf8());
    return ExitStatus::DONE;
}

} // namespace app
