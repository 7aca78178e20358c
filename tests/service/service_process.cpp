#include "tests/service/service_process.h"

#include <QDBusConnectionInterface>
#include <QFile>

#include "tests/support/files.h"

void ServiceTest::serve(const QStringList &arguments)
{
    start("idcard-readerd", QStringList{"--session"} + arguments);
}

void ServiceTest::serveCard(const QStringList &arguments)
{
    serve(QStringList{"--simulate", "resident"} + arguments);
}

void ServiceTest::serveScript(const QByteArray &script, const QStringList &arguments)
{
    const QString program = path("idcard-readerd");
    ASSERT_TRUE(QFile::copy(IDCARD_BUILD_BIN_DIR "/idcard-readerd", program));
    const QString worker = path("idcard-reader");
    writeFile(worker, "#!/bin/sh\ncd " + m_folder.path().toUtf8() + '\n' + script + '\n');
    ASSERT_TRUE(QFile::setPermissions(worker, QFile::ReadOwner | QFile::ExeOwner));
    start(program, arguments);
}

void ServiceTest::start(const QString &program, const QStringList &arguments)
{
    m_service = std::make_unique<RunningProcess>(program, arguments, onBus());
    ASSERT_TRUE(waitFor(
        [this] { return m_client.bus().interface()->isServiceRegistered(IDCARD_SERVICE_NAME); }));
}

ProcessInput ServiceTest::onBus() const
{
    return {{{"DBUS_SESSION_BUS_ADDRESS", m_bus.address()},
             {"DBUS_SYSTEM_BUS_ADDRESS", m_bus.address()}}};
}

bool ServiceTest::becomes(const char *state)
{
    return waitFor([this, state] { return m_client.state() == state; });
}

QDBusPendingCall ServiceTest::beginReading(BusClient &client)
{
    QDBusPendingCall reading = client.beginRead();
    EXPECT_TRUE(becomes("reading"));
    return reading;
}
