#include "apps/browser_setup/browser_setup.h"

#include <cerrno>

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

/** The extension for the sites of this machine. */
QString extensionFolder(const Browser &browser, const SetupPlaces &places)
{
    return places.made + QLatin1Char('/') + browser.name;
}

QString packedExtension(const Browser &browser, const SetupPlaces &places)
{
    return extensionFolder(browser, places) + QStringLiteral(".crx");
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

/** Chromium's pattern for the pages of exactly one origin. */
QString patternOf(const QString &origin)
{
    const QUrl url(origin);
    const int usualPort = url.scheme() == QLatin1String("https") ? 443 : 80;
    const QString base = url.port() < 0
                             ? filledIn(QStringLiteral("%1:%2"), origin, QString::number(usualPort))
                             : origin;
    return base + QStringLiteral("/*");
}

/** Firefox has none with a port: there the host alone tells ports apart. */
QString patternOfAllPorts(const QString &origin)
{
    const bool hasPort = QUrl(origin).port() >= 0;
    return (hasPort ? origin.section(QLatin1Char(':'), 0, -2) : origin) + QStringLiteral("/*");
}

QJsonArray patternsOf(const QStringList &origins, QString (*patternOf)(const QString &))
{
    QJsonArray patterns;
    for (const QString &origin : origins)
        patterns << patternOf(origin);
    return patterns;
}

/** Names in the manifest, in the way of its browser, whose pages speak to the extension. */
void letSpeak(const QStringList &origins, QJsonObject *manifest)
{
    const QString inPages = QStringLiteral("content_scripts");
    QJsonArray scripts = manifest->value(inPages).toArray();
    if (scripts.isEmpty()) {
        manifest->insert(QStringLiteral("externally_connectable"),
                         JsonObject{{"matches", patternsOf(origins, patternOf)}});
        return;
    }
    QJsonObject relay = scripts.first().toObject();
    relay.insert(QStringLiteral("matches"), patternsOf(origins, patternOfAllPorts));
    scripts.replace(0, relay);
    manifest->insert(inPages, scripts);
}

QJsonObject manifestIn(const QString &folder)
{
    return QJsonDocument::fromJson(contentOf(folder + QStringLiteral("/manifest.json"))).object();
}

/** Higher than the last one, for browsers to take the new extension in the place of the old. */
QString nextVersion(const QString &made, const QString &shipped)
{
    constexpr int FOURTH = 3;
    const auto last =
        QVersionNumber::fromString(manifestIn(made).value(QStringLiteral("version")).toString());
    const bool isSame =
        last.segmentCount() > FOURTH && QVersionNumber::fromString(shipped).isPrefixOf(last);
    const int number = isSame ? last.segmentAt(FOURTH) + 1 : 1;
    return filledIn(QStringLiteral("%1.%2"), shipped, QString::number(number));
}

QString writeExtension(const QStringList &origins, const Browser &browser,
                       const SetupPlaces &places)
{
    const QDir shipped(places.shipped + QLatin1Char('/') + browser.name);
    const QDir made(extensionFolder(browser, places));
    QJsonObject manifest = manifestIn(shipped.path());
    const QString version = manifest.value(QStringLiteral("version")).toString();
    if (version.isEmpty())
        return tr("%1 is missing; install idcard-reader-browser again.").arg(shipped.path());
    manifest[QStringLiteral("version")] = nextVersion(made.path(), version);
    letSpeak(origins, &manifest);
    QString problem;
    const QStringList files = shipped.entryList(QDir::Files);
    for (const QString &file : files) {
        if (problem.isEmpty())
            problem = writeForEverybody(made.filePath(file), contentOf(shipped.filePath(file)));
    }
    return problem.isEmpty() ? writeForEverybody(made.filePath(QStringLiteral("manifest.json")),
                                                 indented(manifest))
                             : problem;
}

/** The browser itself signs it, with the key that gives the extension its id. */
QString pack(const Browser &chromium, const SetupPlaces &places)
{
    const QTemporaryDir profile;
    QFile::remove(packedExtension(chromium, places));
    QProcess browser;
    browser.start(places.browserProgram,
                  {QStringLiteral("--headless=new"), QStringLiteral("--no-sandbox"),
                   QStringLiteral("--user-data-dir=") + profile.path(),
                   QStringLiteral("--pack-extension=") + extensionFolder(chromium, places),
                   QStringLiteral("--pack-extension-key=") + places.shipped +
                       QStringLiteral("/extension.pem")});
    if (!browser.waitForStarted())
        return cannot(tr("%1, the browser, cannot be started: %2."), places.browserProgram,
                      browser.errorString());
    browser.closeWriteChannel();
    browser.waitForFinished(PACKING_MS);
    if (!QFileInfo::exists(packedExtension(chromium, places)))
        return filledIn(
            tr("%1, the browser, did not pack the extension: %2"), places.browserProgram,
            printable(QString::fromLocal8Bit(browser.readAllStandardError().trimmed())));
    return letEverybodyRead(packedExtension(chromium, places));
}

QString writeUpdateFile(const Browser &chromium, const SetupPlaces &places)
{
    const QString version =
        manifestIn(extensionFolder(chromium, places)).value(QStringLiteral("version")).toString();
    const QString text = filledIn(
        QStringLiteral("<?xml version='1.0' encoding='UTF-8'?>\n"
                       "<gupdate xmlns='http://www.google.com/update2/response' protocol='2.0'>\n"
                       "  <app appid='%1'>\n"
                       "    <updatecheck codebase='%2' version='%3'/>\n"
                       "  </app>\n"
                       "</gupdate>\n"),
        QStringLiteral(IDCARD_EXTENSION_ID),
        QUrl::fromLocalFile(packedExtension(chromium, places)).toString(), version);
    return writeForEverybody(updateFile(places), text.toUtf8());
}

QString writePolicy(const Browser &chromium, const SetupPlaces &places)
{
    const JsonObject extension = {
        {"installation_mode", "force_installed"},
        {"update_url", QUrl::fromLocalFile(updateFile(places)).toString()},
        {"toolbar_pin", "force_pinned"}}; // its sign says which site has read a card
    const JsonObject policy = {{POLICY, JsonObject{{IDCARD_EXTENSION_ID, extension}}}};
    return writeForEverybody(chromium.installation, indented(policy));
}

QString removeFile(const QString &path)
{
    QFile file(path);
    const bool isThere = file.exists() || QFileInfo(path).isSymLink();
    return !isThere || file.remove()
               ? QString()
               : cannot(tr("%1 cannot be removed: %2."), path, file.errorString());
}

/**
 * An extension that is installed would be looked for in a newer version after hours; one that goes
 * and comes back is there at once.
 */
QString takePolicyBack(const Browser &chromium, const SetupPlaces &places)
{
    if (!QFileInfo::exists(chromium.installation))
        return {};
    QString problem = removeFile(chromium.installation);
    if (problem.isEmpty())
        QThread::msleep(places.policyReloadMs);
    return problem;
}

QString installInChromium(const Browser &chromium, const SetupPlaces &places)
{
    QString problem;
    for (const auto step : {pack, writeUpdateFile, takePolicyBack, writePolicy}) {
        if (problem.isEmpty())
            problem = step(chromium, places);
    }
    return problem;
}

/** It takes the extension from a folder, when it starts. */
QString installInFirefox(const Browser &firefox, const SetupPlaces &places)
{
    QString problem = removeFile(firefox.installation);
    const bool isLinked = problem.isEmpty() &&
                          QDir().mkpath(QFileInfo(firefox.installation).path()) &&
                          QFile::link(extensionFolder(firefox, places), firefox.installation);
    if (problem.isEmpty() && !isLinked)
        problem = cannot(tr("%1 cannot be written: %2."), firefox.installation, systemError(errno));
    return problem;
}

QString writeHostFile(const Browser &browser, const SetupPlaces &places)
{
    const QString shipped =
        filledIn(QStringLiteral("%1/%2-host.json"), places.shipped, browser.name);
    return writeForEverybody(browser.hostFile, contentOf(shipped));
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

QString allowSite(const QString &origin, const Browser &browser, const SetupPlaces &places)
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
    QString problem = writeExtension(origins, browser, places);
    if (problem.isEmpty())
        problem = writeHostFile(browser, places);
    if (problem.isEmpty())
        problem = browser.name == QLatin1String("firefox") ? installInFirefox(browser, places)
                                                           : installInChromium(browser, places);
    return problem.isEmpty() ? writeForEverybody(places.originList, list) : problem;
}

QString removeSites(const SetupPlaces &places)
{
    QString problem;
    if (QFileInfo::exists(places.originList)) // first: from here on no site reads a card
        problem =
            writeForEverybody(places.originList, withoutOrigins(contentOf(places.originList)));
    for (const Browser &browser : browsers(places.root)) {
        for (const QString &file : {browser.installation, browser.hostFile}) {
            if (problem.isEmpty())
                problem = removeFile(file);
        }
    }
    if (problem.isEmpty() && !QDir(places.made).removeRecursively())
        problem = tr("%1 cannot be removed.").arg(places.made);
    return problem;
}

QStringList rivalPolicies(const Browser &browser)
{
    QStringList rivals;
    const QFileInfoList files = QFileInfo(browser.installation)
                                    .dir()
                                    .entryInfoList({QStringLiteral("*.json")}, QDir::Files);
    for (const QFileInfo &file : files) {
        const QJsonObject policy = QJsonDocument::fromJson(contentOf(file.filePath())).object();
        if (file.filePath() != browser.installation && policy.contains(QLatin1String(POLICY)))
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
    QVector<QStringList> rows = {{tr("Sites"), sites}, {tr("List"), places.originList}};
    for (const Browser &browser : browsers(places.root))
        rows << QStringList{browser.name, presence(browser.installation)}
             << QStringList{{}, presence(browser.hostFile)};
    return alignedTable(rows);
}

} // namespace app
