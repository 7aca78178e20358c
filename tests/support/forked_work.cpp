#include "tests/support/forked_work.h"

#include <array>
#include <cstdio>

#include <sys/wait.h>
#include <unistd.h>

ForkedWork::ForkedWork(const std::function<void(int report)> &work)
{
    std::fflush(nullptr);
    m_child = ::fork();
    if (m_child == 0) {
        m_report.closeReadEnd();
        work(m_report.writeEnd());
        ::_exit(0);
    }
    m_report.closeWriteEnd();
}

ForkedWork::End ForkedWork::wait()
{
    End end;
    std::array<char, 4096> bytes{};
    ssize_t size = 0;
    while ((size = ::read(m_report.readEnd(), bytes.data(), bytes.size())) > 0)
        end.report.append(bytes.data(), static_cast<int>(size));
    int status = 0;
    if (m_child > 0 && ::waitpid(m_child, &status, 0) == m_child)
        end.status = status;
    return end;
}
