#include "apps/doctor/web_pages.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include "apps/doctor/environment.h"
#include "apps/process/text_layout.h"
#include "apps/process/translation.h"
#include "apps/web_sites/browser_files.h"
#include "apps/web_sites/last_answer.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

QString programNamedIn(const QString &hostFile)
{
    QFile file(hostFile);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll())
        .object()
        .value(QStringLiteral("path"))
        .toString();
}

Finding missingFile(const QString &path, const QString &origin)
{
    return {Level::FAILURE,
            tr("Chromium lacks %1").arg(path),
            tr("Let it be written again, as root:"),
            {QStringLiteral("idcard-browser-setup --allow %1").arg(origin)}};
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

Finding judged(const WebPagesState &state)
{
    if (!state.list.mistake.isEmpty())
        return {Level::FAILURE, state.list.mistake,
                tr("Correct the list; until then no page reads a card.")};
    if (state.list.origins.isEmpty())
        return {Level::FINE, tr("No site may read cards") + lastAnswerIn(state)};
    const QString first = state.list.origins.first();
    if (!state.isPolicyThere)
        return missingFile(state.policyFile, first);
    if (state.host.isEmpty())
        return missingFile(state.hostFile, first);
    if (!state.canHostStart)
        return {Level::FAILURE,
                filledIn(tr("%1 names %2, which cannot be started"), state.hostFile, state.host),
                tr("Install idcard-reader-browser again.")};
    return {Level::FINE, state.list.origins.join(tr(", ")) + lastAnswerIn(state)};
}

} // namespace

WebPagesState probeWebPages(const QString &listPath, uid_t owner, const QString &browserFolder)
{
    WebPagesState state;
    state.listPath = listPath;
    state.isListThere = QFileInfo::exists(listPath);
    state.list = readOriginList(listPath, owner);
    state.policyFile = policyFile(browserFolder);
    state.isPolicyThere = QFileInfo::exists(state.policyFile);
    state.hostFile = hostFile(browserFolder);
    state.host = programNamedIn(state.hostFile);
    state.canHostStart = QFileInfo(state.host).isExecutable();
    state.lastAnswer = lastAnswer();
    return state;
}

Findings checkWebPages(const Environment &environment)
{
    const WebPagesState &state = environment.webPages;
    if (!state.isListThere)
        return {};
    Finding finding = judged(state);
    finding.facts = {{"list", state.listPath},
                     {"origins", QJsonArray::fromStringList(state.list.origins)},
                     {"mistake", textOrNull(state.list.mistake)},
                     {"policy", state.isPolicyThere},
                     {"host", textOrNull(state.host)},
                     {"canHostStart", state.canHostStart},
                     {"lastAnswer", state.lastAnswer.isEmpty() ? QJsonValue() : state.lastAnswer}};
    return {finding};
}

} // namespace app::doctor
