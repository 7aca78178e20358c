#include "apps/service/read_request.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "apps/process/translation.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Service)

// Programs wait 25 seconds for an answer unless they ask for more.
constexpr unsigned int LONGEST_TIMEOUT_MS = 20000;
constexpr unsigned int MILLISECONDS = 1000;

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
    const unsigned int seconds = (timeoutMs + MILLISECONDS - 1) / MILLISECONDS;
    QStringList arguments = {"read", "--json", "--timeout", QString::number(seconds)};
    if (!parts.isEmpty())
        arguments << QStringLiteral("--inline") << parts.join(QLatin1Char(','));
    return arguments;
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

} // namespace app
