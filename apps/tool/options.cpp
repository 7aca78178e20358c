#include "apps/tool/options.h"

#include <algorithm>

#include "apps/card/card_output.h"
#include "apps/process/translation.h"
#include "apps/reading/version_text.h"
#include "apps/terminal/text_layout.h"
#include "apps/tool/help_text.h"
#include "apps/tool/option_table.h"
#include "common/nearest_name.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

CommandLine<Options> refused(const QString &problem)
{
    return {{}, {}, problem + tr("\nSee \"idcard-reader --help\".")};
}

const CommandRow *findCommand(const QString &name)
{
    const auto &rows = commandTable();
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const CommandRow &row) {
        return name == QLatin1String(row.name);
    });
    return found == rows.end() ? nullptr : &*found;
}

CommandLine<Options> refusedCommand(const QString &typed)
{
    QStringList names;
    for (const CommandRow &row : commandTable())
        names << QLatin1String(row.name);
    const QString meant = nearestName(typed, names);
    const QString problem =
        meant.isEmpty()
            ? filledIn(tr("There is no command %1; the commands are %2."), printable(typed),
                       names.join(tr(", ")))
            : filledIn(tr("There is no command %1; did you mean %2?"), printable(typed), meant);
    return refused(problem);
}

CommandLine<Options> versionLine()
{
    return {{}, QStringLiteral("idcard-reader %1\n").arg(versionText()), {}};
}

CommandLine<Options> readWithoutCommand(const QString &first)
{
    if (first == QLatin1String("--help") || first == QLatin1String("-h"))
        return {{}, overallHelp(), {}};
    if (first == QLatin1String("--version"))
        return versionLine();
    if (first.startsWith(QLatin1Char('-')))
        return refused(
            tr("The command comes before its options, and %1 is none.").arg(printable(first)));
    return refusedCommand(first);
}

Options optionsIn(const OptionParser &line, const CommandRow &command)
{
    Options options;
    options.command = &command;
    options.json = line.isSet("json");
    options.events = line.isSet("events");
    options.force = line.isSet("force");
    options.verbose = line.isSet("verbose");
    options.list = line.isSet("list");
    options.simulatorPhotos = line.isSet("simulator-photos");
    options.device = parseUsbIds(line.value("device")).value_or(UsbIds());
    options.isDeviceNamed = line.isSet("device");
    options.comparesService = line.isSet("service");
    options.road = line.value("road");
    options.argument = line.argument();
    options.inlineParts = parseInlineParts(line.value("inline")).value_or(InlineParts());
    options.rawFile = line.value("raw");
    options.outFolder = line.value("out");
    options.simulate = line.values("simulate");
    options.faults = line.value("fault");
    options.waitSeconds = line.number("wait").value_or(options.waitSeconds);
    options.timeoutSeconds = line.number("timeout");
    options.intervalMs = line.number("interval").value_or(options.intervalMs);
    options.count = line.number("count");
    return options;
}

OptionParser parserOf(const CommandRow &command)
{
    return OptionParser(QStringLiteral("idcard-reader %1").arg(QLatin1String(command.name)),
                        QLatin1String(command.argument), optionsOf(command));
}

CommandLine<Options> readForCommand(const CommandRow &command, const QStringList &arguments)
{
    OptionParser parser = parserOf(command);
    parser.acceptOneDash();
    const QString problem = parser.parse(arguments);
    if (!problem.isEmpty())
        return {{}, {}, problem};
    if (parser.isSet("help"))
        return {{}, commandHelp(command, parser), {}};
    if (parser.isSet("version"))
        return versionLine();
    return {optionsIn(parser, command), {}, {}};
}

/** "help" and, perhaps, the command that it is wanted for. */
CommandLine<Options> readForHelp(const QStringList &commands)
{
    if (commands.isEmpty())
        return {{}, overallHelp(), {}};
    if (commands.size() > 1)
        return refused(
            tr("help takes one command, not %1 as well.").arg(printable(commands.at(1))));
    const CommandRow *const command = findCommand(commands.first());
    return command == nullptr
               ? readWithoutCommand(commands.first())
               : CommandLine<Options>{{}, commandHelp(*command, parserOf(*command)), {}};
}

} // namespace

CommandLine<Options> parseCommandLine(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return refused(tr("A command is missing, for instance \"idcard-reader read\"."));
    if (arguments.first() == QLatin1String("help"))
        return readForHelp(arguments.mid(1));
    const CommandRow *const command = findCommand(arguments.first());
    return command == nullptr ? readWithoutCommand(arguments.first())
                              : readForCommand(*command, arguments.mid(1));
}

} // namespace app
