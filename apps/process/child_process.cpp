#include "apps/process/child_process.h"

#include <cerrno>
#include <csignal>
#include <vector>

#include <QElapsedTimer>
#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "apps/process/core_dumps.h"
#include "apps/process/interruption.h"
#include "common/write_all.h"

namespace app
{

namespace
{

constexpr qint64 MOST_READ = 262144;
constexpr rlim_t MOST_WRITTEN = 16777216; ///< to any file, so also in memory
constexpr int MOST_FILES = 1024;          ///< that a host leaves open, by the usual limit
constexpr int LOOK_MS = 2;
constexpr int NOT_STARTED = 127; ///< as a shell ends then

/** As the system wants them. */
std::vector<char *> pointersTo(QByteArrayList &words)
{
    std::vector<char *> pointers;
    for (QByteArray &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

/** In memory, for a child to fill. */
void openForChild(QFile *file)
{
    file->open(::memfd_create("child", MFD_CLOEXEC), QIODevice::ReadOnly,
               QFileDevice::AutoCloseHandle);
}

QByteArray contentOf(QFile *file)
{
    file->seek(0);
    return file->read(MOST_READ);
}

/** In the child. */
void limitChild()
{
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit limit{MOST_WRITTEN, MOST_WRITTEN};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN); // what is beyond the limit is dropped
    forbidCoreDumps();
    for (int file = STDERR_FILENO + 1; file < MOST_FILES; ++file)
        ::fcntl(file, F_SETFD, FD_CLOEXEC);
}

} // namespace

void learnHowChildrenEnd()
{
    std::signal(SIGCHLD, SIG_DFL);
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGCHLD);
    ::pthread_sigmask(SIG_UNBLOCK, &ends, nullptr);
}

pid_t startChild(const QByteArrayList &command, const QByteArrayList &environment,
                 const std::array<int, 3> &streams, const std::function<void()> &prepare)
{
    QByteArrayList words = command;
    QByteArrayList settings = environment;
    const std::vector<char *> arguments = pointersTo(words);
    const std::vector<char *> variables = pointersTo(settings);
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    std::array<int, 2> failure = {-1, -1}; // closed without a word once the child is the program
    pid_t child = ::pipe2(failure.data(), O_CLOEXEC) == 0 ? ::fork() : -1;
    if (child == 0) {
        int number = STDIN_FILENO;
        for (const int stream : streams)
            ::dup2(stream < 0 ? null : stream, number++);
        prepare();
        ::execvpe(arguments[0], arguments.data(), settings.isEmpty() ? environ : variables.data());
        writeAll(failure[1], &errno, sizeof(errno));
        ::_exit(NOT_STARTED);
    }
    int error = errno;
    ::close(failure[1]);
    if (child > 0 && ::read(failure[0], &error, sizeof(error)) > 0) {
        ::waitpid(child, nullptr, 0);
        child = -1;
    }
    ::close(failure[0]);
    ::close(null);
    errno = error;
    return child;
}

ChildEnd runChild(const QStringList &command, int timeoutMs, Collected collected)
{
    QByteArrayList words;
    for (const QString &word : command)
        words << QFile::encodeName(word);
    QFile output;
    QFile errorOutput;
    openForChild(&output);
    openForChild(&errorOutput);
    const int kept = collected == Collected::BOTH ? output.handle() : -1;
    const pid_t child = startChild(words, {}, {-1, kept, errorOutput.handle()}, limitChild);
    ChildEnd end;
    if (child < 0) {
        end.error = errno;
        return end;
    }
    QElapsedTimer time;
    time.start();
    int status = 0;
    while (!end.status && !time.hasExpired(timeoutMs) && !isInterrupted()) {
        if (::waitpid(child, &status, WNOHANG) == child)
            end.status = status;
        else
            ::poll(nullptr, 0, LOOK_MS);
    }
    ::kill(-child, SIGKILL);
    if (!end.status)
        ::waitpid(child, nullptr, 0);
    end.output = contentOf(&output);
    end.errorOutput = contentOf(&errorOutput);
    return end;
}

} // namespace app
