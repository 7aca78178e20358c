#include "apps/viewer/service_run.h"

#include <algorithm>
#include <utility>

#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLocale>
#include <QTimer>

#include "apps/card/card_output.h"
#include "apps/process/json_object.h"
#include "apps/reading/usb_devices.h"

namespace viewer
{

namespace
{

const QString NAME = QStringLiteral(IDCARD_SERVICE_NAME);
const QString PATH = QStringLiteral(IDCARD_SERVICE_PATH);
const QString PROPERTIES = QStringLiteral("org.freedesktop.DBus.Properties");
// The longest that the service takes, after which it answers, and a little more.
constexpr unsigned int LONGEST_READ_MS = 20000;
constexpr int LONGEST_CALL_MS = 25000;

QStringList parts()
{
    return {QStringLiteral("photo"), QStringLiteral("pictures")};
}

bool isServiceInstalled()
{
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return false;
    const QString busName = QStringLiteral("org.freedesktop.DBus");
    const QDBusMessage names =
        bus.call(QDBusMessage::createMethodCall(busName, QStringLiteral("/org/freedesktop/DBus"),
                                                busName, QStringLiteral("ListActivatableNames")));
    return names.arguments().value(0).toStringList().contains(NAME) ||
           bus.interface()->isServiceRegistered(NAME);
}

} // namespace

bool isServiceNeeded()
{
    const auto devices = app::listUsbDevices().devices;
    const auto isOpenReader = [](const app::UsbDevice &device) {
        return app::couldBeReader(device) && device.mayOpen;
    };
    return std::any_of(devices.begin(), devices.end(), app::couldBeReader) &&
           std::none_of(devices.begin(), devices.end(), isOpenReader) && isServiceInstalled();
}

ServiceRun::ServiceRun(app::ToolRun::Take take, app::ToolRun::Ended ended, const QString &language)
    : m_take(std::move(take)), m_ended(std::move(ended)),
      m_language(language.isEmpty() ? QLocale().name() : language),
      m_bus(QDBusConnection::systemBus())
{
    m_service.setConnection(m_bus);
    m_service.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_service, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { end(app::ToolRun::End::FAILED); }); // without a last State
}

void ServiceRun::read()
{
    call("ReadCard", {parts(), LONGEST_READ_MS}, &ServiceRun::finishRead);
}

void ServiceRun::watch()
{
    const struct {
        const char *signal;
        const char *slot;
    } signalSlots[] = {
        {"CardRead", SLOT(takeJson(QString))},        {"ReadFailed", SLOT(takeJson(QString))},
        {"CardRemoved", SLOT(takeCardRemoved())},     {"ReaderAdded", SLOT(takeReaderAdded())},
        {"ReaderRemoved", SLOT(takeReaderRemoved())},
    };
    for (const auto &row : signalSlots)
        m_bus.connect(NAME, PATH, NAME, QLatin1String(row.signal), this, row.slot);
    m_bus.connect(NAME, PATH, PROPERTIES, QStringLiteral("PropertiesChanged"), this,
                  SLOT(followState(QString, QVariantMap)));
    call("StartWatching", {parts()}, &ServiceRun::finishStart);
}

void ServiceRun::stop()
{
    call("Cancel", {}, &ServiceRun::finishStop);
}

void ServiceRun::call(const char *method, const QVariantList &arguments, Answered answered)
{
    QDBusMessage message = QDBusMessage::createMethodCall(NAME, PATH, NAME, QLatin1String(method));
    message.setArguments(arguments);
    if (!m_bus.isConnected()) { // a call on it never ends
        m_problem = m_bus.lastError().message();
        QTimer::singleShot(0, this, [this] { end(app::ToolRun::End::FAILED); });
        return;
    }
    auto *const watcher =
        new QDBusPendingCallWatcher(m_bus.asyncCall(message, LONGEST_CALL_MS), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, answered](QDBusPendingCallWatcher *call) {
                call->deleteLater();
                (this->*answered)(call->reply());
            });
}

void ServiceRun::finishRead(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage)
        describe(reply);
    else
        end(app::ToolRun::End::DONE, reply.arguments().value(0).toString().toUtf8());
}

void ServiceRun::finishStart(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage)
        return describe(reply);
    m_isWatching = true;
    m_service.addWatchedService(NAME);
}

void ServiceRun::finishStop(const QDBusMessage & /*reply*/)
{
    end(app::ToolRun::End::STOPPED);
}

void ServiceRun::describe(const QDBusMessage &error)
{
    m_error = error;
    call("DescribeError", {error.errorName(), m_language}, &ServiceRun::finishDescription);
}

/** The failure as idcard-reader prints it. */
void ServiceRun::finishDescription(const QDBusMessage &reply)
{
    const bool isKnown = reply.type() != QDBusMessage::ErrorMessage;
    m_problem = m_error.errorMessage();
    const QString headline = isKnown ? reply.arguments().value(0).toString()
                                     : tr("The service that reads cards did not answer.");
    const QString remedy = reply.arguments().value(isKnown ? 2 : 3).toString();
    const app::JsonObject failure{{"name", m_error.errorName()},
                                  {"headline", headline},
                                  {"cause", m_problem},
                                  {"remedy", remedy}};
    QByteArray line = app::jsonLine(app::JsonObject{{"error", failure}});
    if (m_take)
        m_take(&line);
    end(app::ToolRun::End::DONE, line);
}

void ServiceRun::takeJson(const QString &json)
{
    QByteArray line = json.toUtf8() + '\n';
    m_take(&line);
}

void ServiceRun::takeEvent(const char *event)
{
    QByteArray line = app::jsonLine(app::JsonObject{{"event", QLatin1String(event)}});
    m_take(&line);
}

/** When the service watches no more, though nobody has stopped it, it has ended. Before it watches,
 * it is what went before that has ended. */
void ServiceRun::followState(const QString & /*interface*/, const QVariantMap &changed)
{
    const QVariant state = changed.value(QStringLiteral("State"));
    if (m_isWatching && state.toString() == QLatin1String("idle"))
        end(app::ToolRun::End::FAILED);
}

void ServiceRun::end(app::ToolRun::End end, const QByteArray &output)
{
    if (!std::exchange(m_hasEnded, true))
        m_ended(end, output);
}

} // namespace viewer
