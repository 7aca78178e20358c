#include "apps/viewer/viewer_options.h"

#include <utility>
#include <vector>

#include <QCoreApplication>

#include "apps/card/version_text.h"
#include "simulator/card/faults.h"

namespace viewer
{

namespace
{

using app::Option;
using app::OptionParser;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

// An option, and the one without which it has no meaning.
constexpr std::pair<const char *, const char *> NEEDS[] = {
    {"fault", "simulate"},
    {"simulator-photos", "usb"},
};

std::vector<Option> optionsInto(ViewerOptions *options, QString *device)
{
    // Of several values the last counts.
    return {
        Option("simulate", Texts::tr("Begin with the simulator and a card on it: the name of a "
                                     "built-in card, which \"idcard-reader cards\" lists, or the "
                                     "file of a description."))
            .text("card", &options->card)
            .repeatable(),
        Option("fault", Texts::tr("Faults of the simulator, separated by commas, such as "
                                  "\"read-fails=3\"."))
            .text("faults", &options->faults)
            .repeatable(),
        Option("usb",
               Texts::tr("Begin with the reader on USB that has these ids, such as 1209:0001."))
            .text("VID:PID", device)
            .repeatable(),
        Option("simulator-photos",
               Texts::tr("The reader on USB is a simulated one: decode its photos."),
               &options->simulatorPhotos),
        Option("auto", Texts::tr("Read each new card."), &options->isAutomatic),
        Option("cover", Texts::tr("Begin with name, number and photo covered."),
               &options->isCovered),
        Option("help", Texts::tr("Show this help.")),
        Option("version", Texts::tr("Show the version.")),
    };
}

app::Phrases phrases()
{
    app::Phrases phrases;
    phrases.noOption = Texts::tr("%1 has no option %2.");
    phrases.noOptionButThis = Texts::tr("%1 has no option %2; did you mean %3?");
    phrases.noArgument = Texts::tr("%1 is no option.");
    phrases.noValue.clear();
    phrases.seeHelp = Texts::tr("See \"%1\".");
    return phrases;
}

/** What is wrong with the simulator's faults, or an empty text. */
QString problemOfFaults(const QString &faults)
{
    if (faults.trimmed().isEmpty())
        return Texts::tr("--fault takes faults separated by commas.");
    QString reason;
    return simulator::parseFaults(faults, simulator::Road::MAKERS_LIBRARY, &reason)
               ? QString()
               : Texts::tr("--fault is refused: %1").arg(reason);
}

/** What is wrong with the values beside each other, or an empty text. */
QString problemOf(const OptionParser &parser, const ViewerOptions &options, const QString &device)
{
    if (parser.isSet("usb") && !options.device) {
        return Texts::tr("--usb takes two times four hexadecimal digits, such as 1209:0001, and "
                         "not \"%1\".")
            .arg(device);
    }
    if (options.device && parser.isSet("simulate"))
        return Texts::tr("--usb and --simulate name two roads; leave one out.");
    if (parser.isSet("simulate") && options.card.isEmpty())
        return Texts::tr("--simulate takes the name of a card or of a file.");
    for (const auto &[option, needed] : NEEDS) {
        if (parser.isSet(option) && !parser.isSet(needed))
            return Texts::tr("--%1 needs --%2.").arg(QLatin1String(option), QLatin1String(needed));
    }
    return parser.isSet("fault") ? problemOfFaults(options.faults) : QString();
}

} // namespace

app::CommandLine<ViewerOptions> parseCommandLine(const QString &program,
                                                 const QStringList &arguments)
{
    ViewerOptions options;
    QString device;
    OptionParser parser(program, {}, optionsInto(&options, &device), phrases());
    switch (parser.parse(arguments)) {
    case OptionParser::Request::HELP:
        return {{},
                parser.helpText(Texts::tr("Reads Chinese identity documents with a desktop card "
                                          "reader and shows them in a window.")),
                {}};
    case OptionParser::Request::VERSION:
        return {{}, app::versionText(program), {}};
    case OptionParser::Request::REFUSED:
        return {{}, {}, parser.problem()};
    case OptionParser::Request::RUN:
        break;
    }
    options.device = parseUsbIds(device);
    const QString problem = problemOf(parser, options, device);
    if (!problem.isEmpty())
        return {{}, {}, parser.refusal(problem)};
    return {options, {}, {}};
}

} // namespace viewer
