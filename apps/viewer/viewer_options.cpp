#include "apps/viewer/viewer_options.h"

#include <utility>

#include <QCommandLineParser>
#include <QCoreApplication>

#include "apps/card/version_text.h"
#include "apps/process/unknown_option.h"
#include "simulator/card/faults.h"

namespace viewer
{

namespace
{

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

// An option, and the one without which it has no meaning.
constexpr std::pair<const char *, const char *> NEEDS[] = {
    {"fault", "simulate"},
    {"simulator-photos", "usb"},
};

QList<QCommandLineOption> options()
{
    return {
        {"simulate",
         Texts::tr("Begin with the simulator and a card on it: the name of a built-in card, which "
                   "\"idcard-reader cards\" lists, or the file of a description."),
         "card"},
        {"fault",
         Texts::tr("Faults of the simulator, separated by commas, such as \"read-fails=3\"."),
         "faults"},
        {"usb", Texts::tr("Begin with the reader on USB that has these ids, such as 1209:0001."),
         "VID:PID"},
        {"simulator-photos", Texts::tr("The reader on USB is a simulated one: decode its photos.")},
        {"auto", Texts::tr("Read each new card.")},
        {"cover", Texts::tr("Begin with name, number and photo covered.")},
        {{"h", "help"}, Texts::tr("Show this help.")},
        {"version", Texts::tr("Show the version.")},
    };
}

/** What is wrong with an option that the program does not have. */
QString problemOf(const QString &program, const app::UnknownOption &option)
{
    return option.nearest.isEmpty() ? Texts::tr("%1 has no option %2.").arg(program, option.typed)
                                    : Texts::tr("%1 has no option %2; did you mean %3?")
                                          .arg(program, option.typed, option.nearest);
}

/** What is wrong with the simulator's faults, or an empty text. */
QString problemOfFaults(const QString &faults)
{
    if (faults.trimmed().isEmpty())
        return Texts::tr("--fault takes faults separated by commas.");
    QString reason;
    return simulator::parseFaults(faults, simulator::Road::MakersLibrary, &reason)
               ? QString()
               : Texts::tr("--fault is refused: %1").arg(reason);
}

/** What is wrong with the options, or an empty text. */
QString problemOf(const QCommandLineParser &parser)
{
    if (!parser.positionalArguments().isEmpty())
        return Texts::tr("%1 is no option.").arg(parser.positionalArguments().first());
    if (parser.isSet("usb") && !parseUsbIds(parser.value("usb")))
        return Texts::tr("--usb takes two times four hexadecimal digits, such as 1209:0001, and "
                         "not \"%1\".")
            .arg(parser.value("usb"));
    if (parser.isSet("usb") && parser.isSet("simulate"))
        return Texts::tr("--usb and --simulate name two roads; leave one out.");
    if (parser.isSet("simulate") && parser.value("simulate").isEmpty())
        return Texts::tr("--simulate takes the name of a card or of a file.");
    for (const auto &[option, needed] : NEEDS) {
        if (parser.isSet(option) && !parser.isSet(needed))
            return Texts::tr("--%1 needs --%2.").arg(QLatin1String(option), QLatin1String(needed));
    }
    return parser.isSet("fault") ? problemOfFaults(parser.value("fault")) : QString();
}

CommandLine refused(const QString &program, const QString &problem)
{
    return {{}, {}, problem + '\n' + Texts::tr("See \"%1\".").arg(program + " --help")};
}

} // namespace

CommandLine parseCommandLine(const QString &program, const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(Texts::tr(
        "Reads Chinese identity documents with a desktop card reader and shows them in a window."));
    QStringList names;
    for (const QCommandLineOption &option : options()) {
        parser.addOption(option);
        names << option.names().last();
    }
    const bool isUnderstood = parser.parse(QStringList(program) + arguments);
    const auto unknown = app::unknownOption(parser, arguments, names);
    if (unknown)
        return refused(program, problemOf(program, *unknown));
    if (isUnderstood && parser.isSet("help"))
        return {{}, parser.helpText(), {}};
    if (isUnderstood && parser.isSet("version"))
        return {{}, app::versionText(program), {}};
    const QString problem = isUnderstood ? problemOf(parser) : parser.errorText();
    if (!problem.isEmpty())
        return refused(program, problem);
    return {ViewerOptions{parser.value("simulate"), parser.value("fault"),
                          parseUsbIds(parser.value("usb")), parser.isSet("simulator-photos"),
                          parser.isSet("auto"), parser.isSet("cover")},
            {},
            {}};
}

} // namespace viewer
