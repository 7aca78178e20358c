#include "tests/tool/tool_runner.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QProcessEnvironment>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

#include "simulator/card/card_library.h"

namespace
{

constexpr int TIMEOUT_MS = 60000;
const char *const TOOL = "idcard-reader";

QMap<QString, QString> cleanEnvironment(QMap<QString, QString> variables)
{
    for (const char *name : {"IDCARD_SIMULATOR_CARD", "IDCARD_SIMULATOR_FAULTS",
                             "IDCARD_SIMULATOR_LIBRARY", "DISPLAY", "WAYLAND_DISPLAY"}) {
        if (!variables.contains(QLatin1String(name)))
            variables.insert(QLatin1String(name), QString());
    }
    return variables;
}

/** The tool as it must be started here: in a cross build behind the emulator. */
QStringList toolCommand(const QStringList &arguments)
{
    QStringList command;
    const QString emulator = qEnvironmentVariable("IDCARD_TEST_EMULATOR");
    if (!emulator.isEmpty())
        command << emulator;
    return command << QDir(QStringLiteral(IDCARD_BUILD_BIN_DIR)).filePath(QLatin1String(TOOL))
                   << arguments;
}

} // namespace

ProcessResult runTool(const QStringList &arguments, const ProcessInput &input)
{
    ProcessInput cleaned = input;
    cleaned.environment = cleanEnvironment(input.environment);
    return runProcess(QLatin1String(TOOL), arguments, cleaned);
}

class RunningTool::Process : public QProcess
{
public:
    ~Process() override
    {
        if (pipe >= 0)
            ::close(pipe);
    }

    bool closesStandardOutput = false;
    int pipe = -1; ///< in the place of standard output; negative: none
    bool ignoresLoss = false;

protected:
    void setupChildProcess() override
    {
        if (closesStandardOutput)
            ::close(STDOUT_FILENO);
        if (pipe >= 0)
            ::dup2(pipe, STDOUT_FILENO);
        if (ignoresLoss)
            std::signal(SIGPIPE, SIG_IGN);
    }
};

RunningTool::RunningTool(const QStringList &arguments, const QMap<QString, QString> &variables)
    : m_process(std::make_unique<Process>()), m_command(toolCommand(arguments))
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QMap<QString, QString> cleaned = cleanEnvironment(variables);
    for (auto it = cleaned.cbegin(); it != cleaned.cend(); ++it) {
        if (it.value().isNull())
            environment.remove(it.key());
        else
            environment.insert(it.key(), it.value());
    }
    m_process->setProcessEnvironment(environment);
}

RunningTool::~RunningTool()
{
    if (m_process->state() != QProcess::NotRunning) {
        m_process->kill();
        m_process->waitForFinished();
    }
}

QProcess &RunningTool::process()
{
    return *m_process;
}

void RunningTool::closeStandardOutput()
{
    m_process->closesStandardOutput = true;
}

int RunningTool::pipeStandardOutput()
{
    int ends[2] = {-1, -1};
    EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    m_process->pipe = ends[1];
    return ends[0];
}

void RunningTool::ignoreLossOfReader()
{
    m_process->ignoresLoss = true;
}

void RunningTool::start()
{
    m_process->start(m_command.first(), m_command.mid(1));
    ASSERT_TRUE(m_process->waitForStarted());
}

QByteArray RunningTool::nextLine()
{
    QElapsedTimer time;
    time.start();
    m_process->setReadChannel(QProcess::StandardOutput);
    while (!m_process->canReadLine() && time.elapsed() < TIMEOUT_MS) {
        if (!m_process->waitForReadyRead(TIMEOUT_MS))
            break;
    }
    return m_process->readLine();
}

void RunningTool::signal(int number)
{
    ASSERT_EQ(m_process->state(), QProcess::Running); // else the test would signal its own group
    ASSERT_EQ(::kill(static_cast<pid_t>(m_process->processId()), number), 0);
}

ProcessResult RunningTool::result()
{
    ProcessResult result;
    result.finished =
        m_process->waitForFinished(TIMEOUT_MS) || m_process->state() == QProcess::NotRunning;
    if (m_process->exitStatus() == QProcess::NormalExit) {
        result.exitStatus = m_process->exitCode();
    } else {
        result.finished = false;
        result.signal = m_process->exitCode();
    }
    result.standardOutput = m_process->readAllStandardOutput();
    result.standardError = m_process->readAllStandardError();
    return result;
}

void expectEndByLossOfItsReader(const ProcessResult &run)
{
    EXPECT_EQ(run.signal, SIGPIPE);
    EXPECT_EQ(run.standardError.toStdString(), "");
}

QJsonObject parsedObject(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << json.toStdString();
    return document.object();
}

QVector<QJsonObject> parsedLines(const QByteArray &lines)
{
    QVector<QJsonObject> objects;
    if (lines.isEmpty())
        return objects;
    EXPECT_TRUE(lines.endsWith('\n'));
    for (const QByteArray &line : lines.left(lines.size() - 1).split('\n'))
        objects << parsedObject(line);
    return objects;
}

simulator::CardDescription builtInCard(const QString &name)
{
    simulator::DescriptionError error;
    const auto card = simulator::loadCard(name, &error);
    EXPECT_TRUE(card) << error.message().toStdString();
    return card.value_or(simulator::CardDescription());
}

InstalledReader::InstalledReader(const QString &fileName)
{
    const QString library = QDir(QStringLiteral(IDCARD_BUILD_LIB_DIR)).filePath(fileName);
    for (const char *name : {IDCARD_VENDOR_READER_LIBRARY, IDCARD_WLT_LIBRARY})
        EXPECT_TRUE(QFile::link(library, m_folder.filePath(QLatin1String(name))));
}

QMap<QString, QString> InstalledReader::variables(const QString &card, const QString &faults) const
{
    return {{QStringLiteral("LD_LIBRARY_PATH"), m_folder.path()},
            {QStringLiteral("IDCARD_SIMULATOR_CARD"), card},
            {QStringLiteral("IDCARD_SIMULATOR_FAULTS"), faults}};
}
