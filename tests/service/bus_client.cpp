#include "tests/service/bus_client.h"

#include <array>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusVariant>
#include <QTest>

namespace
{

/** Qt's part of a bus needs an application object. */
class Application : public testing::Environment
{
public:
    void SetUp() override
    {
        m_application = std::make_unique<QCoreApplication>(m_count, m_arguments.data());
    }
    void TearDown() override { m_application.reset(); }

private:
    std::array<char, 5> m_name = {"test"};
    std::array<char *, 2> m_arguments = {m_name.data(), nullptr};
    int m_count = 1;
    std::unique_ptr<QCoreApplication> m_application;
};

[[maybe_unused]] const auto *const APPLICATION = testing::AddGlobalTestEnvironment(new Application);

const QString SERVICE = IDCARD_SERVICE_NAME;
const QString PATH = IDCARD_SERVICE_PATH;

QString nextId()
{
    static int count = 0;
    return QStringLiteral("client%1").arg(++count);
}

} // namespace

bool waitFor(const std::function<bool()> &condition, int milliseconds)
{
    return QTest::qWaitFor(condition, milliseconds);
}

BusClient::BusClient(const QString &address)
    : m_id(nextId()), m_bus(QDBusConnection::connectToBus(address, m_id))
{
    EXPECT_TRUE(m_bus.isConnected()) << m_bus.lastError().message().toStdString();
}

BusClient::~BusClient()
{
    leave();
}

QDBusPendingCall BusClient::begin(const QString &method, const QVariantList &arguments)
{
    constexpr int PATIENCE_MS = 60000;
    QDBusMessage call = QDBusMessage::createMethodCall(SERVICE, PATH, SERVICE, method);
    call.setArguments(arguments);
    return m_bus.asyncCall(call, PATIENCE_MS);
}

QDBusMessage BusClient::ask(const QString &method, const QVariantList &arguments)
{
    QDBusPendingCall call = begin(method, arguments);
    call.waitForFinished();
    return call.reply();
}

QDBusPendingCall BusClient::beginRead(const QStringList &parts, uint timeoutMs)
{
    return begin("ReadCard", {parts, timeoutMs});
}

QDBusMessage BusClient::read(const QStringList &parts, uint timeoutMs)
{
    return ask("ReadCard", {parts, timeoutMs});
}

QDBusMessage BusClient::callInterface(const char *interface, const char *method,
                                      const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(SERVICE, PATH, interface, method);
    call.setArguments(arguments);
    return m_bus.call(call);
}

QVariant BusClient::property(const char *name)
{
    return callInterface("org.freedesktop.DBus.Properties", "Get", {SERVICE, name})
        .arguments()
        .value(0)
        .value<QDBusVariant>()
        .variant();
}

void BusClient::listen()
{
    const auto keep = [this](const QString &interface, const char *name) {
        EXPECT_TRUE(m_bus.connect(SERVICE, PATH, interface, QLatin1String(name), this,
                                  SLOT(take(QDBusMessage))));
    };
    keep("org.freedesktop.DBus.Properties", "PropertiesChanged");
    for (const char *name :
         {"CardRead", "CardRemoved", "ReaderAdded", "ReaderRemoved", "ReadFailed"})
        keep(SERVICE, name);
}

void BusClient::leave()
{
    QDBusConnection::disconnectFromBus(m_id);
    m_bus = QDBusConnection(QString());
}

std::string errorAtTheEnd(QDBusPendingCall call)
{
    EXPECT_TRUE(waitFor([&] { return call.isFinished(); }));
    return errorOf(call.reply());
}

std::string errorOf(const QDBusMessage &answer)
{
    const QString prefix = IDCARD_SERVICE_DOMAIN ".Error.";
    const QString name = answer.errorName();
    return (name.startsWith(prefix) ? name.mid(prefix.size()) : name).toStdString();
}

std::string messageOf(const QDBusMessage &answer)
{
    return answer.errorMessage().toStdString();
}

std::string textOf(const QDBusMessage &answer)
{
    EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << messageOf(answer);
    EXPECT_EQ(answer.arguments().size(), 1);
    return answer.arguments().value(0).toString().toStdString();
}
