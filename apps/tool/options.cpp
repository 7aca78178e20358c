#include "apps/tool/options.h"

#include "apps/card/version_text.h"
#include "apps/tool/help_text.h"
#include "apps/tool/option_table.h"

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
    return refused(QStringLiteral("There is no command %1; the commands are %2.")
                       .arg(first, names.join(QStringLiteral(", "))));
}

CommandLine<Options> readForCommand(const CommandRow &command, const QStringList &arguments)
{
    Options options;
    options.command = command.command;
    OptionParser parser(QStringLiteral("idcard-reader %1").arg(QLatin1String(command.name)),
                        QLatin1String(command.argument), optionsOf(command, &options));
    parser.acceptOneDash();
    switch (parser.parse(arguments)) {
    case OptionParser::Request::RUN:
        options.argument = parser.argument();
        return {options, {}, {}};
    case OptionParser::Request::HELP:
        return {{}, commandHelp(command, parser), {}};
    case OptionParser::Request::VERSION:
        return {{}, versionText(QStringLiteral("idcard-reader")), {}};
    case OptionParser::Request::REFUSED:
        break;
    }
    return {{}, {}, parser.problem()};
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
