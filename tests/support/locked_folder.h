#pragma once

// A folder locked as another program that writes there locks it.

#include <gtest/gtest.h>

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

class LockedFolder
{
public:
    explicit LockedFolder(const QString &folder)
        : m_descriptor(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_CLOEXEC))
    {
        EXPECT_EQ(::flock(m_descriptor, LOCK_EX | LOCK_NB), 0);
    }
    ~LockedFolder() { unlock(); }
    LockedFolder(const LockedFolder &) = delete;
    LockedFolder &operator=(const LockedFolder &) = delete;

    void unlock()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        m_descriptor = -1;
    }

private:
    int m_descriptor;
};
