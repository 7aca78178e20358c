#pragma once

// A thread of a host's that pthread_cancel ends.

#include <chrono>
#include <functional>
#include <ostream>

#include <pthread.h>

/** How such a thread has ended. */
enum class ThreadEnd { CANCELLED, RETURNED, HANGS };

void PrintTo(ThreadEnd end, std::ostream *stream);

class CancelledThread
{
public:
    /** Starts a thread that does `work`, and is cancelled no earlier than asked. */
    explicit CancelledThread(std::function<void()> work);
    ~CancelledThread() = default;
    CancelledThread(const CancelledThread &) = delete;
    CancelledThread &operator=(const CancelledThread &) = delete;

    /** Cancels it; it ends where the C library lets it. */
    void cancel() const;

    /** Waits for its end, but not for ever: one that hangs is left alone. */
    ThreadEnd end(std::chrono::seconds limit = std::chrono::seconds(30)) const;

private:
    static void *run(void *self);

    std::function<void()> m_work;
    pthread_t m_thread{};
};

/** A thread that does `work` with its cancellation asked for before, and so at the first place. */
ThreadEnd endOfThreadCancelledBefore(const std::function<void()> &work);

/** Waits for what another thread does; it must come in time. */
void waitUntil(const std::function<bool()> &holds);
