#include "apps/service/authorization.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>

#include "apps/process/translation.h"

namespace app
{

/** The program, in polkit's words. */
struct Subject {
    QString kind;
    QVariantMap details;
};

static QDBusArgument &operator<<(QDBusArgument &argument, const Subject &subject)
{
    argument.beginStructure();
    argument << subject.kind << subject.details;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, Subject &subject)
{
    argument.beginStructure();
    argument >> subject.kind >> subject.details;
    argument.endStructure();
    return argument;
}

} // namespace app

Q_DECLARE_METATYPE(app::Subject)

namespace app
{

namespace
{

IDCARD_TEXTS(Service)

const QString READ_CARD = QStringLiteral(IDCARD_SERVICE_DOMAIN ".read-card");
const QString READ_FINGERPRINTS = QStringLiteral(IDCARD_SERVICE_DOMAIN ".read-fingerprints");

// Programs wait 25 seconds for an answer unless they ask for more.
constexpr int TIME_TO_DECIDE_MS = 20000;
constexpr unsigned int MAY_ASK_THE_USER = 1;

using Details = QMap<QString, QString>;

QDBusMessage question(const QString &client, const QString &action)
{
    qDBusRegisterMetaType<Subject>();
    qDBusRegisterMetaType<Details>();
    const Subject subject{QStringLiteral("system-bus-name"), {{QStringLiteral("name"), client}}};
    QDBusMessage call =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.PolicyKit1"),
                                       QStringLiteral("/org/freedesktop/PolicyKit1/Authority"),
                                       QStringLiteral("org.freedesktop.PolicyKit1.Authority"),
                                       QStringLiteral("CheckAuthorization"));
    call << QVariant::fromValue(subject) << action << QVariant::fromValue(Details())
         << MAY_ASK_THE_USER << QString();
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
        return tr("polkit did not decide on the action %1 in time, or could not be asked.")
            .arg(action);
    return isAllowedBy(answer) ? QString()
                               : tr("polkit refuses the action %1 to this program.").arg(action);
}

} // namespace

void Authorization::ask(const QString &client, const QStringList &parts, const Decided &decided)
{
    if (!parts.contains(QLatin1String("fingerprints")))
        return ask(client, READ_CARD, decided);
    ask(client, READ_CARD, [this, client, decided](const QString &refusal) {
        if (refusal.isEmpty())
            ask(client, READ_FINGERPRINTS, decided);
        else
            decided(refusal);
    });
}

void Authorization::ask(const QString &client, const QString &action, const Decided &decided)
{
    auto *const answer = new QDBusPendingCallWatcher(
        m_bus.asyncCall(question(client, action), TIME_TO_DECIDE_MS), m_owner);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, m_owner,
                     [answer, action, decided] {
                         decided(refusalIn(answer->reply(), action));
                         answer->deleteLater();
                     });
}

} // namespace app
