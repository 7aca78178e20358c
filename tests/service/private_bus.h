#pragma once

// A message bus of a test's own.

#include <memory>

#include <QString>
#include <QTemporaryDir>

#include "tests/support/process.h"

/** Everybody may do everything, and listen to others. */
extern const char *const OPEN_POLICY;

/** What the bus of the system allows where the service is installed. */
QString systemPolicy();

class PrivateBus
{
public:
    /** `policy`: elements of a bus's configuration. */
    explicit PrivateBus(const QString &policy);

    const QString &address() const { return m_address; }
    /** As when the machine goes down. */
    void end() { m_daemon.reset(); }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<RunningProcess> m_daemon;
    QString m_address;
};

/** The bus that this program takes for that of the system, which it looks for once. */
const PrivateBus &busInPlaceOfTheSystems();
