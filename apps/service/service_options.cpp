#include "apps/service/service_options.h"

#include <vector>

#include "apps/process/exit_status.h"
#include "apps/process/text_layout.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Service)

std::vector<Option> declaredOptions()
{
    return {
        Option("session",
               tr("Serve on the user's own bus, to every program on it, not on that of the "
                  "system to those that polkit allows it.")),
        Option("simulate", tr("Read this card, without a reader: a name from \"idcard-reader "
                              "cards\" or a file that describes a card."))
            .value("card")
            .needs({"session"}),
        Option("fault", tr("Let the simulator fail, with one of the faults of \"idcard-reader read "
                           "--help\" or several separated by commas."))
            .value("faults")
            .needs({"simulate"}),
        Option("help", tr("Show this help.")),
        Option("version", tr("Show the version.")),
    };
}

QString exitStatusSection()
{
    const auto row = [](ExitStatus status, const char *meaning) {
        return QStringList{QString::number(static_cast<int>(status)), tr(meaning)};
    };
    return helpSection(
        tr("Exit status"),
        {row(ExitStatus::DONE, QT_TR_NOOP("No program needed it any more, or it was "
                                          "ended by a signal.")),
         row(ExitStatus::PROGRAM_FAILED,
             QT_TR_NOOP("There is no bus, or the name is taken on it.")),
         row(ExitStatus::WRONG_USAGE, QT_TR_NOOP("Wrong usage: an unknown option or value."))});
}

QString helpText(const OptionParser &parser)
{
    return tr("Usage: %1\n\n").arg(parser.usage()) +
           wrapped(tr("Reads cards for other programs, which call it over D-Bus. The bus starts it "
                      "when it is needed; it ends after a minute without a call."),
                   HELP_WIDTH, 0) +
           QLatin1Char('\n') + helpSection(tr("Options"), parser.helpRows()) + exitStatusSection();
}

} // namespace

CommandLine<ServiceOptions> parseServiceArguments(const QStringList &arguments)
{
    const QString program = QLatin1String(SERVICE_PROGRAM_NAME);
    OptionParser parser(program, {}, declaredOptions());
    const QString problem = parser.parse(arguments);
    if (!problem.isEmpty())
        return {{}, {}, problem};
    if (parser.isSet("help"))
        return {{}, helpText(parser), {}};
    if (parser.isSet("version"))
        return {
            {}, filledIn(QStringLiteral("%1 %2\n"), program, QStringLiteral(IDCARD_VERSION)), {}};
    return {
        ServiceOptions{parser.isSet("session"), parser.value("simulate"), parser.value("fault")},
        {},
        {}};
}

} // namespace app
