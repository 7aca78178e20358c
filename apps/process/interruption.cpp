#include "apps/process/interruption.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <initializer_list>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "apps/process/standard_streams.h"

namespace app
{

namespace
{

constexpr unsigned int SECONDS_LEFT_TO_A_READ = 2;

// Signal handlers and every thread may look at these.
using Flag = std::atomic<int>;
static_assert(Flag::is_always_lock_free, "a signal handler cannot wait");
Flag interrupted = 0;
Flag readInProgress = 0;
Flag hangingReadStatus = 0;
int wakePipe[2] = {-1, -1}; // what `pauseFor` waits at
// What a hanging read is left with, ready for a signal handler.
std::array<char, 256> farewell = {};
std::size_t farewellSize = 0;

} // namespace

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

static void leaveHangingRead(int /*signal*/)
{
    if (readInProgress == 0)
        return;
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, farewell.data(), farewellSize);
    ::_exit(hangingReadStatus);
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
    hangingReadStatus = static_cast<int>(statusOfHangingRead);
    farewellSize = std::min(
        farewell.size() - 1,
        static_cast<std::size_t>(std::snprintf(
            farewell.data(), farewell.size(),
            "%s: The reading in progress was broken off. If the reader does not answer any more, "
            "unplug it and plug it in again.\n",
            programName())));
    // Without the pipe a pause lasts its full time, nothing worse.
    [[maybe_unused]] const int made = ::pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK);
    handle(SIGALRM, leaveHangingRead);
    for (const int signal : {SIGINT, SIGTERM}) {
        if (!isIgnored(signal)) // as it is for a program that a script has put into the background
            handle(signal, noteInterruption);
    }
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

ReadInProgress::ReadInProgress()
{
    readInProgress = 1;
    if (isInterrupted())
        ::alarm(SECONDS_LEFT_TO_A_READ);
}

ReadInProgress::~ReadInProgress()
{
    readInProgress = 0;
    ::alarm(0);
}

} // namespace app
