#pragma once

// A terminal that programs are run on.

#include <array>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <QString>

/** Everything that programs write to a terminal. */
class Terminal
{
public:
    Terminal() : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        EXPECT_GE(m_master, 0);
        EXPECT_EQ(::grantpt(m_master), 0);
        EXPECT_EQ(::unlockpt(m_master), 0);
    }
    ~Terminal() { ::close(m_master); }
    Terminal(const Terminal &) = delete;
    Terminal(Terminal &&) = delete;
    Terminal &operator=(const Terminal &) = delete;
    Terminal &operator=(Terminal &&) = delete;

    QString path() const { return QString::fromLocal8Bit(::ptsname(m_master)); }

    /** All that was shown by programs that have ended; it may come in several parts. */
    std::string read() const
    {
        std::string shown;
        std::array<char, 4096> part{};
        ssize_t size = 0;
        while ((size = ::read(m_master, part.data(), part.size())) > 0)
            shown.append(part.data(), static_cast<std::size_t>(size));
        return shown;
    }

private:
    int m_master;
};
