#include "apps/tool/options.h"

#include "apps/card/card_output.h"
#include "apps/card/version_text.h"
#include "apps/tool/help_text.h"
#include "apps/tool/option_table.h"
#include "common/texts.h"

namespace app
{

namespace
{

CommandLine<Options> refused(const QString &problem)
{
    return {{}, {}, problem + QStringLiteral("\nSee \"idcard-reader --help\".")};
}

CommandLine<Options> readWithoutCommand(const QString &first)
{
    if (first == QLatin1String("--help") || first == QLatin1String("-h"))
        return {{}, overallHelp(), {}};
    if (first == QLatin1String("--version"))
        return {{}, versionText(QStringLiteral("idcard-reader")), {}};
    if (first.startsWith(QLatin1Char('-')))
        return refused(
            QStringLiteral("The command comes before its options, and %1 is none.").arg(first));
    QStringList names;
    for (const CommandRow &row : commandTable())
        names << QLatin1String(row.name);
    return refused(filledIn(QStringLiteral("There is no command %1; the commands are %2."), first,
                            names.join(QStringLiteral(", "))));
}

Options optionsIn(const OptionParser &line, const CommandRow &command)
{
    Options options;
    options.command = &command;
    options.json = line.isSet("json");
    options.force = line.isSet("force");
    options.verbose = line.isSet("verbose");
    options.list = line.isSet("list");
    options.simulatorPhotos = line.isSet("simulator-photos");
    options.device = parseUsbIds(line.value("device")).value_or(UsbIds());
    options.isDeviceNamed = line.isSet("device");
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

CommandLine<Options> readForCommand(const CommandRow &command, const QStringList &arguments)
{
    OptionParser parser(QStringLiteral("idcard-reader %1").arg(QLatin1String(command.name)),
                        QLatin1String(command.argument), optionsOf(command));
    parser.acceptOneDash();
    const QString problem = parser.parse(arguments);
    if (!problem.isEmpty())
        return {{}, {}, problem};
    if (parser.isSet("help"))
        return {{}, commandHelp(command, parser), {}};
    if (parser.isSet("version"))
        return {{}, versionText(QStringLiteral("idcard-reader")), {}};
    return {optionsIn(parser, command), {}, {}};
}

} // namespace

CommandLine<Options> parseCommandLine(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return refused(
            QStringLiteral("A command is missing, for instance \"idcard-reader read\"."));
    for (const CommandRow &row : commandTable()) {
        if (arguments.first() == QLatin1String(row.name))
            return readForCommand(row, arguments.mid(1));
    }
    return readWithoutCommand(arguments.first());
}

} // namespace app
