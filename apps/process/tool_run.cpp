#include "apps/process/tool_run.h"

#include <csignal>
#include <utility>

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcessEnvironment>

#include <sys/prctl.h>

#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Process)

// idcard-reader ends two seconds after SIGTERM, whatever its libraries do.
constexpr int TIME_TO_END_MS = 3000;
constexpr int TIME_TO_END_AFTER_OUTPUT_MS = 2000;
// All that a card has is about 100 kB of JSON.
constexpr int MOST_OUTPUT = 4 * 1024 * 1024;

/** `problem` is Qt's: the function that failed, and what the system calls the error. */
QString notStartedText(const QString &program, const QString &problem)
{
    return filledIn(tr("%1 could not be started: %2."), program,
                    translatedSystemText(problem.section(QLatin1String(": "), -1)));
}

QString crashedText(int signal)
{
    return tr("It was ended by signal %1.").arg(signal);
}

QString endedText(int status)
{
    return tr("It ended with status %1.").arg(status);
}

} // namespace

QString toolPath()
{
    const QString beside = QCoreApplication::applicationDirPath() + QLatin1String("/idcard-reader");
    return QFileInfo(beside).isExecutable()
               ? beside
               : QString::fromUtf8(IDCARD_INSTALL_BINDIR "/idcard-reader");
}

ToolRun::ToolRun(Take take, Ended ended)
    : m_take(std::move(take)), m_ended(std::move(ended)), m_pipe([this] { takeOutput(); })
{
    m_deadline.setSingleShot(true);
    m_force.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] { endBy(End::TIMED_OUT); });
    connect(&m_force, &QTimer::timeout, this, [this] { force(); });
    connect(this, QOverload<int, ExitStatus>::of(&QProcess::finished), this,
            [this](int /*code*/, ExitStatus status) { finish(status); });
    connect(this, &QProcess::errorOccurred, this, [this](ProcessError error) {
        if (error == FailedToStart)
            finish(CrashExit);
    });
}

ToolRun::~ToolRun()
{
    disconnect(this, nullptr, this, nullptr);
    if (state() == NotRunning)
        return;
    terminate();
    if (!waitForFinished(TIME_TO_END_MS)) {
        kill();
        waitForFinished();
    }
}

void ToolRun::setLanguage(const QString &language)
{
    if (language.isEmpty())
        return;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LANGUAGE"), language);
    setProcessEnvironment(environment);
}

void ToolRun::run(const QStringList &arguments, int timeoutMs, const QString &tool)
{
    setProgram(tool);
    setArguments(arguments);
    setStandardInputFile(nullDevice());
    setStandardOutputFile(nullDevice()); // until the child has the pipe
    setStandardErrorFile(nullDevice());
    if (timeoutMs > 0)
        m_deadline.start(timeoutMs);
    start(ReadOnly);
    m_pipe.closeEndOfChild();
    // Until it is the tool, it has the handlers of this program, which a signal to end would wake.
    waitForStarted();
}

void ToolRun::stop()
{
    endBy(End::STOPPED);
}

void ToolRun::fail()
{
    m_end = End::FAILED;
    kill();
}

QString ToolRun::howItEnded() const
{
    if (!hasStarted())
        return notStartedText(program(), errorString());
    return exitStatus() == CrashExit ? crashedText(exitCode()) : endedText(exitCode());
}

void ToolRun::setupChildProcess()
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    m_pipe.becomeStandardOutput();
}

void ToolRun::endBy(End end)
{
    if (m_end != End::DONE)
        return;
    m_end = end;
    terminate();
    m_force.start(TIME_TO_END_MS);
}

void ToolRun::force()
{
    if (m_end != End::STOPPED)
        m_end = End::FAILED;
    kill();
}

void ToolRun::takeOutput()
{
    if (!m_pipe.takeInto(&m_output))
        return;
    if (m_take)
        letTake();
    else if (!m_force.isActive())
        m_force.start(TIME_TO_END_AFTER_OUTPUT_MS);
    if (m_output.size() > MOST_OUTPUT)
        fail();
}

/** Bytes that were taken would stay behind the end of the buffer. */
void ToolRun::letTake()
{
    m_take(&m_output);
    const QByteArray rest(m_output.constData(), m_output.size());
    m_output.fill('\0', m_output.capacity());
    m_output = rest;
}

void ToolRun::finish(ExitStatus status)
{
    takeOutput();
    m_pipe.close();
    m_deadline.stop();
    m_force.stop();
    if (status == CrashExit && m_end == End::DONE)
        m_end = End::FAILED;
    m_ended(m_end, m_output);
    m_output.fill('\0');
}

} // namespace app
