#include "tests/failure_injection/child.h"

#include <array>
#include <csignal>

#include <execinfo.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QtGlobal>

#include "tests/failure_injection/failing_memory.h"
#include "tests/support/forked_work.h"

namespace
{

#ifdef IDCARD_TEST_SAMPLE // under an emulator
constexpr unsigned int LIMIT_S = 8;
#else
constexpr unsigned int LIMIT_S = 2;
#endif
constexpr int MOST_FRAMES = 64;
constexpr int PLACES = 6;

int reportTo = -1;

void send(const char *bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(reportTo, bytes, size);
        if (written <= 0)
            return;
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

/** Ends the child though what follows should wait for what it has interrupted. */
void endSoon()
{
    std::signal(SIGALRM, SIG_DFL);
    sigset_t alarm{};
    sigemptyset(&alarm);
    sigaddset(&alarm, SIGALRM);
    sigprocmask(SIG_UNBLOCK, &alarm, nullptr);
    ::alarm(LIMIT_S);
}

/** Reports where the child crashes. Not what a handler may do, but the child is lost anyhow. */
void tellCrash(int number)
{
    std::signal(number, SIG_DFL);
    endSoon();
    failure_injection::stopMemory();
    failure_injection::dropAccount();
    std::array<void *, MOST_FRAMES> frames{};
    const int count = ::backtrace(frames.data(), MOST_FRAMES);
    const std::string place = std::string("\n!") + (number == SIGALRM ? "hangs: " : "") +
                              failure_injection::innermostPlaces(frames.data(), count, PLACES);
    send(place.data(), place.size());
    ::raise(number);
}

[[noreturn]] void workAndEnd(const std::function<QByteArray()> &work)
{
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nowhere, STDERR_FILENO);
    qInstallMessageHandler(nullptr); // Qt may warn that it lacks memory
    for (const int number : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGALRM})
        std::signal(number, tellCrash);
    ::alarm(LIMIT_S);
    const QByteArray report = work();
    send(report.constData(), static_cast<std::size_t>(report.size()));
    ::_exit(0);
}

} // namespace

failure_injection::ChildOutcome
failure_injection::runInChild(const std::function<QByteArray()> &work)
{
    const ForkedWork::End end = ForkedWork([&work](int report) {
                                    reportTo = report;
                                    workAndEnd(work);
                                }).wait();
    ChildOutcome outcome;
    if (end.status < 0)
        return outcome;
    outcome.ended = WIFEXITED(end.status) && WEXITSTATUS(end.status) == 0;
    outcome.signal = WIFSIGNALED(end.status) ? WTERMSIG(end.status) : 0;
    outcome.report = end.report;
    const int mark = end.report.indexOf("\n!");
    if (mark >= 0) {
        outcome.place = end.report.mid(mark + 2);
        outcome.report.truncate(mark);
    }
    return outcome;
}
