#include "apps/browser_setup/browser_setup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QThread>
#include <QUrl>
#include <QVersionNumber>

#include <unistd.h>

#include "apps/process/json_object.h"
#include "apps/process/text_layout.h"
#include "apps/process/translation.h"
#include "apps/web_sites/browser_files.h"
#include "apps/web_sites/origin_list.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(BrowserSetup)

constexpr int PACKING_MS = 60 * 1000;
constexpr const char *POLICY = "ExtensionSettings";

QString extensionFolder(const SetupPlaces &places)
{
    return places.made + QStringLiteral("/extension");
}

QString packedExtension(const SetupPlaces &places)
{
    return extensionFolder(places) + QStringLiteral(".crx");
}

QString updateFile(const SetupPlaces &places)
{
    return places.made + QStringLiteral("/update.xml");
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString cannot(const QString &sentence, const QString &path, const QString &reason)
{
    return filledIn(sentence, path, translatedSystemText(reason));
}

/** For everybody to read: browsers run as their users. */
QString letEverybodyRead(const QString &path)
{
    QFile file(path);
    const auto rights = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup |
                        QFileDevice::ReadOther;
    return file.setPermissions(rights)
               ? QString()
               : cannot(tr("%1 cannot be written: %2."), path, file.errorString());
}

QString writeForEverybody(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    const bool isWritten = QDir().mkpath(QFileInfo(path).path()) &&
                           file.open(QIODevice::WriteOnly) &&
                           file.write(content) == content.size() && file.commit();
    return isWritten ? letEverybodyRead(path)
                     : cannot(tr("%1 cannot be written: %2."), path, file.errorString());
}

QByteArray indented(const QJsonObject &object)
{
    return QJsonDocument(object).toJson();
}

/** The browser's pattern for the pages of exactly one origin. */
QString patternOf(const QString &origin)
{
    const QUrl url(origin);
    const int usualPort = url.scheme() == QLatin1String("https") ? 443 : 80;
    const QString base = url.port() < 0
                             ? filledIn(QStringLiteral("%1:%2"), origin, QString::number(usualPort))
                             : origin;
    return base + QStringLiteral("/*");
}

QJsonObject manifestIn(const QString &folder)
{
    return QJsonDocument::fromJson(contentOf(folder + QStringLiteral("/manifest.json"))).object();
}

/** Higher than the last one, for browsers to take the new extension in the place of the old. */
QString nextVersion(const SetupPlaces &places, const QString &shipped)
{
    constexpr int FOURTH = 3;
    const auto last = QVersionNumber::fromString(
        manifestIn(extensionFolder(places)).value(QStringLiteral("version")).toString());
    const bool isSame =
        last.segmentCount() > FOURTH && QVersionNumber::fromString(shipped).isPrefixOf(last);
    const int number = isSame ? last.segmentAt(FOURTH) + 1 : 1;
    return filledIn(QStringLiteral("%1.%2"), shipped, QString::number(number));
}

QString writeExtension(const QStringList &origins, const SetupPlaces &places)
{
    const QString shipped = places.shipped + QStringLiteral("/extension");
    QJsonObject manifest = manifestIn(shipped);
    const QString version = manifest.value(QStringLiteral("version")).toString();
    if (version.isEmpty())
        return tr("%1 is missing; install idcard-reader-browser again.").arg(shipped);
    QJsonArray patterns;
    for (const QString &origin : origins)
        patterns << patternOf(origin);
    manifest[QStringLiteral("version")] = nextVersion(places, version);
    manifest[QStringLiteral("externally_connectable")] = JsonObject{{"matches", patterns}};
    const QString script = QStringLiteral("/background.js");
    const QString problem =
        writeForEverybody(extensionFolder(places) + script, contentOf(shipped + script));
    return problem.isEmpty()
               ? writeForEverybody(extensionFolder(places) + QStringLiteral("/manifest.json"),
                                   indented(manifest))
               : problem;
}

/** The browser itself signs it, with the key that gives the extension its id. */
QString pack(const SetupPlaces &places)
{
    const QTemporaryDir profile;
    QFile::remove(packedExtension(places));
    QProcess browser;
    browser.start(places.browserProgram,
                  {QStringLiteral("--headless=new"), QStringLiteral("--no-sandbox"),
                   QStringLiteral("--user-data-dir=") + profile.path(),
                   QStringLiteral("--pack-extension=") + extensionFolder(places),
                   QStringLiteral("--pack-extension-key=") + places.shipped +
                       QStringLiteral("/extension.pem")});
    if (!browser.waitForStarted())
        return cannot(tr("%1, the browser, cannot be started: %2."), places.browserProgram,
                      browser.errorString());
    browser.closeWriteChannel();
    browser.waitForFinished(PACKING_MS);
    if (!QFileInfo::exists(packedExtension(places)))
        return filledIn(
            tr("%1, the browser, did not pack the extension: %2"), places.browserProgram,
            printable(QString::fromLocal8Bit(browser.readAllStandardError().trimmed())));
    return letEverybodyRead(packedExtension(places));
}

QString writeUpdateFile(const SetupPlaces &places)
{
    const QString version =
        manifestIn(extensionFolder(places)).value(QStringLiteral("version")).toString();
    const QString text = filledIn(
        QStringLiteral("<?xml version='1.0' encoding='UTF-8'?>\n"
                       "<gupdate xmlns='http://www.google.com/update2/response' protocol='2.0'>\n"
                       "  <app appid='%1'>\n"
                       "    <updatecheck codebase='%2' version='%3'/>\n"
                       "  </app>\n"
                       "</gupdate>\n"),
        QStringLiteral(IDCARD_EXTENSION_ID),
        QUrl::fromLocalFile(packedExtension(places)).toString(), version);
    return writeForEverybody(updateFile(places), text.toUtf8());
}

QString writePolicy(const SetupPlaces &places)
{
    const JsonObject extension = {
        {"installation_mode", "force_installed"},
        {"update_url", QUrl::fromLocalFile(updateFile(places)).toString()},
        {"toolbar_pin", "force_pinned"}}; // its sign says which site has read a card
    const JsonObject policy = {{POLICY, JsonObject{{IDCARD_EXTENSION_ID, extension}}}};
    return writeForEverybody(policyFile(places.browserFolder), indented(policy));
}

QString removeFile(const QString &path)
{
    QFile file(path);
    return !file.exists() || file.remove()
               ? QString()
               : cannot(tr("%1 cannot be removed: %2."), path, file.errorString());
}

/**
 * An extension that is installed would be looked for in a newer version after hours; one that goes
 * and comes back is there at once.
 */
QString takePolicyBack(const SetupPlaces &places)
{
    const QString policy = policyFile(places.browserFolder);
    if (!QFileInfo::exists(policy))
        return {};
    QString problem = removeFile(policy);
    if (problem.isEmpty())
        QThread::msleep(places.policyReloadMs);
    return problem;
}

QString writeHostFile(const SetupPlaces &places)
{
    return writeForEverybody(hostFile(places.browserFolder),
                             contentOf(places.shipped + QLatin1Char('/') + hostFileName()));
}

/** The comments of the list. */
QByteArray withoutOrigins(const QByteArray &list)
{
    QByteArray kept;
    for (const QByteArray &line : list.split('\n')) {
        if (line.startsWith('#'))
            kept += line + '\n';
    }
    return kept;
}

QByteArray withOrigin(QByteArray list, const QString &origin)
{
    if (!list.isEmpty() && !list.endsWith('\n'))
        list += '\n';
    return list + origin.toLatin1() + '\n';
}

} // namespace

QString allowSite(const QString &origin, const SetupPlaces &places)
{
    QByteArray list = contentOf(places.originList);
    QStringList origins;
    if (QFileInfo::exists(places.originList)) {
        const OriginList read = readOriginList(places.originList, ::geteuid());
        if (!read.mistake.isEmpty())
            return read.mistake;
        origins = read.origins;
    }
    if (!origins.contains(origin)) {
        origins << origin;
        list = withOrigin(list, origin);
    }
    QString problem = writeExtension(origins, places);
    if (problem.isEmpty())
        problem = pack(places);
    for (const auto write : {writeUpdateFile, writeHostFile, takePolicyBack, writePolicy}) {
        if (problem.isEmpty())
            problem = write(places);
    }
    return problem.isEmpty() ? writeForEverybody(places.originList, list) : problem;
}

QString removeSites(const SetupPlaces &places)
{
    QString problem;
    if (QFileInfo::exists(places.originList)) // first: from here on no site reads a card
        problem =
            writeForEverybody(places.originList, withoutOrigins(contentOf(places.originList)));
    for (const QString &file : {policyFile(places.browserFolder), hostFile(places.browserFolder)}) {
        if (problem.isEmpty())
            problem = removeFile(file);
    }
    if (problem.isEmpty() && !QDir(places.made).removeRecursively())
        problem = tr("%1 cannot be removed.").arg(places.made);
    return problem;
}

QStringList rivalPolicies(const SetupPlaces &places)
{
    QStringList rivals;
    const QFileInfoList files = QDir(policyFolder(places.browserFolder))
                                    .entryInfoList({QStringLiteral("*.json")}, QDir::Files);
    for (const QFileInfo &file : files) {
        const QJsonObject policy = QJsonDocument::fromJson(contentOf(file.filePath())).object();
        if (file.filePath() != policyFile(places.browserFolder) &&
            policy.contains(QLatin1String(POLICY)))
            rivals << file.filePath();
    }
    return rivals;
}

QString shownSetup(const SetupPlaces &places, uid_t listOwner)
{
    const OriginList list = readOriginList(places.originList, listOwner);
    const QString sites = !list.mistake.isEmpty()  ? list.mistake
                          : list.origins.isEmpty() ? tr("none")
                                                   : list.origins.join(tr(", "));
    const auto presence = [](const QString &path) {
        return QFileInfo::exists(path) ? path : tr("%1 is missing").arg(path);
    };
    return alignedTable({{tr("Sites"), sites},
                         {tr("List"), places.originList},
                         {tr("Extension"), presence(packedExtension(places))},
                         {tr("Policy"), presence(policyFile(places.browserFolder))},
                         {tr("Host"), presence(hostFile(places.browserFolder))}});
}

} // namespace app
