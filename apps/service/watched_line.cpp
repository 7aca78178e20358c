#include "apps/service/watched_line.h"

#include <QJsonDocument>

#include "apps/process/exit_status.h"
#include "apps/process/json_object.h"
#include "apps/service/service_errors.h"

namespace app
{

namespace
{

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

} // namespace

QStringList watchArguments(const QStringList &parts)
{
    QStringList arguments = {"watch", "--events", "--json", "--timeout", "20"};
    if (!parts.isEmpty())
        arguments << QStringLiteral("--inline") << parts.join(QLatin1Char(','));
    return arguments;
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
