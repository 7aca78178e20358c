#include "apps/web_sites/last_answer.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

namespace app
{

namespace
{

constexpr qint64 MOST_BYTES = 65536;

/** In the user's folder that goes at the end of the session; empty: there is none. */
QString path()
{
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return QDir::isAbsolutePath(folder) ? folder + QStringLiteral("/idcard-reader-browser.json")
                                        : QString();
}

} // namespace

void noteLastAnswer(const QString &origin, const QString &result)
{
    const JsonObject answer{{"time", QDateTime::currentDateTime().toString(Qt::ISODate)},
                            {"origin", origin},
                            {"result", result}};
    QSaveFile file(path());
    if (path().isEmpty() || !file.open(QIODevice::WriteOnly))
        return; // a page gets its answer all the same
    file.write(QJsonDocument(answer).toJson());
    file.commit();
}

JsonObject lastAnswer()
{
    QFile file(path());
    if (path().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject noted = QJsonDocument::fromJson(file.read(MOST_BYTES)).object();
    JsonObject answer;
    for (const char *key : {"time", "origin", "result"})
        answer.insert(QString::fromLatin1(key), noted.value(QString::fromLatin1(key)).toString());
    return noted.isEmpty() ? JsonObject() : answer;
}

} // namespace app
