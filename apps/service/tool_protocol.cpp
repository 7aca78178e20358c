#include "apps/service/tool_protocol.h"

#include <QJsonDocument>

#include "apps/process/exit_status.h"
#include "apps/process/json_object.h"
#include "apps/process/translation.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Service)

// Programs wait 25 seconds for an answer unless they ask for more.
constexpr unsigned int LONGEST_TIMEOUT_MS = 20000;

struct EventRow {
    const char *event;
    const char *signal;
    bool hasJson;
};

constexpr const char *READ_FAILED = "ReadFailed";
constexpr EventRow EVENTS[] = {
    {"card-read", "CardRead", true},        {"card-removed", "CardRemoved", false},
    {"reader-added", "ReaderAdded", false}, {"reader-removed", "ReaderRemoved", false},
    {"read-failed", READ_FAILED, true},
};

QStringList toolArguments(QStringList command, unsigned int timeoutMs, const QStringList &parts)
{
    constexpr unsigned int MILLISECONDS = 1000;
    const unsigned int seconds = (timeoutMs + MILLISECONDS - 1) / MILLISECONDS;
    command << QStringLiteral("--json") << QStringLiteral("--timeout") << QString::number(seconds);
    if (!parts.isEmpty())
        command << QStringLiteral("--inline") << parts.join(QLatin1Char(','));
    return command;
}

} // namespace

QString problemOfParts(const QStringList &parts)
{
    static const QStringList known = {"photo", "pictures", "fingerprints"};
    for (const QString &part : parts) {
        if (!known.contains(part))
            return tr("\"%1\" is none of photo, pictures and fingerprints.").arg(part.left(64));
        if (parts.count(part) > 1)
            return tr("\"%1\" is asked for twice.").arg(part);
    }
    return {};
}

QString problemOfTimeout(unsigned int milliseconds)
{
    if (milliseconds >= 1 && milliseconds <= LONGEST_TIMEOUT_MS)
        return {};
    return tr("The time limit is %1 ms; it takes 1 to %2.")
        .arg(milliseconds)
        .arg(LONGEST_TIMEOUT_MS);
}

QStringList readArguments(const QStringList &parts, unsigned int timeoutMs)
{
    return toolArguments({"read"}, timeoutMs, parts);
}

QStringList watchArguments(const QStringList &parts)
{
    return toolArguments({"watch", "--events"}, LONGEST_TIMEOUT_MS, parts);
}

std::optional<ReadFailure> failureIn(const QByteArray &output)
{
    const ReadFailure workerFailed{ServiceError::WORKER_FAILED,
                                   textsOf(ServiceError::WORKER_FAILED)};
    const QJsonObject result = QJsonDocument::fromJson(output).object();
    if (output.contains('\0'))
        return workerFailed; // which no text on the bus can hold
    if (result.contains(QLatin1String("kind")))
        return std::nullopt;
    const QJsonObject failure = result.value(QLatin1String("error")).toObject();
    const std::optional<ServiceError> error =
        errorOfResult(failure.value(QLatin1String("name")).toString());
    if (!error)
        return workerFailed;
    return ReadFailure{*error,
                       {failure.value(QLatin1String("headline")).toString(),
                        failure.value(QLatin1String("cause")).toString(),
                        failure.value(QLatin1String("remedy")).toString()}};
}

std::optional<ServiceSignal> signalOf(const QByteArray &line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (line.contains('\0')) // which no text on the bus can hold
        return std::nullopt;
    const QString text = QString::fromUtf8(line);
    if (object.size() == 1 && object.contains(QLatin1String("error"))) // it cannot begin
        return ServiceSignal{QLatin1String(READ_FAILED), {text}};
    const QString event = object.value(QLatin1String("event")).toString();
    for (const EventRow &row : EVENTS) {
        if (event == QLatin1String(row.event))
            return ServiceSignal{QLatin1String(row.signal),
                                 row.hasJson ? QVariantList{text} : QVariantList()};
    }
    return std::nullopt;
}

ServiceSignal brokenWatchSignal()
{
    const ErrorTexts texts = textsOf(ServiceError::WORKER_FAILED);
    const JsonObject error{
        {"code", QJsonValue()},       {"name", QStringLiteral("TOOL_PROGRAM_BROKEN")},
        {"headline", texts.headline}, {"cause", texts.cause},
        {"remedy", texts.remedy},     {"exitStatus", static_cast<int>(ExitStatus::PROGRAM_FAILED)}};
    const QByteArray json =
        QJsonDocument(JsonObject{{"error", error}}).toJson(QJsonDocument::Compact);
    return {QLatin1String(READ_FAILED), {QString::fromUtf8(json)}};
}

} // namespace app
