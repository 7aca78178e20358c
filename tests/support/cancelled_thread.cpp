#include "tests/support/cancelled_thread.h"

#include <ctime>
#include <stdexcept>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

void PrintTo(ThreadEnd end, std::ostream *stream)
{
    *stream << (end == ThreadEnd::CANCELLED  ? "cancelled"
                : end == ThreadEnd::RETURNED ? "returned"
                                             : "hangs");
}

CancelledThread::CancelledThread(std::function<void()> work) : m_work(std::move(work))
{
    if (pthread_create(&m_thread, nullptr, run, this) != 0)
        throw std::runtime_error("no thread");
}

void *CancelledThread::run(void *self)
{
    static_cast<CancelledThread *>(self)->m_work();
    return nullptr;
}

void CancelledThread::cancel() const
{
    pthread_cancel(m_thread);
}

ThreadEnd CancelledThread::end(std::chrono::seconds limit) const
{
    timespec deadline{};
    clock_gettime(CLOCK_REALTIME, &deadline);
    deadline.tv_sec += limit.count();
    void *result = nullptr;
    if (pthread_timedjoin_np(m_thread, &result, &deadline) != 0) {
        pthread_detach(m_thread);
        return ThreadEnd::HANGS;
    }
    return result == PTHREAD_CANCELED ? ThreadEnd::CANCELLED : ThreadEnd::RETURNED;
}

ThreadEnd endOfThreadCancelledBefore(const std::function<void()> &work)
{
    CancelledThread thread([&work] {
        pthread_cancel(pthread_self());
        work();
    });
    return thread.end();
}

void waitUntil(const std::function<bool()> &holds)
{
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!holds() && std::chrono::steady_clock::now() < limit)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_TRUE(holds());
}
