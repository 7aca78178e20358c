#include "apps/tool/help_text.h"

#include "apps/process/translation.h"
#include "apps/results/message.h"
#include "apps/results/result_catalogue.h"
#include "apps/terminal/text_layout.h"
#include "simulator/card/faults.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

QString exitStatusSection(const QVector<ExitStatus> &statuses)
{
    QVector<QStringList> rows;
    for (const ExitStatusEntry &entry : exitStatusCatalogue()) {
        if (statuses.contains(entry.status))
            rows << QStringList{QString::number(static_cast<int>(entry.status)),
                                resultText(entry.meaning)};
    }
    return helpSection(tr("Exit status"), rows);
}

QVector<ExitStatus> allStatuses()
{
    QVector<ExitStatus> statuses;
    for (const ExitStatusEntry &entry : exitStatusCatalogue())
        statuses << entry.status;
    return statuses;
}

QString faultSection()
{
    return helpSection(tr("Faults of the simulator"),
                       simulator::faultHelpRows(simulator::Road::MAKERS_LIBRARY));
}

QStringList platformVariable()
{
    return {"QT_QPA_PLATFORM",
            tr("Qt's platform; \"offscreen\" is chosen when there is no display.")};
}

QStringList simulatorVariable()
{
    return {"IDCARD_SIMULATOR_LIBRARY",
            tr("The simulator's library file, if it is not found automatically.")};
}

QStringList colourVariable()
{
    return {"NO_COLOR", tr("Set to anything, it keeps colours off the terminal.")};
}

QString environmentSection(const CommandRow &command)
{
    QVector<QStringList> rows{colourVariable()};
    if (command.application != Application::CORE)
        rows << platformVariable();
    if (command.hasSimulator)
        rows << simulatorVariable();
    return helpSection(tr("Environment"), rows);
}

} // namespace

QString overallHelp()
{
    QVector<QStringList> commands;
    for (const CommandRow &row : commandTable())
        commands << QStringList{QLatin1String(row.name), tr(row.summary)};
    return tr("Usage: idcard-reader COMMAND [options]\n\n") +
           wrapped(tr("Reads Chinese identity documents with a desktop card reader: resident "
                      "identity cards, residence permits for Hong Kong, Macao and Taiwan "
                      "residents, and foreigners' permanent residence cards."),
                   HELP_WIDTH, 0) +
           QLatin1Char('\n') + helpSection(tr("Commands"), commands) +
           helpSection(tr("Options"), {{QStringLiteral("-h, --help"), tr("Show this help.")},
                                       {QStringLiteral("--version"), tr("Show the version.")}}) +
           exitStatusSection(allStatuses()) +
           helpSection(tr("Environment"),
                       {colourVariable(), platformVariable(), simulatorVariable()}) +
           tr("\n\"idcard-reader help COMMAND\" describes a command.\n");
}

QString commandHelp(const CommandRow &command, const OptionParser &parser)
{
    return tr("Usage: %1\n\n").arg(parser.usage()) +
           wrapped(tr(command.description), HELP_WIDTH, 0) + QLatin1Char('\n') +
           helpSection(tr("Options"), parser.helpRows()) +
           (parser.has(QStringLiteral("fault")) ? faultSection() : QString()) +
           tr("\nExamples:\n") + tr(command.examples) + exitStatusSection(command.statuses) +
           environmentSection(command);
}

} // namespace app
