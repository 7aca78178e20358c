#include "apps/viewer/viewer_options.h"

#include <algorithm>
#include <array>
#include <vector>

#include <QCoreApplication>

#include "apps/reading/version_text.h"
#include "common/texts.h"
#include "simulator/card/faults.h"

namespace viewer
{

namespace
{

using app::Option;
using app::OptionParser;
using app::Phrases;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

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

std::vector<Option> options()
{
    // Of several values the last counts.
    return {
        Option("simulate",
               Texts::tr("Begin with the simulator and a card on it: the name of a built-in card, "
                         "which \"idcard-reader cards\" lists, or the file of a description."))
            .value("card")
            .repeatable(),
        Option("fault",
               Texts::tr("Faults of the simulator, separated by commas, such as \"read-fails=3\"."))
            .value("faults")
            .repeatable(),
        Option("usb",
               Texts::tr("Begin with the reader on USB that has these ids, such as 1209:0001."))
            .value("VID:PID")
            .repeatable(),
        Option("simulator-photos",
               Texts::tr("The reader on USB is a simulated one: decode its photos.")),
        Option("road",
               Texts::tr("Begin with this way to the reader: configured, as the configuration "
                         "files say; library, through its maker's library; usb, without it; "
                         "service, through the D-Bus service of this machine."))
            .value("road")
            .repeatable(),
        Option("auto", Texts::tr("Read each new card.")),
        Option("cover", Texts::tr("Begin with the holder's data and photo covered.")),
        Option("help", Texts::tr("Show this help.")),
        Option("version", Texts::tr("Show the version.")),
    };
}

Phrases phrases()
{
    Phrases phrases;
    phrases.noArgument = Texts::tr("%1 is not an option.");
    phrases.noValue.clear();
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
QString problemOf(const OptionParser &line)
{
    const bool isUsb = line.isSet("usb");
    const bool isSimulated = line.isSet("simulate");
    const bool isRoad = line.isSet("road");
    if (isUsb && !parseUsbIds(line.value("usb"))) {
        return Texts::
            tr("--usb takes two times four hexadecimal digits, such as 1209:0001, and not \"%1\".")
                .arg(line.value("usb"));
    }
    if (isUsb && isSimulated)
        return Texts::tr("--usb and --simulate name two roads; leave one out.");
    if (isRoad && !roadOf(line.value("road"))) {
        return Texts::tr("--road takes configured, library, usb or service, and not \"%1\".")
            .arg(line.value("road"));
    }
    if (isRoad && (isUsb || isSimulated))
        return Texts::tr("--road, --usb and --simulate name several roads; leave all but one out.");
    if (isSimulated && line.value("simulate").isEmpty())
        return Texts::tr("--simulate takes the name of a card or of a file.");
    const QString needs = Texts::tr("--%1 needs --%2.");
    if (line.isSet("fault") && !isSimulated)
        return filledIn(needs, "fault", "simulate");
    if (line.isSet("simulator-photos") && !isUsb)
        return filledIn(needs, "simulator-photos", "usb");
    return line.isSet("fault") ? problemOfFaults(line.value("fault")) : QString();
}

} // namespace

app::CommandLine<ViewerOptions> parseCommandLine(const QString &program,
                                                 const QStringList &arguments)
{
    OptionParser line(program, {}, options(), phrases());
    QString problem = line.parse(arguments);
    if (!problem.isEmpty())
        return {{}, {}, problem};
    if (line.isSet("help")) {
        return {{},
                line.helpText(Texts::tr("Reads Chinese identity documents with a desktop card "
                                        "reader and shows them in a window.")),
                {}};
    }
    if (line.isSet("version"))
        return {{}, app::versionText(program), {}};
    problem = problemOf(line);
    if (!problem.isEmpty())
        return {{}, {}, line.refusal(problem)};
    return {ViewerOptions{line.value("simulate"), line.value("fault"),
                          parseUsbIds(line.value("usb")), roadOf(line.value("road")),
                          line.isSet("simulator-photos"), line.isSet("auto"), line.isSet("cover")},
            {},
            {}};
}

} // namespace viewer
