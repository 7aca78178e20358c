#include "apps/tool/help_text.h"

#include "apps/card/result_catalogue.h"
#include "apps/process/text_layout.h"
#include "simulator/card/faults.h"

namespace app
{

namespace
{

QString exitStatusSection(const QVector<ExitStatus> &statuses)
{
    QVector<QStringList> rows;
    for (const ExitStatusEntry &entry : exitStatusCatalogue()) {
        if (statuses.contains(entry.status))
            rows << QStringList{QString::number(static_cast<int>(entry.status)),
                                QString::fromUtf8(entry.meaning)};
    }
    return helpSection("Exit status", rows);
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
    return helpSection("Faults of the simulator",
                       simulator::faultHelpRows(simulator::Road::MAKERS_LIBRARY));
}

QStringList platformVariable()
{
    return {"QT_QPA_PLATFORM", "Qt's platform; \"offscreen\" is chosen when there is no display."};
}

QStringList simulatorVariable()
{
    return {"IDCARD_SIMULATOR_LIBRARY",
            "The simulator's library file, if it is not found automatically."};
}

QStringList colourVariable()
{
    return {"NO_COLOR", "Set to anything, it keeps colours off the terminal."};
}

QString environmentSection(const CommandRow &command)
{
    QVector<QStringList> rows{colourVariable()};
    if (command.application != Application::CORE)
        rows << platformVariable();
    if (command.hasSimulator)
        rows << simulatorVariable();
    return helpSection("Environment", rows);
}

} // namespace

QString overallHelp()
{
    QVector<QStringList> commands;
    for (const CommandRow &row : commandTable())
        commands << QStringList{QLatin1String(row.name), QLatin1String(row.summary)};
    return QStringLiteral("Usage: idcard-reader COMMAND [options]\n\n") +
           wrapped(QStringLiteral("Reads Chinese identity documents with a desktop card reader: "
                                  "resident identity cards, residence permits for Hong Kong, Macao "
                                  "and Taiwan residents, and foreigners' permanent residence "
                                  "cards."),
                   HELP_WIDTH, 0) +
           QLatin1Char('\n') + helpSection("Commands", commands) +
           helpSection("Options",
                       {{QStringLiteral("-h, --help"), QStringLiteral("Show this help.")},
                        {QStringLiteral("--version"), QStringLiteral("Show the version.")}}) +
           exitStatusSection(allStatuses()) +
           helpSection("Environment", {colourVariable(), platformVariable(), simulatorVariable()}) +
           QStringLiteral("\n\"idcard-reader help COMMAND\" describes a command.\n");
}

QString commandHelp(const CommandRow &command, const OptionParser &parser)
{
    return QStringLiteral("Usage: %1\n\n").arg(parser.usage()) +
           wrapped(QString::fromUtf8(command.description), HELP_WIDTH, 0) + QLatin1Char('\n') +
           helpSection("Options", parser.helpRows()) +
           (parser.has(QStringLiteral("fault")) ? faultSection() : QString()) +
           QStringLiteral("\nExamples:\n") + QString::fromUtf8(command.examples) +
           exitStatusSection(command.statuses) + environmentSection(command);
}

} // namespace app
