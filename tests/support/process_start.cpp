#include "tests/support/process_start.h"

#include <cerrno>
#include <csignal>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QProcessEnvironment>

// Not with QProcess: what it asks of the kernel to hear of a child's end is not what qemu-user
// answers, so that every child seems to have crashed.

namespace
{

/** Words or settings as the null-terminated array of pointers that the system wants. */
class Words
{
public:
    explicit Words(const QStringList &words)
    {
        for (const QString &word : words)
            m_words.push_back(word.toStdString());
        for (std::string &word : m_words)
            m_pointers.push_back(word.data());
        m_pointers.push_back(nullptr);
    }
    char **data() { return m_pointers.data(); }

private:
    std::vector<std::string> m_words;
    std::vector<char *> m_pointers;
};

/** What is to be started, and with which environment. */
struct Start {
    QStringList command;
    QStringList environment;
};

Start startOf(const QString &program, const QStringList &arguments, const ProcessInput &input)
{
    const QString path =
        QFileInfo(program).isAbsolute() ? program : QDir(IDCARD_BUILD_BIN_DIR).filePath(program);
    const QString emulator =
        input.emulated ? qEnvironmentVariable("IDCARD_TEST_EMULATOR") : QString();

    Start start;
    if (!emulator.isEmpty())
        start.command << emulator;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!emulator.isEmpty())
        environment.remove(QStringLiteral("LD_PRELOAD")); // this program's, of another processor
    for (auto it = input.environment.cbegin(); it != input.environment.cend(); ++it) {
        if (it.value().isNull())
            environment.remove(it.key());
        else if (!emulator.isEmpty() && it.key().startsWith(QLatin1String("LD_")))
            // For the loader inside; the emulator's own loader must not see it.
            start.command << QStringLiteral("-E") << it.key() + '=' + it.value();
        else
            environment.insert(it.key(), it.value());
    }
    start.command << path << arguments;
    start.environment = environment.toStringList();
    return start;
}

} // namespace

Pipe::Pipe()
{
    if (pipe2(m_ends, O_CLOEXEC) != 0)
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
        close(end);
    end = -1;
}

StartedProcess::StartedProcess(const QString &program, const QStringList &arguments,
                               const ProcessInput &input)
{
    std::signal(SIGPIPE, SIG_IGN);
    const Start start = startOf(program, arguments, input);
    Words command(start.command);
    Words environment(start.environment);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in.readEnd(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out.writeEnd(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err.writeEnd(), STDERR_FILENO);
    const std::string folder = input.workingDirectory.toStdString();
    if (!folder.empty())
        posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    // The child gets signals as a shell would give them, whatever this process ignores.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    const int error = posix_spawnp(&m_id, command.data()[0], &actions, &attributes, command.data(),
                                   environment.data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        m_id = 0;
        return;
    }
    in.closeReadEnd();
    out.closeWriteEnd();
    err.closeWriteEnd();
}

StartedProcess::~StartedProcess()
{
    if (m_id > 0) {
        kill(m_id, SIGKILL);
        wait();
    }
}

int StartedProcess::wait()
{
    int status = 0;
    while (waitpid(m_id, &status, 0) < 0 && errno == EINTR) {
    }
    m_id = 0;
    return status;
}

bool readSome(int descriptor, QByteArray &text)
{
    char buffer[4096];
    const ssize_t count = read(descriptor, buffer, sizeof(buffer));
    if (count > 0)
        text.append(buffer, static_cast<int>(count));
    return count > 0 || (count < 0 && errno == EINTR);
}
