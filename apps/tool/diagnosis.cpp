#include "apps/tool/diagnosis.h"

#include <algorithm>
#include <optional>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>

#include "apps/process/child_process.h"
#include "apps/process/interruption.h"
#include "apps/results/message.h"

namespace app
{

namespace
{

constexpr int LIMIT_SECONDS = 20;
constexpr int MS_PER_SECOND = 1000;

/** The checks that can explain a failure, the more probable first; empty when none can. */
QStringList checksFor(const Failure &failure)
{
    static const QMap<QString, QStringList> checks = {
        {"IDCARD_RESULT_PORT_NOT_OPEN",
         {"reader-library", "usb-reader", "usb-permission", "usb-holder"}},
        {"IDCARD_RESULT_PHOTO_NOT_DECODED", {"photo-decoder"}},
    };
    return checks.value(failure.name);
}

/** By another process: this one is changed by the reading that failed. */
QJsonArray findingsOfDoctor(int limitMs)
{
    const ChildEnd end = runChild({QCoreApplication::applicationFilePath(), "doctor", "--json"},
                                  limitMs, Collected::BOTH, isInterrupted);
    if (!end.status)
        return {};
    return QJsonDocument::fromJson(end.output).object()["findings"].toArray();
}

/** What the check found to be the failure; nothing when it found none. */
std::optional<Explanation> explanationIn(const QJsonArray &findings, const QString &check)
{
    for (const auto &value : findings) {
        const QJsonObject finding = value.toObject();
        if (finding["check"] != check || finding["level"] != QLatin1String("failure"))
            continue;
        QStringList commands;
        const QJsonArray lines = finding["commands"].toArray();
        for (const auto &command : lines)
            commands << command.toString();
        return Explanation{finding["text"].toString(), finding["remedy"].toString(), commands};
    }
    return std::nullopt;
}

} // namespace

Failure diagnosed(const Failure &failure, const Options &options)
{
    const bool isSimulated = !options.simulate.isEmpty() || options.simulatorPhotos;
    const QStringList checks = checksFor(failure);
    if (checks.isEmpty() || isSimulated)
        return failure;
    const int limitSeconds =
        std::min(LIMIT_SECONDS, options.timeoutSeconds.value_or(LIMIT_SECONDS));
    const QJsonArray findings = findingsOfDoctor(limitSeconds * MS_PER_SECOND);
    for (const QString &check : checks) {
        const std::optional<Explanation> explanation = explanationIn(findings, check);
        if (explanation)
            return explainedBy(*explanation, failure);
    }
    return failure;
}

} // namespace app
