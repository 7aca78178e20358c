#include "apps/browser_setup/browser_setup.h"

#include <cerrno>
#include <vector>

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

#include <unistd.h>

#include "apps/process/json_object.h"
#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"
#include "apps/web_sites/origin_list.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(BrowserSetup)

constexpr int PACKING_MS = 60 * 1000;
constexpr const char *POLICY = "ExtensionSettings";
/** Browsers run as their users. */
constexpr QFileDevice::Permissions FOR_EVERYBODY = QFileDevice::ReadOwner |
                                                   QFileDevice::WriteOwner |
                                                   QFileDevice::ReadGroup | QFileDevice::ReadOther;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject objectIn(const QString &path)
{
    return QJsonDocument::fromJson(contentOf(path)).object();
}

QString notWritten(const QString &path, const QString &reason)
{
    return filledIn(tr("%1 cannot be written: %2."), path, translatedSystemText(reason));
}

QString writeForEverybody(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.setPermissions(FOR_EVERYBODY) &&
                           file.write(content) == content.size() && file.commit();
    return isWritten ? QString() : notWritten(path, file.errorString());
}

/** What is missing then is found by who needs it. */
void copyFiles(const QString &from, const QString &to)
{
    QDir().mkpath(to);
    for (const QFileInfo &file : QDir(from).entryInfoList(QDir::Files))
        QFile::copy(file.filePath(), QDir(to).filePath(file.fileName()));
}

QString removeFile(const QString &path)
{
    QFile file(path);
    const bool isThere = file.exists() || QFileInfo(path).isSymLink();
    return !isThere || file.remove() ? QString()
                                     : filledIn(tr("%1 cannot be removed: %2."), path,
                                                translatedSystemText(file.errorString()));
}

/** What one browser has to let the pages of these sites read. */
class Installation
{
public:
    Installation(Browser browser, QStringList origins, const SetupPlaces &places)
        : m_browser(std::move(browser)), m_origins(std::move(origins)), m_places(places)
    {
    }

    /** Also where an interruption has left the browser without its part. */
    bool wasMade() const
    {
        return QFileInfo::exists(m_browser.installation) ||
               QFileInfo::exists(m_browser.isFirefox ? m_browser.extension : packed());
    }

    /** Returns what failed, or an empty text. */
    QString make() const
    {
        using Step = QString (Installation::*)() const;
        static const std::vector<Step> inChromium = {
            &Installation::writeExtension, &Installation::writeHostFile,
            &Installation::packExtension,  &Installation::writeUpdateFile,
            &Installation::takePolicyBack, &Installation::writePolicy};
        static const std::vector<Step> inFirefox = {&Installation::writeExtension,
                                                    &Installation::writeHostFile,
                                                    &Installation::linkExtension};
        for (const Step step : m_browser.isFirefox ? inFirefox : inChromium) {
            QString problem = (this->*step)();
            if (!problem.isEmpty())
                return problem;
        }
        return {};
    }

private:
    QString manifest() const { return m_browser.extension + QStringLiteral("/manifest.json"); }
    QString packed() const { return m_browser.extension + QStringLiteral(".crx"); }
    QString updateFile() const
    {
        return extensionsFolder(m_places.root) + QStringLiteral("/update.xml");
    }

    QString writeExtension() const
    {
        const QDir shipped(m_places.shipped + QLatin1Char('/') + m_browser.name);
        QByteArray text = contentOf(shipped.filePath(QStringLiteral("manifest.json")));
        text.replace(R"("matches": [])", R"("matches": )" + patterns()); // all that names sites
        QJsonObject made = QJsonDocument::fromJson(text).object();
        if (made.isEmpty())
            return tr("%1 is missing; install idcard-reader-browser again.").arg(shipped.path());
        const QString version = QStringLiteral("version");
        made.insert(version, nextVersion(made.value(version).toString()));
        QString problem = writeForEverybody(manifest(), QJsonDocument(made).toJson());
        const QStringList scripts = shipped.entryList({QStringLiteral("*.js")}, QDir::Files);
        for (const QString &script : scripts) {
            if (problem.isEmpty())
                problem = writeForEverybody(QDir(m_browser.extension).filePath(script),
                                            contentOf(shipped.filePath(script)));
        }
        return problem;
    }

    QByteArray patterns() const
    {
        QJsonArray all;
        for (const QString &origin : m_origins)
            all << patternOf(origin, m_browser);
        return QJsonDocument(all).toJson(QJsonDocument::Compact);
    }

    /** Higher than the last one, for browsers to take the new extension in the place of the old. */
    QString nextVersion(const QString &shipped) const
    {
        const QString last = objectIn(manifest()).value(QStringLiteral("version")).toString();
        const QString start = shipped + QLatin1Char('.');
        const int number = last.startsWith(start) ? last.mid(start.size()).toInt() + 1 : 1;
        return start + QString::number(number);
    }

    QString writeHostFile() const
    {
        const QString shipped =
            filledIn(QStringLiteral("%1/%2-host.json"), m_places.shipped, m_browser.name);
        return writeForEverybody(m_browser.hostFile, contentOf(shipped));
    }

    /** The browser itself signs it, with the key that gives the extension its id. */
    QString packExtension() const
    {
        const QTemporaryDir folder; // browsers have the last one until this one is whole
        const QString copy = folder.filePath(QStringLiteral("extension"));
        copyFiles(m_browser.extension, copy);
        QProcess browser;
        browser.start(
            m_places.browserProgram,
            {QStringLiteral("--headless=new"), QStringLiteral("--no-sandbox"),
             QStringLiteral("--no-zygote"), // it would live on, and make its profile again
             QStringLiteral("--user-data-dir=") + folder.filePath(QStringLiteral("profile")),
             QStringLiteral("--pack-extension=") + copy,
             QStringLiteral("--pack-extension-key=") + m_places.shipped +
                 QStringLiteral("/extension.pem")});
        if (!browser.waitForStarted())
            return filledIn(tr("%1, the browser, cannot be started: %2."), m_places.browserProgram,
                            browser.errorString());
        browser.closeWriteChannel();
        const bool isDone = browser.waitForFinished(PACKING_MS) &&
                            browser.exitStatus() == QProcess::NormalExit && browser.exitCode() == 0;
        const QByteArray content = contentOf(copy + QStringLiteral(".crx"));
        if (!isDone || content.isEmpty())
            return filledIn(
                tr("%1, the browser, did not pack the extension: %2"), m_places.browserProgram,
                printable(QString::fromLocal8Bit(browser.readAllStandardError().trimmed())));
        return writeForEverybody(packed(), content);
    }

    QString writeUpdateFile() const
    {
        const QString version = objectIn(manifest()).value(QStringLiteral("version")).toString();
        const QString text =
            filledIn(QStringLiteral(
                         "<?xml version='1.0' encoding='UTF-8'?>\n"
                         "<gupdate xmlns='http://www.google.com/update2/response' protocol='2.0'>\n"
                         "  <app appid='" IDCARD_EXTENSION_ID "'>\n"
                         "    <updatecheck codebase='%1' version='%2'/>\n"
                         "  </app>\n"
                         "</gupdate>\n"),
                     QUrl::fromLocalFile(packed()).toString(), version);
        return writeForEverybody(updateFile(), text.toUtf8());
    }

    /**
     * An extension that is installed would be looked for in a newer version after hours; one that
     * goes and comes back is there at once.
     */
    QString takePolicyBack() const
    {
        if (!QFileInfo::exists(m_browser.installation))
            return {};
        QString problem = removeFile(m_browser.installation);
        if (problem.isEmpty())
            QThread::msleep(m_places.policyReloadMs);
        return problem;
    }

    QString writePolicy() const
    {
        const JsonObject extension = {
            {"installation_mode", "force_installed"},
            {"update_url", QUrl::fromLocalFile(updateFile()).toString()},
            {"toolbar_pin", "force_pinned"}}; // its sign says which site has read a card
        const JsonObject policy = {{POLICY, JsonObject{{IDCARD_EXTENSION_ID, extension}}}};
        return writeForEverybody(m_browser.installation, QJsonDocument(policy).toJson());
    }

    /** Firefox takes the extension from a folder, when it starts. */
    QString linkExtension() const
    {
        QString problem = removeFile(m_browser.installation);
        if (!problem.isEmpty())
            return problem;
        QDir().mkpath(QFileInfo(m_browser.installation).path());
        return QFile::link(m_browser.extension, m_browser.installation)
                   ? QString()
                   : notWritten(m_browser.installation, systemError(errno));
    }

    Browser m_browser;
    QStringList m_origins;
    const SetupPlaces &m_places;
};

QString renewExtension(const Browser &browser, const SetupPlaces &places)
{
    const OriginList list = readOriginList(places.originList, ::geteuid());
    return list.mistake.isEmpty() && !list.origins.isEmpty()
               ? Installation(browser, list.origins, places).make()
               : list.mistake;
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

/** A line for each problem: a mistake in the list is every browser's. */
QString eachOnce(QStringList problems)
{
    problems.removeAll(QString());
    problems.removeDuplicates();
    return problems.join(QLatin1Char('\n'));
}

} // namespace

QString allowSite(const QString &origin, const Browser &browser, const SetupPlaces &places)
{
    QByteArray content = contentOf(places.originList);
    OriginList list;
    if (QFileInfo::exists(places.originList))
        list = readOriginList(places.originList, ::geteuid());
    if (!list.mistake.isEmpty())
        return list.mistake;
    if (!list.origins.contains(origin)) {
        list.origins << origin;
        content = withOrigin(content, origin);
    }
    const QString problem = Installation(browser, list.origins, places).make();
    return problem.isEmpty() ? writeForEverybody(places.originList, content) : problem;
}

QString renewExtensions(const SetupPlaces &places)
{
    QStringList problems;
    for (const Browser &browser : browsers(places.root)) {
        if (Installation(browser, {}, places).wasMade())
            problems << renewExtension(browser, places);
    }
    return eachOnce(problems);
}

QString removeSites(const SetupPlaces &places)
{
    QStringList problems;
    if (QFileInfo::exists(places.originList)) // first: from here on no site reads a card
        problems << writeForEverybody(places.originList,
                                      withoutOrigins(contentOf(places.originList)));
    for (const Browser &browser : browsers(places.root))
        problems << removeFile(browser.installation) << removeFile(browser.hostFile);
    const QString extensions = extensionsFolder(places.root);
    if (!QDir(extensions).removeRecursively())
        problems << tr("%1 cannot be removed.").arg(extensions);
    return eachOnce(problems);
}

QStringList rivalPolicies(const Browser &browser)
{
    QStringList rivals;
    const QFileInfoList files = QFileInfo(browser.installation)
                                    .dir()
                                    .entryInfoList({QStringLiteral("*.json")}, QDir::Files);
    for (const QFileInfo &file : files) {
        const QString path = file.filePath();
        if (path != browser.installation && objectIn(path).contains(QLatin1String(POLICY)))
            rivals << path;
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
