#include "apps/service/service_options.h"

#include <vector>

#include "apps/process/translation.h"
#include "apps/terminal/program_help.h"

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

ProgramHelp programHelp()
{
    return {
        tr("Reads cards for other programs, which call it over D-Bus. The bus starts it when it "
           "is needed; it ends after a minute without a call."),
        {{ExitStatus::DONE, tr("No program needed it any more, or it was ended by a signal.")},
         {ExitStatus::PROGRAM_FAILED, tr("There is no bus, or the name is taken on it.")},
         {ExitStatus::WRONG_USAGE, tr("Wrong usage: an unknown option or value.")}}};
}

ServiceOptions optionsIn(const OptionParser &line)
{
    return {line.isSet("session"), line.value("simulate"), line.value("fault")};
}

} // namespace

CommandLine<ServiceOptions> parseServiceArguments(const QStringList &arguments)
{
    return parseProgramArguments(OptionParser(SERVICE_PROGRAM_NAME, {}, declaredOptions()),
                                 arguments, QStringLiteral(IDCARD_VERSION), programHelp, optionsIn);
}

} // namespace app
