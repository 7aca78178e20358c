#pragma once

// A message bus of a test's own.

#include <memory>

#include <QString>
#include <QTemporaryDir>

#include "tests/support/process.h"

class PrivateBus
{
public:
    PrivateBus();

    const QString &address() const { return m_address; }
    /** As when the machine goes down. */
    void end() { m_daemon.reset(); }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<RunningProcess> m_daemon;
    QString m_address;
};
