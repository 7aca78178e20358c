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
#include <QMap>
#include <QTimer>
#include <QVector>

#include "apps/process/tool_run.h"
#include "apps/service/outgoing_messages.h"
#include "apps/service/plugged_readers.h"
#include "apps/service/service_errors.h"
#include "apps/service/service_options.h"
#include "apps/service/tool_protocol.h"

namespace app
{

/** The environment variable by which the C library overwrites memory; the tool needs no such thing.
 */
constexpr const char *MALLOC_SETTINGS = "GLIBC_TUNABLES";

class ReaderService : public QDBusVirtualObject
{
public:
    ReaderService(ServiceOptions options, const QDBusConnection &bus);

    /** Takes the name on the bus; whether it was free. */
    bool appear();

    /** Has what is in progress end, gives the name back, and quits the application. */
    void leave();

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &call, const QDBusConnection &connection) override;

private:
    struct Method {
        const char *name;
        const char *signature;
        void (ReaderService::*carryOut)(const QDBusMessage &call);
    };

    /** The program that has the reader. */
    struct Claim {
        QString client;
        const char *state;
        QDateTime since;
        QVector<QDBusMessage> waiting = {}; ///< calls to be answered when the reader is free
    };

    static const Method METHODS[];

    void leaveIfIdle();
    void giveNameBack();
    void quitIfDone();
    bool refuseUnknownMethod(const QDBusMessage &call);
    void readCard(const QDBusMessage &call);
    void startWatching(const QDBusMessage &call);
    void cancelUndecided(const QString &client);
    void giveBack(const QDBusMessage &call);
    void describeError(const QDBusMessage &call);

    void authorize(const QDBusMessage &call, const QStringList &parts,
                   const std::function<void()> &begin);
    void authorizeAgain();
    bool isFreeFor(const QDBusMessage &call);
    void beginReading(const QDBusMessage &call, const QStringList &parts, unsigned int timeoutMs);
    void beginWatching(const QDBusMessage &call, const QStringList &parts);
    bool claim(const QDBusMessage &call, const char *state, ToolRun::Take take,
               const ToolRun::Ended &ended);
    void endClaim();
    void sendLines(QByteArray *output);
    void sendToClient(const ServiceSignal &content);
    void endClaimOf(const QString &client);
    QStringList simulation() const;

    void answerRead(const QDBusMessage &call, ToolRun::End end, const QByteArray &output);
    void reply(const QDBusMessage &call, const QVariantList &values = {});
    void refuse(const QDBusMessage &call, ServiceError error, const QString &cause = {});
    void refuse(const QDBusMessage &call, ServiceError error, const ErrorTexts &texts);

    void answerProperties(const QDBusMessage &call);
    QVariantMap properties() const;
    QString readerText() const;
    void propertyChanged(const char *name);

    const ServiceOptions m_options;
    QDBusConnection m_bus;
    OutgoingMessages m_messages;
    QDBusServiceWatcher m_clients;
    PluggedReaders m_readers;
    QTimer m_idle;
    QTimer m_polkitChanged;
    bool m_isLeaving = false;
    QMap<int, QDBusMessage> m_undecided; ///< calls that wait for the authorization of their program
    int m_lastUndecided = 0;
    std::optional<Claim> m_claim;
    std::unique_ptr<ToolRun> m_toolRun;
};

} // namespace app
