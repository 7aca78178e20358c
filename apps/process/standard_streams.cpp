#include "apps/process/standard_streams.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <utility>

#include <QtGlobal>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "apps/process/translation.h"
#include "common/texts.h"
#include "common/write_all.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Process)

bool foreignOutputShown = false;
int hiddenLogs = 0;
const char *nameOfProgram = "idcard-reader";

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

/** Every text that is painted asks for the same attribute, and Qt warns each time. */
bool isRepeatedAttributeWarning(const QString &message)
{
    static bool isShown = false;
    return message.startsWith(QLatin1String("Attribute Qt::")) && std::exchange(isShown, true);
}

void handleMessage(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    switch (type) {
    case QtDebugMsg:
    case QtInfoMsg:
    case QtWarningMsg: // Qt's own, on matters that no user of this program can judge
        if (foreignOutputShown && hiddenLogs == 0 && !isRepeatedAttributeWarning(message))
            printToStandardError(message + QLatin1Char('\n'));
        break;
    case QtCriticalMsg:
        printMessage(message);
        break;
    case QtFatalMsg:
        // Qt ends the process with a core dump after this; no user is helped by one.
        printMessage(message);
        printMessage(tr("Qt could not start. If there is no display here, unset DISPLAY and "
                        "WAYLAND_DISPLAY or set QT_QPA_PLATFORM=offscreen."));
        std::_Exit(static_cast<int>(ExitStatus::PROGRAM_FAILED));
    }
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
}

Output::~Output()
{
    close();
}

bool Output::write(const QByteArray &bytes)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    if (m_error == 0 && writeAll(m_descriptor, bytes.constData(), size) < size)
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
    pollfd output = {m_descriptor, 0, 0};
    if (m_error == 0 && ::poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0)
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

void showForeignOutput()
{
    foreignOutputShown = true;
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

void installMessageHandler()
{
    qInstallMessageHandler(handleMessage);
}

HiddenLog::HiddenLog()
{
    ++hiddenLogs;
}

HiddenLog::~HiddenLog()
{
    --hiddenLogs;
}

void setProgramName(const char *name)
{
    nameOfProgram = name;
}

const char *programName()
{
    return nameOfProgram;
}

QByteArray messageLine(const QString &message)
{
    return filledIn(QStringLiteral("%1: %2\n"), QLatin1String(nameOfProgram), message).toUtf8();
}

void printMessage(const QString &message)
{
    printToStandardError(QString::fromUtf8(messageLine(message)));
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

void printToStandardError(const QString &text)
{
    // A failure of this cannot be reported any more.
    const QByteArray bytes = text.toUtf8();
    writeAll(STDERR_FILENO, bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

bool isStandardErrorTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

} // namespace app
