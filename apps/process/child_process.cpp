#include "apps/process/child_process.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "apps/process/core_dumps.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "common/texts.h"
#include "common/write_all.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Process)

constexpr qint64 MOST_READ = 262144;
constexpr rlim_t MOST_WRITTEN = 16777216; ///< to any file, so also in memory
constexpr int LOOK_MS = 2;
constexpr char END_MARK[] = "\x04\n"; ///< the last line: an exit without it is a crash

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

/** Closes what this process had open, except the standard streams and one more. */
void closeFilesBut(int kept)
{
    const QStringList open =
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System);
    for (const QString &number : open) {
        bool isNumber = false;
        const int descriptor = number.toInt(&isNumber);
        if (isNumber && descriptor > STDERR_FILENO && descriptor != kept)
            ::close(descriptor);
    }
}

void writeTo(int descriptor, const QByteArray &text)
{
    writeAll(descriptor, text.constData(), static_cast<std::size_t>(text.size()));
}

[[noreturn]] void runChild(const std::function<void(const SendValues &)> &work, int channel,
                           int log)
{
    const rlimit limit{MOST_WRITTEN, MOST_WRITTEN};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN); // what is beyond the limit is dropped
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::prctl(PR_SET_DUMPABLE, 0);
    forbidCoreDumps();
    ::dup2(::open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    ::dup2(log, STDERR_FILENO);
    closeFilesBut(channel);
    showForeignOutput(); // standard output goes the same way
    work([channel](const JsonObject &values) {
        writeTo(channel, QJsonDocument(values).toJson(QJsonDocument::Compact) + '\n');
    });
    writeTo(channel, END_MARK);
    ::_exit(0);
}

QString describe(int status)
{
    if (!WIFSIGNALED(status))
        return tr("it ended the program with the status %1").arg(WEXITSTATUS(status));
    const int number = WTERMSIG(status);
    return filledIn(tr("signal %1, %2"), QString::number(number),
                    translatedSystemText(QString::fromLocal8Bit(::strsignal(number))));
}

JsonObject merged(const QByteArray &lines)
{
    JsonObject all;
    for (const QByteArray &line : lines.split('\n')) {
        const QJsonObject values = QJsonDocument::fromJson(line).object();
        for (auto it = values.begin(); it != values.end(); ++it)
            all.insert(it.key(), it.value());
    }
    return all;
}

} // namespace

void learnHowChildrenEnd()
{
    std::signal(SIGCHLD, SIG_DFL);
}

ChildRun runInChild(const std::function<void(const SendValues &send)> &work, int timeoutMs)
{
    ChildRun run;
    QFile channel;
    QFile log;
    openForChild(&channel);
    openForChild(&log);
    const pid_t child = channel.handle() >= 0 && log.handle() >= 0 ? ::fork() : -1;
    if (child < 0) {
        run.end = ChildRun::End::CRASHED;
        run.how = tr("no process could be started: %1").arg(systemError(errno));
        return run;
    }
    if (child == 0)
        runChild(work, channel.handle(), log.handle());
    ::setpgid(child, child); // whichever of the two is first

    QElapsedTimer time;
    time.start();
    int status = 0;
    bool hasEnded = false;
    while (!hasEnded && !time.hasExpired(timeoutMs)) {
        hasEnded = ::waitpid(child, &status, WNOHANG) == child;
        if (!hasEnded)
            ::poll(nullptr, 0, LOOK_MS);
    }
    ::kill(-child, SIGKILL);
    if (!hasEnded)
        ::waitpid(child, &status, 0);

    const QByteArray lines = contentOf(&channel);
    run.values = merged(lines);
    run.log = contentOf(&log);
    if (!hasEnded) {
        run.end = ChildRun::End::TIMED_OUT;
    } else if (!lines.endsWith(END_MARK)) {
        run.end = ChildRun::End::CRASHED;
        run.how = describe(status);
    }
    return run;
}

} // namespace app
