#pragma once

// The service as other programs see it on the bus: its methods and properties, and who has the
// reader. One program at a time has it; what one that has left the bus began is ended.

#include <functional>
#include <memory>
#include <optional>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusVirtualObject>
#include <QDateTime>
#include <QTimer>
#include <QVector>

#include "apps/service/plugged_readers.h"
#include "apps/service/service_errors.h"
#include "apps/service/service_options.h"
#include "apps/service/worker.h"

namespace app
{

class ReaderService : public QDBusVirtualObject
{
public:
    ReaderService(ServiceOptions options, const QDBusConnection &bus);

    /** Takes the name on the bus; whether it was free. */
    bool appear();

    /** Gives the name back, has what is in progress end, and quits the application. */
    void leave();

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &call, const QDBusConnection &connection) override;

private:
    struct Method {
        const char *name;
        const char *signature;
        void (ReaderService::*carryOut)(const QDBusMessage &call);
    };

    /** What a program has the reader for. */
    struct Claim {
        QString client;
        QDateTime since;
        std::optional<QDBusMessage> call; ///< to be answered at the end, if anyone waits for it
        QVector<QDBusMessage> waiting;    ///< calls to be answered when the reader is free
    };

    static const Method METHODS[];

    void leaveIfIdle();
    bool refuseUnknownMethod(const QDBusMessage &call);
    void readCard(const QDBusMessage &call);
    void cancel(const QDBusMessage &call);
    void describeError(const QDBusMessage &call);

    bool isFreeFor(const QDBusMessage &call);
    void claim(const QDBusMessage &call, const QStringList &arguments, int timeoutMs);
    void endClaim(Worker::End end, const QByteArray &output);
    void endWhenClientLeaves(const QString &client);
    void clientLeft(const QString &client);
    QStringList simulation() const;

    void answerRead(const QDBusMessage &call, Worker::End end, const QByteArray &output);
    void reply(const QDBusMessage &call, const QVariantList &values = {});
    void refuse(const QDBusMessage &call, ServiceError error, const QString &cause = {});
    void refuse(const QDBusMessage &call, ServiceError error, const ErrorTexts &texts);

    void answerProperties(const QDBusMessage &call);
    QVariantMap properties() const;
    QString readerText() const;
    void propertyChanged(const char *name);

    const ServiceOptions m_options;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_clients;
    PluggedReaders m_readers;
    QTimer m_idle;
    bool m_isLeaving = false;
    std::optional<Claim> m_claim;
    std::unique_ptr<Worker> m_worker;
};

} // namespace app
