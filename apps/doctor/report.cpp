#include "apps/doctor/report.h"

#include <algorithm>
#include <array>

#include <QJsonArray>
#include <QJsonDocument>

#include "apps/process/json_object.h"
#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

constexpr int MARKER_WIDTH = 9;
constexpr int TITLE_WIDTH = 17;
constexpr int TEXT_COLUMN = MARKER_WIDTH + TITLE_WIDTH;
constexpr int COMMAND_INDENT = 3;

// In the order of their values.
constexpr std::array<const char *, 3> LEVELS = {"ok", "warning", "failure"};
constexpr std::array<const char *, 3> MARKERS = {QT_TR_NOOP("ok"), QT_TR_NOOP("warning"),
                                                 QT_TR_NOOP("FAILURE")};
constexpr std::array<Colour, 3> COLOURS = {Colour::GREEN, Colour::YELLOW, Colour::RED};
constexpr std::array<const char *, 3> ROADS = {"both", "library", "usb"};

template <typename Value>
QLatin1String nameIn(const std::array<const char *, 3> &names, Value value)
{
    return QLatin1String(names.at(static_cast<std::size_t>(value)));
}

QString indented(const QString &text)
{
    return wrapped(printable(text), HELP_WIDTH - TEXT_COLUMN, TEXT_COLUMN);
}

QString marker(Level level, Colours colours)
{
    return coloured(padded(tr(MARKERS.at(static_cast<std::size_t>(level))), MARKER_WIDTH),
                    COLOURS.at(static_cast<std::size_t>(level)), colours);
}

QString toLines(const CheckedFinding &one, Colours colours)
{
    const Finding &finding = one.finding;
    QString lines = marker(finding.level, colours) + padded(tr(one.check->title), TITLE_WIDTH) +
                    indented(finding.text) + QLatin1Char('\n');
    if (!finding.remedy.isEmpty())
        lines += QString(TEXT_COLUMN, QLatin1Char(' ')) +
                 indented(QStringLiteral("-> ") + finding.remedy) + QLatin1Char('\n');
    int width = 0;
    for (const QString &command : finding.commands)
        width = std::max(width, displayWidth(printable(command)));
    // One that is too long for the column begins further left rather than being broken.
    const int column = TEXT_COLUMN + COMMAND_INDENT + width <= HELP_WIDTH
                           ? TEXT_COLUMN + COMMAND_INDENT
                           : (MARKER_WIDTH + width <= HELP_WIDTH ? MARKER_WIDTH : 0);
    for (const QString &command : finding.commands)
        lines += QString(column, QLatin1Char(' ')) + printable(command) + QLatin1Char('\n');
    return lines;
}

int countOf(const std::vector<CheckedFinding> &findings, Level level)
{
    return static_cast<int>(
        std::count_if(findings.begin(), findings.end(),
                      [level](const CheckedFinding &one) { return one.finding.level == level; }));
}

QString counted(int count, const char *one, const char *several)
{
    return tr(count == 1 ? one : several).arg(count);
}

QString summary(const std::vector<CheckedFinding> &findings, Roads roads)
{
    const int failures = countOf(findings, Level::FAILURE);
    const int warnings = countOf(findings, Level::WARNING);
    if (failures == 0 && warnings == 0)
        return tr("All is fine: %1.\n")
            .arg(counted(static_cast<int>(findings.size()), QT_TR_NOOP("%1 check"),
                         QT_TR_NOOP("%1 checks")));
    QString text = filledIn(tr("%1, %2, %3 fine."),
                            counted(failures, QT_TR_NOOP("%1 failure"), QT_TR_NOOP("%1 failures")),
                            counted(warnings, QT_TR_NOOP("%1 warning"), QT_TR_NOOP("%1 warnings")),
                            QString::number(countOf(findings, Level::FINE)));
    if (roads == Roads::BOTH && failures != 0)
        text += tr(
            " A counter needs one road only; --road library or --road usb leaves the other out.");
    return wrapped(text, HELP_WIDTH, 0) + QLatin1Char('\n');
}

} // namespace

QString toReport(const std::vector<CheckedFinding> &findings, Roads roads, Colours colours)
{
    QString text;
    const Group *last = nullptr;
    for (const CheckedFinding &one : findings) {
        const Group *const group = one.check->group;
        if (group != last)
            text += filledIn(QStringLiteral("%1%2\n"), QLatin1String(last == nullptr ? "" : "\n"),
                             tr(group->title));
        last = group;
        text += toLines(one, colours);
    }
    return text + QLatin1Char('\n') + summary(findings, roads);
}

QByteArray toReportJson(const std::vector<CheckedFinding> &findings, Roads roads)
{
    QJsonArray array;
    for (const CheckedFinding &one : findings) {
        const Finding &finding = one.finding;
        array << JsonObject{{"group", QLatin1String(one.check->group->id)},
                            {"check", QLatin1String(one.check->id)},
                            {"level", nameIn(LEVELS, finding.level)},
                            {"text", finding.text},
                            {"remedy", finding.remedy.isEmpty() ? QJsonValue() : finding.remedy},
                            {"commands", QJsonArray::fromStringList(finding.commands)}};
    }
    const JsonObject report{{"road", nameIn(ROADS, roads)},
                            {"result", nameIn(LEVELS, worstOf(findings))},
                            {"counts", JsonObject{{"ok", countOf(findings, Level::FINE)},
                                                  {"warning", countOf(findings, Level::WARNING)},
                                                  {"failure", countOf(findings, Level::FAILURE)}}},
                            {"findings", array}};
    return QJsonDocument(report).toJson();
}

} // namespace app::doctor
