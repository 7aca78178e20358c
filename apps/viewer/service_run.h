#pragma once

// One reading, or watching for cards, by the D-Bus service idcard-readerd, for a user who may not
// open the reader. It prints as idcard-reader does, without fingerprints.

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>

#include "apps/process/tool_run.h"

namespace viewer
{

/** Whether the service is installed, and a reader is plugged in that this user may not open. */
bool isServiceNeeded();

class ServiceRun : public QObject
{
    Q_OBJECT

public:
    /** As of `app::ToolRun`. `language` of messages; empty: the user's. */
    ServiceRun(app::ToolRun::Take take, app::ToolRun::Ended ended, const QString &language);

    /** One of the two, once. */
    void read();
    void watch();
    void stop();

    /** In words, when it has ended without an answer. */
    QString howItEnded() const { return m_problem; }

private slots:
    void takeJson(const QString &json);
    void takeCardRemoved() { takeEvent("card-removed"); }
    void takeReaderAdded() { takeEvent("reader-added"); }
    void takeReaderRemoved() { takeEvent("reader-removed"); }
    void followState(const QString &interface, const QVariantMap &changed);

private:
    using Answered = void (ServiceRun::*)(const QDBusMessage &reply);

    void call(const char *method, const QVariantList &arguments, Answered answered);
    void finishRead(const QDBusMessage &reply);
    void finishStart(const QDBusMessage &reply);
    void finishStop(const QDBusMessage &reply);
    void describe(const QDBusMessage &error);
    void finishDescription(const QDBusMessage &reply);
    void takeEvent(const char *event);
    void end(app::ToolRun::End end, const QByteArray &output = {});

    app::ToolRun::Take m_take;
    app::ToolRun::Ended m_ended;
    QString m_language;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_service; ///< once it watches
    QDBusMessage m_error;
    QString m_problem;
    bool m_isWatching = false; ///< the service has said so
    bool m_hasEnded = false;
};

} // namespace viewer
