#pragma once

// While it lives, what is written to standard error, and so Qt's log, goes nowhere.

#include <fcntl.h>
#include <unistd.h>

namespace failure_injection
{

class QuietLog
{
public:
    QuietLog() : m_before(::dup(STDERR_FILENO))
    {
        const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        ::dup2(nowhere, STDERR_FILENO);
        ::close(nowhere);
    }
    ~QuietLog()
    {
        ::dup2(m_before, STDERR_FILENO);
        ::close(m_before);
    }
    QuietLog(const QuietLog &) = delete;
    QuietLog &operator=(const QuietLog &) = delete;

private:
    int m_before;
};

} // namespace failure_injection
