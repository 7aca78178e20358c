#include "viewer/viewer_options.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include "api/idcard_reader_api.h"

namespace viewer
{

namespace
{

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

constexpr const char *PROGRAM = "idcard-viewer";

CommandLine refused(const QString &problem)
{
    const QString help = QLatin1String(PROGRAM) + QLatin1String(" --help");
    return {{}, {}, problem + QLatin1Char('\n') + Texts::tr("See \"%1\".").arg(help)};
}

QString versionText()
{
    return QStringLiteral("%1 %2\nlibrary %3\n")
        .arg(QLatin1String(PROGRAM), QStringLiteral(IDCARD_VERSION),
             QString::fromStdString(getSDKVersion()));
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    const QCommandLineOption simulate(
        QStringLiteral("simulate"),
        Texts::tr("Begin with the simulator and a card on it: the name of a built-in card, which "
                  "\"idcard-reader cards\" lists, or the file of a description."),
        QStringLiteral("card"));
    const QCommandLineOption fault(
        QStringLiteral("fault"),
        Texts::tr("Faults of the simulator, separated by commas, such as \"read-fails=3\"."),
        QStringLiteral("faults"));
    const QCommandLineOption usb(
        QStringLiteral("usb"),
        Texts::tr("Begin with the reader on USB that has these ids, such as 1209:0001."),
        QStringLiteral("VID:PID"));
    const QCommandLineOption photos(
        QStringLiteral("simulator-photos"),
        Texts::tr("The reader on USB is a simulated one: decode its photos."));
    const QCommandLineOption automatic(QStringLiteral("auto"), Texts::tr("Read each new card."));
    const QCommandLineOption cover(QStringLiteral("cover"),
                                   Texts::tr("Begin with name, number and photo covered."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  Texts::tr("Show this help."));
    const QCommandLineOption version(QStringLiteral("version"), Texts::tr("Show the version."));

    QCommandLineParser parser;
    parser.setApplicationDescription(Texts::tr(
        "Reads Chinese identity documents with a desktop card reader and shows them in a window."));
    parser.addOptions({simulate, fault, usb, photos, automatic, cover, help, version});
    if (!parser.parse(QStringList(QLatin1String(PROGRAM)) + arguments))
        return refused(parser.errorText());
    if (parser.isSet(help))
        return {{}, parser.helpText(), {}};
    if (parser.isSet(version))
        return {{}, versionText(), {}};
    if (!parser.positionalArguments().isEmpty())
        return refused(Texts::tr("%1 is no option.").arg(parser.positionalArguments().first()));

    ViewerOptions options;
    options.card = parser.value(simulate);
    options.faults = parser.value(fault);
    options.device = app::parseUsbIds(parser.value(usb));
    options.simulatorPhotos = parser.isSet(photos);
    options.isAutomatic = parser.isSet(automatic);
    options.isCovered = parser.isSet(cover);
    if (parser.isSet(usb) && !options.device)
        return refused(Texts::tr("--usb takes two times four hexadecimal digits, such as "
                                 "1209:0001, and not \"%1\".")
                           .arg(parser.value(usb)));
    if (parser.isSet(usb) && parser.isSet(simulate))
        return refused(Texts::tr("--usb and --simulate name two roads; leave one out."));
    if (parser.isSet(simulate) && options.card.isEmpty())
        return refused(Texts::tr("--simulate takes the name of a card or of a file."));
    if (parser.isSet(fault) && !parser.isSet(simulate))
        return refused(Texts::tr("--fault needs --simulate."));
    if (parser.isSet(photos) && !parser.isSet(usb))
        return refused(Texts::tr("--simulator-photos needs --usb."));
    return {options, {}, {}};
}

} // namespace viewer
