#include "apps/service/worker.h"

#include <csignal>
#include <utility>

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcessEnvironment>

#include <sys/prctl.h>

namespace app
{

namespace
{

// idcard-reader ends two seconds after SIGTERM, whatever its libraries do.
constexpr int TIME_TO_END_MS = 3000;
constexpr int TIME_TO_END_AFTER_OUTPUT_MS = 2000;
// All that a card has is about 100 kB of JSON.
constexpr int MOST_OUTPUT = 4 * 1024 * 1024;

/** Beside this program, where a build has it, or where it is installed. */
QString toolPath()
{
    const QString beside = QCoreApplication::applicationDirPath() + QLatin1String("/idcard-reader");
    return QFileInfo(beside).isExecutable()
               ? beside
               : QString::fromUtf8(IDCARD_INSTALL_BINDIR "/idcard-reader");
}

} // namespace

Worker::Worker(Take take, Ended ended) : m_take(std::move(take)), m_ended(std::move(ended))
{
    m_deadline.setSingleShot(true);
    m_force.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] { endBy(End::TIMED_OUT); });
    connect(&m_force, &QTimer::timeout, this, [this] { force(); });
    connect(this, &QProcess::readyReadStandardOutput, this, [this] { takeOutput(); });
    connect(this, &QProcess::readChannelFinished, this, [this] {
        if (!m_force.isActive())
            m_force.start(TIME_TO_END_AFTER_OUTPUT_MS);
    });
    connect(this, QOverload<int, ExitStatus>::of(&QProcess::finished), this,
            [this](int /*code*/, ExitStatus status) { finish(status); });
    connect(this, &QProcess::errorOccurred, this, [this](ProcessError error) {
        if (error == FailedToStart)
            finish(CrashExit);
    });
}

Worker::~Worker()
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

void Worker::run(const QStringList &arguments, int timeoutMs)
{
    setProgram(toolPath());
    setArguments(arguments);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QLatin1String(MALLOC_SETTINGS));
    setProcessEnvironment(environment);
    setStandardInputFile(nullDevice());
    setStandardErrorFile(nullDevice());
    if (timeoutMs > 0)
        m_deadline.start(timeoutMs);
    start(ReadOnly);
    // Until it is the tool, it has the handlers of this program, which a signal to end would wake.
    waitForStarted();
}

void Worker::stop()
{
    endBy(End::STOPPED);
}

void Worker::fail()
{
    m_end = End::FAILED;
    kill();
}

void Worker::setupChildProcess()
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
}

void Worker::endBy(End end)
{
    if (m_end != End::DONE)
        return;
    m_end = end;
    terminate();
    m_force.start(TIME_TO_END_MS);
}

void Worker::force()
{
    if (m_end != End::STOPPED)
        m_end = End::FAILED;
    kill();
}

void Worker::takeOutput()
{
    m_output += readAllStandardOutput();
    if (m_take)
        m_take(&m_output);
    if (m_output.size() > MOST_OUTPUT)
        fail();
}

void Worker::finish(ExitStatus status)
{
    m_deadline.stop();
    m_force.stop();
    if (status == CrashExit && m_end == End::DONE)
        m_end = End::FAILED;
    m_ended(m_end, m_output);
    m_output.fill('\0');
}

} // namespace app
