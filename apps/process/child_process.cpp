#include "apps/process/child_process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
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

constexpr int MOST_BYTES = 256 * 1024;
constexpr int LOOK_MS = 2;
constexpr char END_MARK[] = "\x04\n"; ///< the last line: an exit without it is a crash

class ReadPipe
{
public:
    ReadPipe()
    {
        if (::pipe2(m_ends.data(), O_CLOEXEC) != 0)
            m_ends = {-1, -1};
        else
            ::fcntl(m_ends[0], F_SETFL, O_NONBLOCK);
    }
    ~ReadPipe()
    {
        ::close(m_ends[0]);
        closeWriteEnd();
    }
    ReadPipe(const ReadPipe &) = delete;
    ReadPipe &operator=(const ReadPipe &) = delete;

    bool isOpen() const { return m_ends[0] >= 0; }
    int writeEnd() const { return m_ends[1]; }
    void closeWriteEnd() { ::close(std::exchange(m_ends[1], -1)); }

    /** Takes what is there; what is beyond the limit is dropped. */
    void take(QByteArray *text) const
    {
        std::array<char, 4096> buffer{};
        ssize_t count = 0;
        while ((count = ::read(m_ends[0], buffer.data(), buffer.size())) > 0) {
            if (text->size() < MOST_BYTES)
                text->append(buffer.data(), static_cast<int>(count));
        }
    }

private:
    std::array<int, 2> m_ends = {-1, -1};
};

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

ChildRun runInChild(const std::function<void(const SendValues &send)> &work, int timeoutMs)
{
    ChildRun run;
    ReadPipe channel;
    ReadPipe log;
    const pid_t child = channel.isOpen() && log.isOpen() ? ::fork() : -1;
    if (child < 0) {
        run.end = ChildRun::End::CRASHED;
        run.how = tr("no process could be started: %1").arg(systemError(errno));
        return run;
    }
    if (child == 0)
        runChild(work, channel.writeEnd(), log.writeEnd());
    ::setpgid(child, child); // whichever of the two is first
    channel.closeWriteEnd();
    log.closeWriteEnd();

    QByteArray lines;
    QElapsedTimer time;
    time.start();
    int status = 0;
    bool hasEnded = false;
    while (!hasEnded && !time.hasExpired(timeoutMs)) {
        hasEnded = ::waitpid(child, &status, WNOHANG) == child;
        channel.take(&lines);
        log.take(&run.log);
        // The end of a pipe may come before that of the child, and after it where it has children.
        if (!hasEnded)
            ::poll(nullptr, 0, LOOK_MS);
    }
    ::kill(-child, SIGKILL);
    if (!hasEnded)
        ::waitpid(child, &status, 0);
    channel.take(&lines);
    log.take(&run.log);

    run.values = merged(lines);
    if (!hasEnded) {
        run.end = ChildRun::End::TIMED_OUT;
    } else if (!lines.endsWith(END_MARK)) {
        run.end = ChildRun::End::CRASHED;
        run.how = describe(status);
    }
    return run;
}

} // namespace app
