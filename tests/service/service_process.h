#pragma once

// The service as a test runs it, on a bus of its own.

#include <memory>

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "tests/service/bus_client.h"
#include "tests/service/private_bus.h"

class ServiceTest : public testing::Test
{
protected:
    explicit ServiceTest(const QString &policyOfBus = QLatin1String(OPEN_POLICY))
        : m_bus(policyOfBus)
    {
    }

    /** Starts it, and waits until it has its name. */
    void serve(const QStringList &arguments);
    void serveCard(const QStringList &arguments = {});
    /** As above with a shell script in the place of idcard-reader. */
    void serveScript(const QByteArray &script, const QStringList &arguments = {"--session"});

    /** For a program that finds this bus in the place of the session's and the system's. */
    ProcessInput onBus() const;

    /** Of the client `m_client`: what the service is doing. */
    bool becomes(const char *state);
    /** Begins a reading that does not end soon, and waits until the service is at it. */
    QDBusPendingCall beginReading(BusClient &client);
    QDBusPendingCall beginReading() { return beginReading(m_client); }

    /** Where a script can leave files. */
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
    PrivateBus m_bus;
    std::unique_ptr<RunningProcess> m_service;
    BusClient m_client{m_bus.address()};

private:
    void start(const QString &program, const QStringList &arguments);
};
