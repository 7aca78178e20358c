#include "apps/service/reader_service.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QLocale>
#include <QProcessEnvironment>

#include "apps/process/translation.h"
#include "apps/service/authorization.h"

// At global scope: the macro declares a function of the generated code.
static void registerInterface()
{
    // A static library's resource is not registered by itself.
    Q_INIT_RESOURCE(interface);
}

namespace app
{

namespace
{

IDCARD_TEXTS(Service)

const QString NAME = QStringLiteral(IDCARD_SERVICE_NAME);
const QString PATH = QStringLiteral(IDCARD_SERVICE_PATH);
const QString PROPERTIES = QStringLiteral("org.freedesktop.DBus.Properties");
constexpr int IDLE_MS = 60000;

/** Of the service alone: what describes it to people is left out. */
QString interfaceText()
{
    registerInterface();
    QFile file(QStringLiteral(":/idcard-readerd/interface.xml"));
    file.open(QIODevice::ReadOnly);
    const QString text = QString::fromUtf8(file.readAll());
    const QString end = QStringLiteral("</interface>");
    const int begin = text.indexOf(QLatin1String("<interface"));
    return text.mid(begin, text.indexOf(end) + end.size() - begin);
}

QProcessEnvironment environmentOfTool()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QLatin1String(MALLOC_SETTINGS));
    return environment;
}

} // namespace

const ReaderService::Method ReaderService::METHODS[] = {
    {"ReadCard", "asu", &ReaderService::readCard},
    {"Cancel", "", &ReaderService::giveBack},
    {"StartWatching", "as", &ReaderService::startWatching},
    {"StopWatching", "", &ReaderService::giveBack},
    {"DescribeError", "ss", &ReaderService::describeError},
};

ReaderService::ReaderService(ServiceOptions options, const QDBusConnection &bus)
    : m_options(std::move(options)), m_bus(bus), m_messages(bus),
      m_readers([this] { propertyChanged("Reader"); })
{
    m_clients.setConnection(bus);
    m_clients.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_clients, &QDBusServiceWatcher::serviceUnregistered, this,
            [this](const QString &client) { endClaimOf(client); });
    m_idle.setSingleShot(true);
    m_idle.setTimerType(Qt::PreciseTimer); // another one may fire seconds too soon
    connect(&m_idle, &QTimer::timeout, this, [this] { leaveIfIdle(); });
    m_idle.start(IDLE_MS);
    m_polkitChanged.setSingleShot(true); // once after several changes
    connect(&m_polkitChanged, &QTimer::timeout, this, [this] { authorizeAgain(); });
    if (!m_options.isOnSessionBus)
        startWhenPolkitChanges(bus, &m_polkitChanged);
}

bool ReaderService::appear()
{
    return m_bus.registerVirtualObject(PATH, this) && m_bus.registerService(NAME);
}

void ReaderService::leaveIfIdle()
{
    if (m_claim || !m_undecided.isEmpty())
        m_idle.start(IDLE_MS);
    else
        leave();
}

void ReaderService::leave()
{
    m_isLeaving = true;
    for (const QDBusMessage &call : qAsConst(m_undecided))
        refuse(call, ServiceError::CANCELLED);
    m_undecided.clear();
    if (m_toolRun != nullptr)
        m_toolRun->stop();
    else
        giveNameBack();
}

/** After the last State: what comes from a sender without the name does not reach who listens. */
void ReaderService::giveNameBack()
{
    m_bus.unregisterService(NAME);
    // Calls that came before are still carried out.
    QTimer::singleShot(0, this, [this] { quitIfDone(); });
}

void ReaderService::quitIfDone()
{
    if (m_isLeaving && m_toolRun == nullptr && m_undecided.isEmpty())
        QCoreApplication::quit();
}

QString ReaderService::introspect(const QString & /*path*/) const
{
    return interfaceText();
}

bool ReaderService::handleMessage(const QDBusMessage &call, const QDBusConnection & /*connection*/)
{
    m_idle.start(IDLE_MS);
    if (call.interface() == PROPERTIES) {
        answerProperties(call);
        return true;
    }
    if (call.interface() != NAME && !call.interface().isEmpty())
        return false;
    const auto *const method =
        std::find_if(std::begin(METHODS), std::end(METHODS), [&](const Method &known) {
            return call.member() == QLatin1String(known.name);
        });
    if (method == std::end(METHODS))
        return refuseUnknownMethod(call);
    if (call.signature() == QLatin1String(method->signature))
        (this->*method->carryOut)(call);
    else
        refuse(call, ServiceError::INVALID_ARGUMENT,
               tr("%1 takes arguments of the types \"%2\".")
                   .arg(call.member())
                   .arg(QLatin1String(method->signature)));
    return true;
}

/** Of this interface; a call without any may be one of the bus's own methods. */
bool ReaderService::refuseUnknownMethod(const QDBusMessage &call)
{
    if (call.interface().isEmpty())
        return false;
    m_messages.send(
        call.createErrorReply(QDBusError::UnknownMethod, tr("There is no such method.")));
    return true;
}

void ReaderService::readCard(const QDBusMessage &call)
{
    const QStringList parts = call.arguments().at(0).toStringList();
    const unsigned int timeoutMs = call.arguments().at(1).toUInt();
    QString problem = problemOfParts(parts);
    if (problem.isEmpty())
        problem = problemOfTimeout(timeoutMs);
    if (!problem.isEmpty())
        refuse(call, ServiceError::INVALID_ARGUMENT, problem);
    else if (isFreeFor(call))
        authorize(call, parts, [=] { beginReading(call, parts, timeoutMs); });
}

void ReaderService::startWatching(const QDBusMessage &call)
{
    const QStringList parts = call.arguments().at(0).toStringList();
    const QString problem = problemOfParts(parts);
    if (!problem.isEmpty())
        refuse(call, ServiceError::INVALID_ARGUMENT, problem);
    else if (m_isLeaving)
        refuse(call, ServiceError::CANCELLED);
    else if (isFreeFor(call))
        authorize(call, parts, [=] { beginWatching(call, parts); });
}

/** Others are served meanwhile: what the caller wants begins if it may, and nobody was faster. */
void ReaderService::authorize(const QDBusMessage &call, const QStringList &parts,
                              const std::function<void()> &begin)
{
    if (m_options.isOnSessionBus)
        return begin();
    const int id = ++m_lastUndecided;
    m_undecided.insert(id, call);
    askPolkit(m_bus, this, call.service(), parts, [=](const QString &refusal) {
        if (m_undecided.remove(id) == 0)
            return; // it was cancelled
        if (!refusal.isEmpty())
            refuse(call, ServiceError::NOT_AUTHORIZED, refusal);
        else if (isFreeFor(call))
            begin();
        quitIfDone();
    });
}

/** A watch may outlast its user's session at the machine. */
void ReaderService::authorizeAgain()
{
    if (!m_claim)
        return;
    const QString client = m_claim->client;
    askPolkitAgain(m_bus, this, client, [this, client](const QString &refusal) {
        if (!refusal.isEmpty())
            endClaimOf(client);
    });
}

void ReaderService::cancelUndecided(const QString &client)
{
    for (auto it = m_undecided.begin(); it != m_undecided.end();) {
        if (it->service() == client) {
            refuse(*it, ServiceError::CANCELLED);
            it = m_undecided.erase(it);
        } else {
            ++it;
        }
    }
}

/** What the caller has begun ends; the call returns when the reader is free. */
void ReaderService::giveBack(const QDBusMessage &call)
{
    cancelUndecided(call.service());
    if (!m_claim) {
        reply(call);
    } else if (m_claim->client == call.service()) {
        m_claim->waiting << call;
        m_toolRun->stop();
    } else {
        isFreeFor(call); // it is not, and says so
    }
}

void ReaderService::describeError(const QDBusMessage &call)
{
    const QString name = call.arguments().at(0).toString();
    const QString language = call.arguments().at(1).toString();
    chooseLanguage(language.isEmpty() ? QLocale::system() : QLocale(language));
    const std::optional<ErrorTexts> texts = textsOf(name);
    chooseLanguage(QLocale::system());
    if (texts)
        reply(call, {texts->headline, texts->cause, texts->remedy});
    else
        refuse(call, ServiceError::INVALID_ARGUMENT, tr("There is no such error."));
}

/** Refuses the call if a program has the reader, be it the caller itself. */
bool ReaderService::isFreeFor(const QDBusMessage &call)
{
    if (!m_claim)
        return true;
    refuse(call, ServiceError::BUSY,
           tr("A program has been using it through the service since %1.")
               .arg(m_claim->since.toString(Qt::ISODate)));
    return false;
}

void ReaderService::beginReading(const QDBusMessage &call, const QStringList &parts,
                                 unsigned int timeoutMs)
{
    if (claim(call, "reading", nullptr, [this, call](ToolRun::End end, const QByteArray &output) {
            answerRead(call, end, output);
        }))
        m_toolRun->run(readArguments(parts, timeoutMs) + simulation(), static_cast<int>(timeoutMs));
}

void ReaderService::beginWatching(const QDBusMessage &call, const QStringList &parts)
{
    const bool isClaimed = claim(
        call, "watching", [this](QByteArray *output) { sendLines(output); },
        [this](ToolRun::End end, const QByteArray & /*output*/) {
            if (end == ToolRun::End::FAILED)
                sendToClient(brokenWatchSignal());
        });
    if (!isClaimed)
        return;
    reply(call);
    m_toolRun->run(watchArguments(parts) + simulation(), 0);
}

/** Gives the reader to the caller, with a run of the tool that is still to begin, unless it has
 * left. */
bool ReaderService::claim(const QDBusMessage &call, const char *state, ToolRun::Take take,
                          const ToolRun::Ended &ended)
{
    m_clients.addWatchedService(call.service());
    if (!m_bus.interface()->isServiceRegistered(call.service())) {
        m_clients.removeWatchedService(call.service());
        return false;
    }
    m_claim = Claim{call.service(), state, QDateTime::currentDateTime()};
    propertyChanged("State");
    m_toolRun = std::make_unique<ToolRun>(
        std::move(take), [this, ended](ToolRun::End end, const QByteArray &output) {
            ended(end, output);
            endClaim();
        });
    m_toolRun->setProcessEnvironment(environmentOfTool());
    return true;
}

void ReaderService::endClaim()
{
    const Claim ended = *m_claim;
    m_claim.reset();
    m_toolRun.release()->deleteLater();
    m_clients.removeWatchedService(ended.client);
    for (const QDBusMessage &call : ended.waiting)
        reply(call);
    propertyChanged("State");
    m_idle.start(IDLE_MS);
    if (m_isLeaving)
        giveNameBack();
}

/** What "watch" printed, of which the last line may not be complete. */
void ReaderService::sendLines(QByteArray *output)
{
    for (int end = output->indexOf('\n'); end >= 0; end = output->indexOf('\n')) {
        const std::optional<ServiceSignal> signal = signalOf(output->left(end));
        output->remove(0, end + 1);
        if (!signal)
            return m_toolRun->fail();
        sendToClient(*signal);
    }
}

/** To nobody else: it may hold what a card says. */
void ReaderService::sendToClient(const ServiceSignal &content)
{
    QDBusMessage signal =
        QDBusMessage::createTargetedSignal(m_claim->client, PATH, NAME, content.name);
    signal.setArguments(content.arguments);
    m_messages.send(signal);
}

void ReaderService::endClaimOf(const QString &client)
{
    if (m_claim && m_claim->client == client)
        m_toolRun->stop();
}

QStringList ReaderService::simulation() const
{
    if (m_options.card.isEmpty())
        return {};
    QStringList arguments = {"--simulate", m_options.card};
    if (!m_options.faults.isEmpty())
        arguments << QStringLiteral("--fault") << m_options.faults;
    return arguments;
}

void ReaderService::answerRead(const QDBusMessage &call, ToolRun::End end, const QByteArray &output)
{
    switch (end) {
    case ToolRun::End::FAILED:
        return refuse(call, ServiceError::WORKER_FAILED);
    case ToolRun::End::STOPPED:
        return refuse(call, ServiceError::CANCELLED);
    case ToolRun::End::TIMED_OUT:
        return refuse(call, ServiceError::TIMED_OUT);
    case ToolRun::End::DONE:
        break;
    }
    const std::optional<ReadFailure> failure = failureIn(output);
    if (failure)
        refuse(call, failure->error, failure->texts);
    else
        reply(call, {QString::fromUtf8(output)});
}

void ReaderService::reply(const QDBusMessage &call, const QVariantList &values)
{
    m_messages.send(call.createReply(values));
}

void ReaderService::refuse(const QDBusMessage &call, ServiceError error, const QString &cause)
{
    ErrorTexts texts = textsOf(error);
    if (!cause.isEmpty())
        texts.cause = cause;
    refuse(call, error, texts);
}

void ReaderService::refuse(const QDBusMessage &call, ServiceError error, const ErrorTexts &texts)
{
    const QStringList lines = {texts.headline, texts.cause, texts.remedy};
    m_messages.send(call.createErrorReply(busName(error), lines.join(QLatin1Char('\n'))));
}

void ReaderService::answerProperties(const QDBusMessage &call)
{
    const QVariantMap all = properties();
    const QString name = call.arguments().value(1).toString();
    if (call.member() == QLatin1String("GetAll") && call.signature() == QLatin1String("s"))
        reply(call, {all});
    else if (!all.contains(name))
        m_messages.send(
            call.createErrorReply(QDBusError::UnknownProperty, tr("There is no such property.")));
    else if (call.member() == QLatin1String("Get"))
        reply(call, {QVariant::fromValue(QDBusVariant(all.value(name)))});
    else
        m_messages.send(call.createErrorReply(QDBusError::PropertyReadOnly,
                                              tr("The property can only be read.")));
}

QVariantMap ReaderService::properties() const
{
    return {{QStringLiteral("Version"), QStringLiteral(IDCARD_VERSION)},
            {QStringLiteral("State"), QString::fromLatin1(m_claim ? m_claim->state : "idle")},
            {QStringLiteral("Reader"), readerText()}};
}

QString ReaderService::readerText() const
{
    return m_options.card.isEmpty() ? m_readers.ids() : QStringLiteral("simulated");
}

void ReaderService::propertyChanged(const char *name)
{
    const QString key = QLatin1String(name);
    QDBusMessage signal =
        QDBusMessage::createSignal(PATH, PROPERTIES, QStringLiteral("PropertiesChanged"));
    signal << NAME << QVariantMap{{key, properties().value(key)}} << QStringList();
    m_messages.send(signal);
}

} // namespace app
