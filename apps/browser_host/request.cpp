#include "apps/browser_host/request.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include "apps/process/text_layout.h"
#include "apps/process/translation.h"
#include "common/texts.h"

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

/** What is wrong with the keys of an object; empty: they are these. */
QString problemOfKeys(const QJsonObject &object, const QStringList &keys)
{
    const QStringList present = object.keys();
    for (const QString &key : present) {
        if (!keys.contains(key))
            return tr("There is no key %1.").arg(quoted(key));
    }
    for (const QString &key : keys) {
        if (!object.contains(key))
            return tr("The key %1 is missing.").arg(quoted(key));
    }
    return {};
}

QString takeInclude(const QJsonValue &value, Request *request)
{
    QString wrong = tr("The key include takes a list of photo and pictures.");
    if (!value.isArray())
        return wrong;
    const QJsonArray parts = value.toArray();
    for (const QJsonValue &part : parts) {
        const QString name = part.toString();
        const bool isPart = name == QLatin1String("photo") || name == QLatin1String("pictures");
        if (!isPart || request->include.contains(name))
            return wrong;
        request->include << name;
    }
    return {};
}

QString takeTimeout(const QJsonValue &value, Request *request)
{
    const int seconds = value.toInt();
    if (seconds < 1 || seconds > Request::LONGEST_TIMEOUT_SECONDS || value != QJsonValue(seconds))
        return tr("The key timeout takes a whole number of seconds from 1 to %1.")
            .arg(Request::LONGEST_TIMEOUT_SECONDS);
    request->timeoutSeconds = seconds;
    return {};
}

QString takeLanguage(const QJsonValue &value, Request *request)
{
    static const QRegularExpression tag(QStringLiteral("\\A[A-Za-z0-9-]{1,35}\\z"));
    request->language = value.toString();
    return tag.match(request->language).hasMatch()
               ? QString()
               : tr("The key language takes a language such as en or zh-CN.");
}

QString takePageRequest(const QJsonValue &value, Request *request)
{
    if (!value.isObject())
        return tr("The request is no object.");
    const QJsonObject object = value.toObject();
    QString problem = problemOfKeys(
        object, {QStringLiteral("include"), QStringLiteral("timeout"), QStringLiteral("language")});
    // The language first: in it the rest is refused.
    if (problem.isEmpty())
        problem = takeLanguage(object.value(QStringLiteral("language")), request);
    if (problem.isEmpty())
        problem = takeTimeout(object.value(QStringLiteral("timeout")), request);
    if (problem.isEmpty())
        problem = takeInclude(object.value(QStringLiteral("include")), request);
    return problem;
}

QString takeMessage(const QByteArray &body, Request *request)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError)
        return tr("It is no JSON: %1.").arg(translatedSystemText(error.errorString()));
    if (!document.isObject())
        return tr("The message is no object.");
    const QJsonObject object = document.object();
    QString problem = problemOfKeys(object, {QStringLiteral("origin"), QStringLiteral("request")});
    if (!problem.isEmpty())
        return problem;
    request->origin = object.value(QStringLiteral("origin")).toString();
    if (request->origin.isEmpty())
        return tr("The key origin takes a text.");
    return takePageRequest(object.value(QStringLiteral("request")), request);
}

} // namespace

Request parseRequest(const QByteArray &body)
{
    Request request;
    request.problem = takeMessage(body, &request);
    return request;
}

} // namespace app
