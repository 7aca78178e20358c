#include "apps/viewer/viewer_options.h"

#include <algorithm>
#include <array>
#include <vector>

#include "apps/process/translation.h"
#include "apps/reading/configuration.h"
#include "apps/reading/version_text.h"
#include "apps/terminal/program_help.h"
#include "simulator/card/faults.h"

namespace viewer
{

namespace
{

using app::ExitStatus;
using app::Option;
using app::OptionParser;

IDCARD_TEXTS(CommandLine)

struct RoadWord {
    const char *word;
    app::ReaderRoad road;
};

constexpr std::array<RoadWord, 4> ROADS = {{
    {"configured", app::ReaderRoad::CONFIGURED},
    {"library", app::ReaderRoad::LIBRARY},
    {"usb", app::ReaderRoad::USB},
    {"service", app::ReaderRoad::SERVICE},
}};

std::optional<app::ReaderRoad> roadOf(const QString &word)
{
    const auto *const row = std::find_if(ROADS.begin(), ROADS.end(), [&](const RoadWord &each) {
        return QLatin1String(each.word) == word;
    });
    return row == ROADS.end() ? std::optional<app::ReaderRoad>() : row->road;
}

Option usbOption()
{
    Option option = app::settingOption(
        "device", tr("Begin with the reader on USB that has these ids, such as 1209:0001."));
    option.name = QStringLiteral("usb");
    return option;
}

std::vector<Option> declaredOptions()
{
    // Of several values the last counts.
    return {
        Option("simulate",
               tr("Begin with the simulator and a card on it: the name of a built-in card, which "
                  "\"idcard-reader cards\" lists, or the file of a description."))
            .value("card")
            .repeatable(),
        Option("fault",
               tr("Faults of the simulator, separated by commas, such as \"read-fails=3\"."))
            .value("faults")
            .repeatable()
            .needs({"simulate"}),
        usbOption().repeatable().excludes({"simulate"}),
        Option("simulator-photos", tr("The reader on USB is a simulated one: decode its photos."))
            .needs({"usb"}),
        Option("road", tr("Begin with this way to the reader: configured, as the configuration "
                          "files say; library, through its maker's library; usb, without it; "
                          "service, through the D-Bus service of this machine."))
            .value("road", tr("configured, library, usb or service"),
                   [](const QString &value) { return roadOf(value).has_value(); })
            .repeatable()
            .excludes({"simulate", "usb"}),
        Option("auto", tr("Read each new card.")),
        Option("cover", tr("Begin with the holder's data and photo covered.")),
        Option("help", tr("Show this help.")),
        Option("version", tr("Show the version.")),
    };
}

app::ProgramHelp programHelp()
{
    return {tr("Reads Chinese identity documents with a desktop card reader and shows them in a "
               "window."),
            {{ExitStatus::DONE, tr("The window was closed.")},
             {ExitStatus::PROGRAM_FAILED, tr("Standard output could not be written.")},
             {ExitStatus::WRONG_USAGE,
              tr("Wrong usage: an unknown option or value, or a fault that is refused.")}}};
}

/** What is wrong with the simulator's faults, or an empty text. */
QString problemOfFaults(const QString &faults)
{
    QString reason;
    return faults.isEmpty() ||
                   simulator::parseFaults(faults, simulator::Road::MAKERS_LIBRARY, &reason)
               ? QString()
               : tr("--fault is refused: %1").arg(reason);
}

ViewerOptions optionsIn(const OptionParser &line)
{
    return {line.value("simulate"),
            line.value("fault"),
            parseUsbIds(line.value("usb")),
            roadOf(line.value("road")),
            line.isSet("simulator-photos"),
            line.isSet("auto"),
            line.isSet("cover")};
}

} // namespace

app::CommandLine<ViewerOptions> parseCommandLine(const QString &program,
                                                 const QStringList &arguments)
{
    app::CommandLine<ViewerOptions> line =
        app::parseProgramArguments(OptionParser(program, {}, declaredOptions()), arguments,
                                   app::versionText(), programHelp, optionsIn);
    const QString problem = line.options ? problemOfFaults(line.options->faults) : QString();
    if (!problem.isEmpty())
        return {{}, {}, OptionParser(program, {}, {}).refusal(problem)};
    return line;
}

} // namespace viewer
