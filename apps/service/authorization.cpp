#include "apps/service/authorization.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Service)

const QString POLKIT = QStringLiteral("org.freedesktop.PolicyKit1");
const QString AUTHORITY = QStringLiteral("/org/freedesktop/PolicyKit1/Authority");
const QString AUTHORITY_INTERFACE = QStringLiteral("org.freedesktop.PolicyKit1.Authority");
const QString READ_CARD = QStringLiteral(IDCARD_SERVICE_DOMAIN ".read-card");
const QString READ_FINGERPRINTS = QStringLiteral(IDCARD_SERVICE_DOMAIN ".read-fingerprints");

// Programs wait 25 seconds for an answer unless they ask for more.
constexpr int TIME_TO_DECIDE_MS = 20000;

enum class Dialog : unsigned int { NONE = 0, ALLOWED = 1 };

QDBusMessage question(const QString &client, const QString &action, Dialog dialog)
{
    QDBusArgument subject;
    subject.beginStructure();
    subject << QStringLiteral("system-bus-name") << QVariantMap{{QStringLiteral("name"), client}};
    subject.endStructure();
    QDBusArgument noDetails;
    noDetails.beginMap(QMetaType::QString, QMetaType::QString);
    noDetails.endMap();
    QDBusMessage call = QDBusMessage::createMethodCall(POLKIT, AUTHORITY, AUTHORITY_INTERFACE,
                                                       QStringLiteral("CheckAuthorization"));
    call << QVariant::fromValue(subject) << action << QVariant::fromValue(noDetails)
         << static_cast<unsigned int>(dialog) << QString();
    return call;
}

/** Of an answer that is one: (is authorized, is challenge, details). */
bool isAllowedBy(const QDBusMessage &answer)
{
    if (answer.signature() != QLatin1String("(bba{ss})"))
        return false;
    bool isAuthorized = false;
    const auto result = answer.arguments().at(0).value<QDBusArgument>();
    result.beginStructure();
    result >> isAuthorized;
    return isAuthorized;
}

/** Empty: it is none. */
QString refusalIn(const QDBusMessage &answer, const QString &action)
{
    if (answer.type() == QDBusMessage::ErrorMessage)
        return filledIn(tr("polkit did not decide on the action %1 (%2)."), action,
                        answer.errorMessage());
    return isAllowedBy(answer) ? QString()
                               : tr("polkit refuses the action %1 to this program.").arg(action);
}

void askFor(const QString &action, Dialog dialog, const QDBusConnection &bus, QObject *owner,
            const QString &client, const Decided &decided)
{
    auto *const answer = new QDBusPendingCallWatcher(
        bus.asyncCall(question(client, action, dialog), TIME_TO_DECIDE_MS), owner);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, owner, [answer, action, decided] {
        decided(refusalIn(answer->reply(), action));
        answer->deleteLater();
    });
}

} // namespace

void askPolkit(const QDBusConnection &bus, QObject *owner, const QString &client,
               const QStringList &parts, const Decided &decided)
{
    if (!parts.contains(QLatin1String("fingerprints")))
        return askFor(READ_CARD, Dialog::ALLOWED, bus, owner, client, decided);
    askFor(READ_CARD, Dialog::ALLOWED, bus, owner, client, [=](const QString &refusal) {
        if (refusal.isEmpty())
            askFor(READ_FINGERPRINTS, Dialog::ALLOWED, bus, owner, client, decided);
        else
            decided(refusal);
    });
}

void askPolkitAgain(const QDBusConnection &bus, QObject *owner, const QString &client,
                    const Decided &decided)
{
    askFor(READ_CARD, Dialog::NONE, bus, owner, client, decided);
}

void startWhenPolkitChanges(QDBusConnection bus, QTimer *timer)
{
    bus.connect(POLKIT, AUTHORITY, AUTHORITY_INTERFACE, QStringLiteral("Changed"), timer,
                SLOT(start()));
}

} // namespace app
