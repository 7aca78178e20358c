#pragma once

// While an object lives, neither this process nor those it starts can make a file larger than the
// limit: a full disk that also stops the superuser.

#include <csignal>

#include <sys/resource.h>

class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes) : m_oldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_oldLimit);
        rlimit limit = m_oldLimit;
        limit.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_oldLimit);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit(FileSizeLimit &&) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(FileSizeLimit &&) = delete;

private:
    void (*m_oldHandler)(int);
    rlimit m_oldLimit{};
};
