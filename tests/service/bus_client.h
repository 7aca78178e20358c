#pragma once

// A program on a bus that calls the service.

#include <functional>
#include <string>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QObject>
#include <QVariantList>
#include <QVector>

/** Handles events until `condition` holds; whether it did in time. */
bool waitFor(const std::function<bool()> &condition, int milliseconds = 30000);

class BusClient : public QObject
{
    Q_OBJECT

public:
    explicit BusClient(const QString &address);
    ~BusClient() override;
    BusClient(const BusClient &) = delete;
    BusClient &operator=(const BusClient &) = delete;

    QString name() const { return m_bus.baseService(); }
    const QDBusConnection &bus() const { return m_bus; }

    /** Calls a method of the service and returns the answer. */
    QDBusMessage ask(const QString &method, const QVariantList &arguments = {});
    QDBusPendingCall begin(const QString &method, const QVariantList &arguments = {});
    QDBusMessage read(const QStringList &parts = {}, uint timeoutMs = 20000);
    QDBusPendingCall beginRead(const QStringList &parts = {}, uint timeoutMs = 20000);
    /** Calls a method of another interface of the service. */
    QDBusMessage callInterface(const char *interface, const char *method,
                               const QVariantList &arguments = {});
    /** The value of a property; not valid when there is none. */
    QVariant property(const char *name);
    std::string state() { return property("State").toString().toStdString(); }

    /** From here on the signals of the service that reach this program are kept. */
    void listen();
    const QVector<QDBusMessage> &signalsOfService() const { return m_signals; }

    void leave();

private slots:
    void take(const QDBusMessage &signal) { m_signals << signal; }

private:
    QString m_id;
    QDBusConnection m_bus;
    QVector<QDBusMessage> m_signals;
};

/** Waits for the answer to a call; what `errorOf` says of it. */
std::string errorAtTheEnd(QDBusPendingCall call);
/** The error's name without "org.idcardreader.Error."; of another error, the whole. */
std::string errorOf(const QDBusMessage &answer);
std::string messageOf(const QDBusMessage &answer);
/** The only text of an answer. */
std::string textOf(const QDBusMessage &answer);
