#include "apps/doctor/web_pages.h"

#include <algorithm>
#include <optional>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include "apps/doctor/environment.h"
#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"
#include "apps/web_sites/browser_files.h"
#include "apps/web_sites/last_answer.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString programNamedIn(const QString &hostFile)
{
    return QJsonDocument::fromJson(contentOf(hostFile))
        .object()
        .value(QStringLiteral("path"))
        .toString();
}

/** Those of the sites that the browser's extension was not made for. */
QStringList leftOut(QStringList sites, const Browser &browser)
{
    const QByteArray manifest = contentOf(browser.extension + QStringLiteral("/manifest.json"));
    const auto isThere = [&](const QString &site) {
        return manifest.contains('"' + patternOf(site, browser).toLatin1() + '"');
    };
    sites.erase(std::remove_if(sites.begin(), sites.end(), isThere), sites.end());
    return sites;
}

QString lastAnswerIn(const WebPagesState &state)
{
    if (state.lastAnswer.isEmpty())
        return {};
    const auto part = [&state](const char *key) {
        return printable(state.lastAnswer.value(QString::fromLatin1(key)).toString());
    };
    return filledIn(tr("; the last answer, at %1, was %2 for %3"), part("time"), part("result"),
                    part("origin"));
}

/** What keeps a browser from starting the host; nothing when it can. */
std::optional<Finding> judged(const BrowserState &browser, const QString &setup)
{
    if (browser.host.isEmpty())
        return Finding{Level::FAILURE,
                       filledIn(tr("%1 lacks %2"), browser.name, browser.hostFile),
                       tr("Let it be written again, as root:"),
                       {setup + browser.name}};
    if (!browser.canHostStart)
        return Finding{
            Level::FAILURE,
            filledIn(tr("%1 names %2, which cannot be started"), browser.hostFile, browser.host),
            tr("Install idcard-reader-browser again.")};
    return std::nullopt;
}

Finding judged(const WebPagesState &state)
{
    if (!state.list.mistake.isEmpty())
        return {Level::FAILURE, state.list.mistake,
                tr("Correct the list; until then no page reads a card.")};
    if (state.list.origins.isEmpty())
        return {Level::FINE, tr("No site may read cards") + lastAnswerIn(state)};
    const QString setup = QStringLiteral("idcard-browser-setup --allow %1 --browser ")
                              .arg(state.list.origins.first());
    if (state.browsers.isEmpty())
        return {Level::FAILURE,
                tr("Sites may read cards, but no browser has the extension"),
                tr("Let it be installed, as root:"),
                {setup + QStringLiteral("chromium")}};
    for (const BrowserState &browser : state.browsers) {
        std::optional<Finding> finding = judged(browser, setup);
        if (finding)
            return *finding;
    }
    if (!state.sitesLeftOut.isEmpty())
        return {Level::FAILURE,
                tr("No browser's extension was made for %1").arg(state.sitesLeftOut.join(tr(", "))),
                tr("Let the extensions be made again, as root:"),
                {QStringLiteral("idcard-browser-setup --renew")}};
    return {Level::FINE, state.list.origins.join(tr(", ")) + lastAnswerIn(state)};
}

} // namespace

WebPagesState probeWebPages(const QString &listPath, uid_t owner, const QString &root)
{
    WebPagesState state;
    state.isListThere = QFileInfo::exists(listPath);
    state.list = readOriginList(listPath, owner);
    state.lastAnswer = lastAnswer();
    state.sitesLeftOut = state.list.origins;
    for (const Browser &browser : browsers(root)) {
        if (!QFileInfo::exists(browser.installation))
            continue;
        const QString host = programNamedIn(browser.hostFile);
        state.browsers << BrowserState{browser.name, browser.hostFile, host,
                                       QFileInfo(host).isExecutable()};
        state.sitesLeftOut = leftOut(state.sitesLeftOut, browser);
    }
    return state;
}

Findings checkWebPages(const Environment &environment)
{
    if (!environment.webPages.isListThere)
        return {};
    return {judged(environment.webPages)};
}

} // namespace app::doctor
