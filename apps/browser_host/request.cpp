#include "apps/browser_host/request.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QVector>

#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Browser)

constexpr int LONGEST_QUOTE = 60;

/** Text of a page on one line, cut. */
QString quoted(const QString &text)
{
    return tr("\"%1\"").arg(printable(text.left(LONGEST_QUOTE)));
}

/** A key of an object, and what takes its value and returns what is wrong with that. */
struct Key {
    QString name;
    QString (*take)(const QJsonValue &value, Request *request);
};

/** Takes an object that has these keys, in this order, and no others. */
QString takeObject(QJsonObject rest, const QVector<Key> &keys, Request *request)
{
    for (const Key &key : keys) {
        if (!rest.contains(key.name))
            return tr("The key %1 is missing.").arg(quoted(key.name));
        QString problem = key.take(rest.take(key.name), request);
        if (!problem.isEmpty())
            return problem;
    }
    return rest.isEmpty() ? QString()
                          : tr("There is no key %1.").arg(quoted(rest.keys().constFirst()));
}

QString takeLanguage(const QJsonValue &value, Request *request)
{
    static const QRegularExpression tag(QStringLiteral("\\A[A-Za-z0-9-]{1,35}\\z"));
    request->language = value.toString();
    return tag.match(request->language).hasMatch()
               ? QString()
               : tr("The key language takes a language such as en or zh-CN.");
}

QString takeTimeout(const QJsonValue &value, Request *request)
{
    const int seconds = value.toInt();
    request->timeoutSeconds = seconds;
    return seconds >= 1 && seconds <= Request::LONGEST_TIMEOUT_SECONDS &&
                   value == QJsonValue(seconds)
               ? QString()
               : tr("The key timeout takes a whole number of seconds from 1 to %1.")
                     .arg(Request::LONGEST_TIMEOUT_SECONDS);
}

QString takeInclude(const QJsonValue &value, Request *request)
{
    const QStringList known = {QStringLiteral("photo"), QStringLiteral("pictures")};
    bool isRight = value.isArray();
    const QJsonArray parts = value.toArray();
    for (const QJsonValue &part : parts) {
        isRight = isRight && known.contains(part.toString()) &&
                  !request->include.contains(part.toString());
        request->include << part.toString();
    }
    return isRight ? QString() : tr("The key include takes a list of photo and pictures.");
}

QString takeOrigin(const QJsonValue &value, Request *request)
{
    request->origin = value.toString();
    return request->origin.isEmpty() ? tr("The key origin takes a text.") : QString();
}

QString takePageRequest(const QJsonValue &value, Request *request)
{
    // The language first: in it the rest is refused.
    return takeObject(value.toObject(),
                      {{QStringLiteral("language"), takeLanguage},
                       {QStringLiteral("timeout"), takeTimeout},
                       {QStringLiteral("include"), takeInclude}},
                      request);
}

} // namespace

Request parseRequest(const QByteArray &body)
{
    Request request;
    request.problem = takeObject(
        QJsonDocument::fromJson(body).object(),
        {{QStringLiteral("origin"), takeOrigin}, {QStringLiteral("request"), takePageRequest}},
        &request);
    return request;
}

} // namespace app
