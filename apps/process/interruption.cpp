#include "apps/process/interruption.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <initializer_list>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "apps/process/program_name.h"
#include "apps/process/translation.h"

namespace app
{

namespace
{

constexpr unsigned int SECONDS_LEFT_TO_A_READ = 2;
constexpr int MS_LEFT_TO_A_WRITE = 2000;

// Signal handlers and every thread may look at these.
using Flag = std::atomic<int>;
static_assert(Flag::is_always_lock_free, "a signal handler cannot wait");
Flag interrupted = 0;
Flag readInProgress = 0;
int wakePipe[2] = {-1, -1}; // what `pauseFor` waits at
// What a reading is left with, ready for a signal handler: constant while there is one.
Farewell farewellOfHangingRead;
Farewell farewellOfLongRead;
unsigned int secondsOfARead = 0; // 0: no limit

} // namespace

QString hangingReadWords()
{
    return translated("Process", "The reading in progress was broken off. If the reader does not "
                                 "answer any more, unplug it and plug it in again.");
}

/** As a signal handler may do it, without waiting; where there is no room, nothing is written. */
static void writeAtOnce(int descriptor, const QByteArray &bytes)
{
    pollfd room = {descriptor, POLLOUT, 0};
    if (::poll(&room, 1, 0) != 1)
        return;
    [[maybe_unused]] const ssize_t written =
        ::write(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

extern "C" {

static void noteInterruption(int /*signal*/)
{
    const int savedError = errno;
    interrupted = 1;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(wakePipe[1], &byte, 1);
    if (readInProgress != 0)
        ::alarm(SECONDS_LEFT_TO_A_READ);
    errno = savedError;
}

[[noreturn]] static void leave(const Farewell &farewell, ExitStatus status)
{
    writeAtOnce(STDERR_FILENO, farewell.words);
    writeAtOnce(farewell.descriptor, farewell.result);
    ::_exit(static_cast<int>(status));
}

static void leaveHangingRead(int /*signal*/)
{
    if (readInProgress == 0)
        return;
    const Farewell &farewell = interrupted != 0 ? farewellOfHangingRead : farewellOfLongRead;
    leave(farewell, farewell.status);
}

/** At the program's exit: a maker's library that calls for it would end it as if all were well. */
static void leaveEndedRead()
{
    if (readInProgress != 0)
        leave(farewellOfHangingRead, ExitStatus::READ_FAILED);
}

} // extern "C"

namespace
{

bool isIgnored(int signal)
{
    struct sigaction action = {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void handle(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}

} // namespace

void catchInterruption(ExitStatus statusOfHangingRead)
{
    farewellOfHangingRead = {messageLine(hangingReadWords()), {}, -1, statusOfHangingRead};
    // Without the pipe a pause lasts its full time, nothing worse.
    [[maybe_unused]] const int made = ::pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK);
    handle(SIGALRM, leaveHangingRead);
    sigset_t handled;
    sigemptyset(&handled);
    sigaddset(&handled, SIGALRM);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        // A script's program in the background ignores the terminal's signals, and is to go on so.
        if (signal == SIGTERM || !isIgnored(signal))
            handle(signal, noteInterruption);
        sigaddset(&handled, signal);
    }
    ::pthread_sigmask(SIG_UNBLOCK, &handled, nullptr);
    // Without it such a program ends as the library has it end.
    [[maybe_unused]] static const int unwatched = std::atexit(leaveEndedRead);
}

void setFarewellOfHangingRead(const Farewell &farewell)
{
    farewellOfHangingRead = farewell;
}

void limitReadings(unsigned int seconds, const Farewell &farewell)
{
    farewellOfLongRead = farewell;
    secondsOfARead = seconds;
}

bool isInterrupted()
{
    return interrupted != 0;
}

int interruptionDescriptor()
{
    return wakePipe[0];
}

void pauseFor(int milliseconds, int output)
{
    if (isInterrupted())
        return;
    std::array<pollfd, 2> ends = {{{wakePipe[0], POLLIN, 0}, {output, 0, 0}}};
    ::poll(ends.data(), ends.size(), milliseconds);
}

/** False when there is none for two seconds after a signal has come. */
static bool waitForRoom(int descriptor)
{
    pollfd room = {descriptor, POLLOUT, 0};
    int ready = 0;
    while (ready == 0 && !isInterrupted()) {
        std::array<pollfd, 2> ends = {{room, {wakePipe[0], POLLIN, 0}}};
        ::poll(ends.data(), ends.size(), -1);
        ready = ends[0].revents;
    }
    return ready != 0 || ::poll(&room, 1, MS_LEFT_TO_A_WRITE) == 1;
}

bool writeUnlessInterrupted(int descriptor, const QByteArray &bytes)
{
    // What a pipe that has room takes without waiting: then the wait is here, and a signal ends it.
    constexpr int PART = 4096;
    for (int at = 0; at < bytes.size();) {
        if (!waitForRoom(descriptor)) {
            errno = EINTR;
            return false;
        }
        const auto size = static_cast<std::size_t>(std::min(PART, bytes.size() - at));
        const ssize_t written = ::write(descriptor, bytes.constData() + at, size);
        if (written == 0)
            errno = EIO; // taken without an error, and yet not taken
        if (written > 0)
            at += static_cast<int>(written);
        else if (errno != EINTR && errno != EAGAIN) // EAGAIN: a parent process wants no waiting
            return false;
    }
    return true;
}

ReadInProgress::ReadInProgress()
{
    readInProgress = 1;
    ::alarm(isInterrupted() ? SECONDS_LEFT_TO_A_READ : secondsOfARead);
}

ReadInProgress::~ReadInProgress()
{
    readInProgress = 0;
    ::alarm(0);
}

} // namespace app
