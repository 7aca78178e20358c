#include "tests/support/process.h"

#include <cerrno>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>

#include "apps/process/child_process.h"

// Not with QProcess: what it asks of the kernel to hear of a child's end is not what qemu-user
// answers, so that every child seems to have crashed.

namespace
{

using Clock = std::chrono::steady_clock;

Clock::time_point after(int milliseconds)
{
    return Clock::now() + std::chrono::milliseconds(milliseconds);
}

/** What is to be started, and with which environment. */
struct Start {
    QByteArrayList command;
    QByteArrayList environment;
};

QByteArrayList encoded(const QStringList &words)
{
    QByteArrayList bytes;
    for (const QString &word : words)
        bytes << word.toUtf8();
    return bytes;
}

Start startOf(const QString &program, const QStringList &arguments, const ProcessInput &input)
{
    const QString path =
        QFileInfo(program).isAbsolute() ? program : QDir(IDCARD_BUILD_BIN_DIR).filePath(program);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (auto it = input.environment.cbegin(); it != input.environment.cend(); ++it) {
        if (it.value().isNull())
            environment.remove(it.key());
        else
            environment.insert(it.key(), it.value());
    }
    return {encoded(QStringList{path} + arguments), encoded(environment.toStringList())};
}

/** Reads what is there into `text`, and closes the pipe at its end. */
void readSome(Pipe &pipe, QByteArray &text)
{
    char buffer[4096];
    const ssize_t count = ::read(pipe.readEnd(), buffer, sizeof(buffer));
    if (count > 0)
        text.append(buffer, static_cast<int>(count));
    else if (count == 0 || errno != EINTR)
        pipe.closeReadEnd();
}

/** What a program writes to: the file, or the pipe if that has no name. To be closed. */
int writtenTo(const QString &file, const Pipe &pipe)
{
    const int descriptor =
        file.isEmpty() ? ::fcntl(pipe.writeEnd(), F_DUPFD_CLOEXEC, 0)
                       : ::open(file.toStdString().c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    EXPECT_GE(descriptor, 0) << file.toStdString();
    return descriptor;
}

} // namespace

void expectEnd(const ProcessResult &run, int exitStatus, const std::string &error)
{
    EXPECT_TRUE(run.finished) << "signal " << run.signal;
    EXPECT_EQ(run.exitStatus, exitStatus) << run.error();
    EXPECT_THAT(run.error(), testing::HasSubstr(error));
    EXPECT_TRUE(!error.empty() || run.standardError.isEmpty()) << run.error();
}

Pipe::Pipe(bool isSocket)
{
    const int made = isSocket ? ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, m_ends)
                              : ::pipe2(m_ends, O_CLOEXEC);
    if (made != 0)
        m_ends[0] = m_ends[1] = -1;
}

Pipe::~Pipe()
{
    closeReadEnd();
    closeWriteEnd();
}

void Pipe::closeEnd(int &end)
{
    if (end >= 0)
        ::close(end);
    end = -1;
}

RunningProcess::RunningProcess(const QString &program, const QStringList &arguments,
                               const ProcessInput &input)
    : m_timeoutMs(input.timeoutMs), m_out(input.standardOutput == StandardOutput::SOCKET)
{
    std::signal(SIGPIPE, SIG_IGN);
    ::fcntl(m_in.writeEnd(), F_SETFL, O_NONBLOCK);
    if (input.standardOutput == StandardOutput::BROKEN_PIPE)
        m_out.closeReadEnd();
    const Start start = startOf(program, arguments, input);
    const int out = writtenTo(input.standardOutputFile, m_out);
    const int err = writtenTo(input.standardErrorFile, m_err);
    const std::string folder = input.workingDirectory.toStdString();
    m_id = app::startChild(start.command, start.environment, {m_in.readEnd(), out, err}, [&] {
        // Not `close` and `chdir`: the emulated bus has its own, with locks that a thread of this
        // process may hold for ever in the child.
        if (input.standardOutput == StandardOutput::CLOSED)
            ::syscall(SYS_close, STDOUT_FILENO);
        if (!folder.empty())
            ::syscall(SYS_chdir, folder.c_str());
        // As a shell would give them, whatever this process ignores.
        std::signal(SIGXFSZ, SIG_DFL);
        if (!input.ignoresBrokenPipes)
            std::signal(SIGPIPE, SIG_DFL);
    });
    ::close(out);
    ::close(err);
    if (m_id < 0)
        ADD_FAILURE() << program.toStdString() << " cannot be started";
    m_in.closeReadEnd();
    m_out.closeWriteEnd();
    m_err.closeWriteEnd();
    write(input.standardInput);
}

RunningProcess::~RunningProcess()
{
    if (m_id > 0) {
        ::kill(m_id, SIGKILL);
        wait();
    }
}

void RunningProcess::write(const QByteArray &bytes)
{
    m_input += bytes;
    writeSome();
}

void RunningProcess::writeSome()
{
    const ssize_t count =
        ::write(m_in.writeEnd(), m_input.constData(), static_cast<std::size_t>(m_input.size()));
    if (count >= 0)
        m_input.remove(0, static_cast<int>(count));
    else if (errno != EAGAIN && errno != EINTR)
        m_input.clear(); // the program does not want the rest
    if (m_input.isEmpty() && m_isInputEnded)
        m_in.closeWriteEnd();
}

void RunningProcess::closeStandardInput()
{
    m_isInputEnded = true;
    writeSome();
}

static void signalTo(pid_t id, int number)
{
    ASSERT_GT(id, 0); // 0 is the test's own group
    ASSERT_EQ(::kill(id, number), 0);
}

void RunningProcess::signal(int number) const
{
    signalTo(m_id, number);
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

QByteArray RunningProcess::nextBytes(int count)
{
    const auto limit = after(m_timeoutMs);
    while (m_output.size() < count && collectSome(limit)) {
    }
    const QByteArray bytes = m_output.left(count);
    m_output.remove(0, bytes.size());
    return bytes;
}

bool RunningProcess::waitForError(const QByteArray &part)
{
    return collectUntil(m_error, part);
}

bool RunningProcess::endsWithin(int milliseconds)
{
    const auto limit = after(milliseconds);
    while (collectSome(limit)) {
    }
    return m_out.readEnd() < 0 && m_err.readEnd() < 0;
}

bool RunningProcess::collectUntil(const QByteArray &text, const QByteArray &part)
{
    const auto limit = after(m_timeoutMs);
    while (!text.contains(part)) {
        if (!collectSome(limit))
            return text.contains(part);
    }
    return true;
}

// Hands over and collects what can be now; false when both outputs have ended or time is up.
bool RunningProcess::collectSome(Time limit)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(limit - Clock::now()).count();
    if (left <= 0 || (m_out.readEnd() < 0 && m_err.readEnd() < 0))
        return false;
    pollfd streams[] = {{m_out.readEnd(), POLLIN, 0},
                        {m_err.readEnd(), POLLIN, 0},
                        {m_input.isEmpty() ? -1 : m_in.writeEnd(), POLLOUT, 0}};
    if (::poll(streams, 3, static_cast<int>(left)) == 0)
        return false;
    if (streams[0].revents != 0)
        readSome(m_out, m_output);
    if (streams[1].revents != 0)
        readSome(m_err, m_error);
    if (streams[2].revents != 0)
        writeSome();
    return true;
}

int RunningProcess::wait()
{
    int status = 0;
    while (::waitpid(m_id, &status, 0) < 0 && errno == EINTR) {
    }
    m_id = 0;
    return status;
}

ProcessResult RunningProcess::result()
{
    ProcessResult result;
    if (m_id <= 0)
        return result;
    closeStandardInput();
    const bool ended = endsWithin(m_timeoutMs);
    if (!ended)
        ::kill(m_id, SIGKILL);
    const int status = wait();
    result.finished = ended && WIFEXITED(status);
    if (WIFEXITED(status))
        result.exitStatus = WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        result.signal = WTERMSIG(status);
    result.standardOutput = m_output;
    result.standardError = m_error;
    return result;
}

namespace
{

/** The letter that the kernel shows for a process, or a thread of one; empty once it has gone. */
QByteArray stateOf(const QString &folder)
{
    QFile file(folder + QStringLiteral("/stat"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray line = file.readAll();
    return line.mid(line.lastIndexOf(')') + 2, 1);
}

/** Whether no thread of the process runs. */
bool isHalted(pid_t id)
{
    const QString folder = QStringLiteral("/proc/%1/task/").arg(id);
    const QStringList threads = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return std::all_of(threads.begin(), threads.end(), [&folder](const QString &thread) {
        const QByteArray state = stateOf(folder + thread);
        return state.isEmpty() || state == "T";
    });
}

} // namespace

bool isRunning(pid_t id)
{
    const QByteArray state = stateOf(QStringLiteral("/proc/%1").arg(id));
    return !state.isEmpty() && state != "Z";
}

HaltedProcess::HaltedProcess(pid_t id) : m_id(id)
{
    constexpr int LIMIT_MS = 10000;
    signalTo(m_id, SIGSTOP);
    const Clock::time_point limit = after(LIMIT_MS);
    while (!isHalted(m_id) && Clock::now() < limit)
        ::usleep(200);
}

HaltedProcess::~HaltedProcess()
{
    signalTo(m_id, SIGCONT);
}

ProcessResult runProcess(const QString &program, const QStringList &arguments,
                         const ProcessInput &input)
{
    return RunningProcess(program, arguments, input).result();
}
