#include "apps/doctor/child.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstring>

#include <fcntl.h>
#include <linux/landlock.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "apps/process/standard_streams.h"
#include "common/write_all.h"

namespace app::doctor
{

namespace
{

constexpr int MOST_BYTES = 256 * 1024;
constexpr int LOOK_MS = 2;
constexpr char END_MARK[] = "\x04"; ///< the last line

class ReadPipe
{
public:
    ReadPipe()
    {
        if (::pipe2(m_ends.data(), O_CLOEXEC) != 0)
            m_ends = {-1, -1};
    }
    ~ReadPipe()
    {
        closeEnd(0);
        closeEnd(1);
    }
    ReadPipe(const ReadPipe &) = delete;
    ReadPipe &operator=(const ReadPipe &) = delete;

    bool isOpen() const { return m_ends[0] >= 0; }
    int readEnd() const { return m_ends[0]; }
    int writeEnd() const { return m_ends[1]; }
    void closeWriteEnd() { closeEnd(1); }
    void dontWait() const { ::fcntl(m_ends[0], F_SETFL, O_NONBLOCK); }

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
    void closeEnd(std::size_t end)
    {
        if (m_ends.at(end) >= 0)
            ::close(m_ends.at(end));
        m_ends.at(end) = -1;
    }

    std::array<int, 2> m_ends = {-1, -1};
};

/** Whatever would write to the file system is refused from now on; older kernels cannot. */
void forbidWriting()
{
    landlock_ruleset_attr rules{};
    rules.handled_access_fs = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                              LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                              LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG |
                              LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO |
                              LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;
    const long ruleset = ::syscall(SYS_landlock_create_ruleset, &rules, sizeof(rules), 0);
    if (ruleset < 0)
        return;
    const int descriptor = static_cast<int>(ruleset);
    // Devices are no files: screens and /dev/null are written to.
    landlock_path_beneath_attr devices{};
    devices.allowed_access = LANDLOCK_ACCESS_FS_WRITE_FILE;
    devices.parent_fd = ::open("/dev", O_PATH | O_CLOEXEC);
    ::syscall(SYS_landlock_add_rule, descriptor, LANDLOCK_RULE_PATH_BENEATH, &devices, 0);
    ::close(devices.parent_fd);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    ::syscall(SYS_landlock_restrict_self, descriptor, 0);
    ::close(descriptor);
}

[[noreturn]] void runChild(const std::function<void(const Telling &)> &work, int output, int log,
                           FileWriting writing)
{
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::prctl(PR_SET_DUMPABLE, 0);
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    const int empty = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::dup2(empty, STDIN_FILENO);
    ::dup2(log, STDOUT_FILENO);
    ::dup2(log, STDERR_FILENO);
    showForeignOutput();
    if (writing == FileWriting::Forbidden)
        forbidWriting();
    const auto tellAll = [output](const QByteArray &line) {
        const QByteArray text = line + '\n';
        writeAll(output, text.constData(), static_cast<std::size_t>(text.size()));
    };
    work(tellAll);
    tellAll(END_MARK);
    ::_exit(0);
}

QString describe(int status)
{
    if (!WIFSIGNALED(status))
        return QStringLiteral("it ended the program with the status %1").arg(WEXITSTATUS(status));
    const int number = WTERMSIG(status);
    return QStringLiteral("signal %1, %2").arg(number).arg(QLatin1String(::strsignal(number)));
}

} // namespace

ChildRun runInChild(const std::function<void(const Telling &tell)> &work, int timeoutMs,
                    FileWriting writing)
{
    using Clock = std::chrono::steady_clock;
    ChildRun run;
    ReadPipe output;
    ReadPipe log;
    const pid_t child = output.isOpen() && log.isOpen() ? ::fork() : -1;
    if (child < 0) {
        run.end = ChildRun::End::Crashed;
        run.how = QStringLiteral("no process could be started: %1")
                      .arg(QString::fromLocal8Bit(std::strerror(errno)));
        return run;
    }
    if (child == 0)
        runChild(work, output.writeEnd(), log.writeEnd(), writing);
    ::setpgid(child, child); // whoever is first
    output.closeWriteEnd();
    log.closeWriteEnd();
    output.dontWait();
    log.dontWait();

    const auto limit = Clock::now() + std::chrono::milliseconds(timeoutMs);
    int status = 0;
    bool hasEnded = false;
    while (!hasEnded && Clock::now() < limit) {
        hasEnded = ::waitpid(child, &status, WNOHANG) == child;
        output.take(&run.output);
        log.take(&run.log);
        // The end of a pipe may come before that of the child, and after it where it has children.
        if (!hasEnded)
            ::poll(nullptr, 0, LOOK_MS);
    }
    ::kill(-child, SIGKILL);
    if (!hasEnded)
        ::waitpid(child, &status, 0);
    output.take(&run.output);
    log.take(&run.log);

    if (!hasEnded) {
        run.end = ChildRun::End::TimedOut;
    } else if (!run.output.endsWith(QByteArray(END_MARK) + '\n')) {
        run.end = ChildRun::End::Crashed;
        run.how = describe(status);
    }
    return run;
}

} // namespace app::doctor
