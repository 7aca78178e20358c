#include "apps/virtual_reader/virtual_reader_options.h"

#include <vector>

#include "apps/process/exit_status.h"
#include "apps/process/text_layout.h"
#include "apps/virtual_reader/reader_console.h"
#include "simulator/card/faults.h"

namespace app
{

namespace
{

constexpr int HIGHEST_PORT = 65535;

/** Takes a text over that must not be blank. */
Option::Take textInto(QString *target, const QString &wanted)
{
    return [target, wanted](const QString &value) {
        *target = value;
        return value.trimmed().isEmpty() ? wanted : QString();
    };
}

Option listenOption(QHostAddress *address)
{
    return Option("listen", "Listen on this address; 127.0.0.1 if not given, which only this "
                            "machine reaches. Whoever reaches another address can attach the "
                            "reader.")
        .value("address", [address](const QString &value) {
            return address->setAddress(value)
                       ? QString()
                       : QStringLiteral("an IP address of this machine, for instance 127.0.0.1");
        });
}

Option portOption(std::uint16_t *port)
{
    return Option("port", "Listen on this port; 3240 if not given, any free one if 0.")
        .value("number", [port](const QString &value) {
            bool isNumber = false;
            const int number = value.toInt(&isNumber);
            if (!isNumber || number < 0 || number > HIGHEST_PORT) {
                return QStringLiteral("a whole number from 0 (any free port) to %1")
                    .arg(HIGHEST_PORT);
            }
            *port = static_cast<std::uint16_t>(number);
            return QString();
        });
}

Option deviceOption(UsbIds *device)
{
    return Option("device", "Ids of the reader, two numbers of four hexadecimal "
                            "digits; 1209:0001 if not given.")
        .value("vendor:product", [device](const QString &value) {
            const auto ids = parseUsbIds(value);
            *device = ids.value_or(*device);
            return ids ? QString()
                       : QStringLiteral("two numbers of four hexadecimal digits each, for instance "
                                        "1209:0001");
        });
}

std::vector<Option> optionsInto(VirtualReaderOptions *options)
{
    return {
        listenOption(&options->address),
        portOption(&options->port),
        Option("card", "Begin with this card on the reader: a name from \"idcard-reader "
                       "cards\" or a file that describes a card. Without it the reader is "
                       "empty.")
            .value("card", textInto(&options->card, QStringLiteral("a card's name or file"))),
        Option("fault", "Begin with these faults, one of those below or several "
                        "with commas.")
            .value("faults",
                   textInto(&options->faults, QStringLiteral("faults separated by commas"))),
        deviceOption(&options->ids),
        Option("until-end-of-input",
               "End when standard input does. Without it the reader stays until "
               "Ctrl-C, SIGTERM or \"quit\".",
               &options->endsWithInput),
        Option("help", "Show this help."),
        Option("version", "Show the version."),
    };
}

/** Values are quoted, for an empty one to be seen. */
Phrases phrases()
{
    Phrases phrases;
    phrases.noArgument = QStringLiteral("%2 takes no argument \"%1\".");
    phrases.noValue.clear();
    phrases.wrongValue = QStringLiteral("%1 takes %2, not \"%3\".");
    return phrases;
}

QString faultSection()
{
    QVector<QStringList> rows;
    constexpr simulator::Road ROAD = simulator::Road::USB;
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
    return helpSection(
        "Exit status",
        {row(ExitStatus::DONE, "Ended as asked."),
         row(ExitStatus::PROGRAM_FAILED, "The address and port could not be listened "
                                         "on, or standard output not be written."),
         row(ExitStatus::WRONG_USAGE, "Wrong usage: an unknown option or value, or a "
                                      "card description or fault that is refused.")});
}

QString helpText(const OptionParser &parser)
{
    return QStringLiteral("Usage: %1\n\n").arg(parser.usage()) +
           wrapped(QStringLiteral("Exports a simulated card reader over USB/IP, so that it can be "
                                  "attached to this machine as a USB device: as root, \"modprobe "
                                  "vhci-hcd\", then \"usbip attach -r 127.0.0.1 -b 1-1\". The "
                                  "reader's cards are described ones; no person is involved."),
                   HELP_WIDTH, 0) +
           QLatin1Char('\n') + helpSection("Options", parser.helpRows()) + commandSection() +
           faultSection() + exitStatusSection();
}

} // namespace

CommandLine<VirtualReaderOptions> parseVirtualReaderArguments(const QStringList &arguments)
{
    const QString program = QLatin1String(VIRTUAL_READER_NAME);
    VirtualReaderOptions options;
    OptionParser parser(program, {}, optionsInto(&options), phrases());
    switch (parser.parse(arguments)) {
    case OptionParser::Request::RUN:
        return {options, {}, {}};
    case OptionParser::Request::HELP:
        return {{}, helpText(parser), {}};
    case OptionParser::Request::VERSION:
        return {{}, QStringLiteral("%1 %2\n").arg(program, QStringLiteral(IDCARD_VERSION)), {}};
    case OptionParser::Request::REFUSED:
        break;
    }
    return {{}, {}, parser.problem()};
}

} // namespace app
