#include "apps/virtual_reader/virtual_reader_options.h"

#include <algorithm>

#include <QCommandLineParser>

#include "apps/process/exit_status.h"
#include "apps/process/text_layout.h"
#include "apps/process/unknown_option.h"
#include "apps/virtual_reader/reader_console.h"
#include "simulator/card/faults.h"

namespace app
{

namespace
{

constexpr int HIGHEST_PORT = 65535;

/** Takes a value over; returns what it should have been, empty when all is well. */
using TakeValue = QString (*)(const QString &value, VirtualReaderOptions *options);

struct OptionRow {
    const char *name;
    const char *valueName; ///< null: takes none
    const char *text;
    TakeValue take;
};

QString takeAddress(const QString &value, VirtualReaderOptions *options)
{
    return options->address.setAddress(value)
               ? QString()
               : QStringLiteral("an IP address of this machine, for instance 127.0.0.1");
}

QString takePort(const QString &value, VirtualReaderOptions *options)
{
    bool isNumber = false;
    const int port = value.toInt(&isNumber);
    if (!isNumber || port < 0 || port > HIGHEST_PORT)
        return QStringLiteral("a whole number from 0 (any free port) to %1").arg(HIGHEST_PORT);
    options->port = static_cast<std::uint16_t>(port);
    return {};
}

QString takeIds(const QString &value, VirtualReaderOptions *options)
{
    const auto ids = parseUsbIds(value);
    if (!ids) {
        return QStringLiteral("two numbers of four hexadecimal digits each, for instance "
                              "1209:0001");
    }
    options->ids = *ids;
    return {};
}

QString takeCard(const QString &value, VirtualReaderOptions *options)
{
    options->card = value;
    return value.trimmed().isEmpty() ? QStringLiteral("a card's name or file") : QString();
}

QString takeFaults(const QString &value, VirtualReaderOptions *options)
{
    options->faults = value;
    return value.trimmed().isEmpty() ? QStringLiteral("faults separated by commas") : QString();
}

QString takeEndOfInput(const QString & /*value*/, VirtualReaderOptions *options)
{
    options->endsWithInput = true;
    return {};
}

const OptionRow OPTIONS[] = {
    {"listen", "address",
     "Listen on this address; 127.0.0.1 if not given, which only this machine reaches. Whoever "
     "reaches another address can attach the reader.",
     takeAddress},
    {"port", "number", "Listen on this port; 3240 if not given, any free one if 0.", takePort},
    {"card", "card",
     "Begin with this card on the reader: a name from \"idcard-reader cards\" or a file that "
     "describes a card. Without it the reader is empty.",
     takeCard},
    {"fault", "faults", "Begin with these faults, one of those below or several with commas.",
     takeFaults},
    {"device", "vendor:product",
     "Ids of the reader, two numbers of four hexadecimal digits; 1209:0001 if not given.", takeIds},
    {"until-end-of-input", nullptr,
     "End when standard input does. Without it the reader stays until Ctrl-C, SIGTERM or \"quit\".",
     takeEndOfInput},
    {"help", nullptr, "Show this help.", nullptr},
    {"version", nullptr, "Show the version.", nullptr},
};

QString usageOf(const OptionRow &row)
{
    const QString name = QStringLiteral("--") + QLatin1String(row.name);
    return row.valueName == nullptr
               ? name
               : QStringLiteral("%1 <%2>").arg(name, QLatin1String(row.valueName));
}

QString optionSection()
{
    QVector<QStringList> rows;
    for (const OptionRow &row : OPTIONS) {
        const bool isHelp = qstrcmp(row.name, "help") == 0;
        rows << QStringList{QLatin1String(isHelp ? "-h, " : "") + usageOf(row),
                            QString::fromUtf8(row.text)};
    }
    return helpSection("Options", rows);
}

QString faultSection()
{
    QVector<QStringList> rows;
    constexpr simulator::Road ROAD = simulator::Road::Usb;
    for (const simulator::FaultRule &rule : simulator::faultRules(ROAD))
        rows << QStringList{simulator::faultUsage(rule), QString::fromUtf8(rule.meaning(ROAD))};
    return helpSection("Faults (E: lookup, select or read)", rows);
}

QString commandSection()
{
    return helpSection("Commands on standard input, one a line, each answered by one line",
                       consoleCommandRows());
}

QString exitStatusSection()
{
    const auto row = [](ExitStatus status, const char *meaning) {
        return QStringList{QString::number(static_cast<int>(status)), QString::fromUtf8(meaning)};
    };
    return helpSection("Exit status",
                       {row(ExitStatus::Done, "Ended as asked."),
                        row(ExitStatus::ProgramFailed, "The address and port could not be listened "
                                                       "on, or standard output not be written."),
                        row(ExitStatus::WrongUsage, "Wrong usage: an unknown option or value, or a "
                                                    "card description or fault that is refused.")});
}

QString helpText()
{
    return QStringLiteral("Usage: %1 [options]\n\n").arg(QLatin1String(VIRTUAL_READER_NAME)) +
           wrapped(QStringLiteral("Exports a simulated card reader over USB/IP, so that it can be "
                                  "attached to this machine as a USB device: as root, \"modprobe "
                                  "vhci-hcd\", then \"usbip attach -r 127.0.0.1 -b 1-1\". The "
                                  "reader's cards are described ones; no person is involved."),
                   HELP_WIDTH, 0) +
           QLatin1Char('\n') + optionSection() + commandSection() + faultSection() +
           exitStatusSection();
}

VirtualReaderCommandLine refused(const QString &problem)
{
    VirtualReaderCommandLine line;
    line.problem =
        QStringLiteral("%1\nSee \"%2 --help\".").arg(problem, QLatin1String(VIRTUAL_READER_NAME));
    return line;
}

VirtualReaderCommandLine printed(const QString &text)
{
    VirtualReaderCommandLine line;
    line.text = text;
    return line;
}

/** Takes the values of one option over; what is wrong with them, or an empty text. */
QString takeOption(const OptionRow &row, const QCommandLineParser &parser,
                   VirtualReaderOptions *options)
{
    const QString name = QLatin1String(row.name);
    if (row.take == nullptr || !parser.isSet(name))
        return {};
    const QString value = row.valueName == nullptr ? QString() : parser.value(name);
    if (row.valueName != nullptr && parser.values(name).size() > 1)
        return QStringLiteral("--%1 can be given only once.").arg(name);
    const QString wanted = row.take(value, options);
    return wanted.isEmpty()
               ? QString()
               : QStringLiteral("--%1 takes %2, not \"%3\".").arg(name, wanted, printable(value));
}

} // namespace

VirtualReaderCommandLine parseVirtualReaderArguments(const QStringList &arguments)
{
    QCommandLineParser parser;
    QStringList known;
    for (const OptionRow &row : OPTIONS) {
        QStringList names{QLatin1String(row.name)};
        known << names;
        if (qstrcmp(row.name, "help") == 0)
            names.prepend(QStringLiteral("h"));
        parser.addOption(QCommandLineOption(names, QString(), QLatin1String(row.valueName)));
    }
    const bool isUnderstood =
        parser.parse(QStringList{QLatin1String(VIRTUAL_READER_NAME)} + arguments);
    const auto unknown = unknownOption(parser, arguments, known);
    if (unknown)
        return refused(toText(*unknown, QLatin1String(VIRTUAL_READER_NAME)));
    if (!isUnderstood)
        return refused(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        return printed(helpText());
    if (parser.isSet(QStringLiteral("version"))) {
        return printed(QStringLiteral("%1 %2\n").arg(QLatin1String(VIRTUAL_READER_NAME),
                                                     QStringLiteral(IDCARD_VERSION)));
    }
    if (!parser.positionalArguments().isEmpty()) {
        return refused(QStringLiteral("%1 takes no argument \"%2\".")
                           .arg(QLatin1String(VIRTUAL_READER_NAME),
                                printable(parser.positionalArguments().constFirst())));
    }
    VirtualReaderCommandLine line;
    line.options.emplace();
    for (const OptionRow &row : OPTIONS) {
        const QString problem = takeOption(row, parser, &*line.options);
        if (!problem.isEmpty())
            return refused(problem);
    }
    return line;
}

} // namespace app
