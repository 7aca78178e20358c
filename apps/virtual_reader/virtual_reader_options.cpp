#include "apps/virtual_reader/virtual_reader_options.h"

#include <vector>

#include "apps/process/translation.h"
#include "apps/terminal/program_help.h"
#include "apps/terminal/text_layout.h"
#include "apps/virtual_reader/reader_console.h"
#include "simulator/card/faults.h"

namespace app
{

namespace
{

IDCARD_TEXTS(VirtualReader)

constexpr int HIGHEST_PORT = 65535;

bool isPort(const QString &value)
{
    return isWholeNumber(value, 0, HIGHEST_PORT);
}

bool isNotBlank(const QString &value)
{
    return !value.trimmed().isEmpty();
}

std::vector<Option> declaredOptions()
{
    return {
        Option("listen",
               tr("Listen on this address; 127.0.0.1 if not given, which only this machine "
                  "reaches. Anyone who reaches another address can attach the reader."))
            .value("address", tr("an IP address of this machine, for instance 127.0.0.1"),
                   [](const QString &value) { return QHostAddress().setAddress(value); }),
        Option("port", tr("Listen on this port; 3240 if not given, any free one if 0."))
            .value("number", tr("a whole number from 0 (any free port) to %1").arg(HIGHEST_PORT),
                   isPort),
        Option("card", tr("Begin with this card on the reader: a name from \"idcard-reader cards\" "
                          "or a file that describes a card. Without it the reader is empty."))
            .value("card", tr("a card's name or file"), isNotBlank),
        Option("fault",
               tr("Begin with these faults, one of those below or several separated by commas."))
            .value("faults", tr("faults separated by commas"), isNotBlank),
        Option("device", tr("Ids of the reader, two numbers of four hexadecimal digits; 1209:0001 "
                            "if not given."))
            .value("vendor:product",
                   tr("two numbers of four hexadecimal digits each, for instance 1209:0001"),
                   [](const QString &value) { return parseUsbIds(value).has_value(); }),
        Option("until-end-of-input", tr("End when standard input does. Without it the reader stays "
                                        "until Ctrl-C, SIGTERM or \"quit\".")),
        Option("help", tr("Show this help.")),
        Option("version", tr("Show the version.")),
    };
}

/** Values are quoted, for an empty one to be seen. */
Phrases phrases()
{
    Phrases phrases;
    phrases.noArgument = tr("%2 takes no argument \"%1\".");
    phrases.noValue.clear();
    phrases.wrongValue = tr("%1 takes %2, not \"%3\".");
    return phrases;
}

ProgramHelp programHelp()
{
    return {tr("Exports a simulated card reader over USB/IP, so that it can be attached to this "
               "machine as a USB device: as root, \"modprobe vhci-hcd\", then \"usbip attach -r "
               "127.0.0.1 -b 1-1\". The reader's cards are described ones; no person is involved."),
            {{ExitStatus::DONE, tr("Ended as asked.")},
             {ExitStatus::PROGRAM_FAILED,
              tr("The address and port could not be listened on, or standard output could not be "
                 "written.")},
             {ExitStatus::WRONG_USAGE, tr("Wrong usage: an unknown option or value, or a card "
                                          "description or fault that is refused.")}},
            helpSection(tr("Commands on standard input, one a line, each answered by one line"),
                        consoleCommandRows()) +
                helpSection(tr("Faults (E: lookup, select or read)"),
                            simulator::faultHelpRows(simulator::Road::USB))};
}

VirtualReaderOptions optionsIn(const OptionParser &line)
{
    VirtualReaderOptions options;
    if (line.isSet("listen"))
        options.address.setAddress(line.value("listen"));
    options.port = static_cast<std::uint16_t>(line.number("port").value_or(options.port));
    options.ids = parseUsbIds(line.value("device")).value_or(options.ids);
    options.card = line.value("card");
    options.faults = line.value("fault");
    options.endsWithInput = line.isSet("until-end-of-input");
    return options;
}

} // namespace

CommandLine<VirtualReaderOptions> parseVirtualReaderArguments(const QStringList &arguments)
{
    return parseProgramArguments(
        OptionParser(VIRTUAL_READER_NAME, {}, declaredOptions(), phrases()), arguments,
        QStringLiteral(IDCARD_VERSION), programHelp, optionsIn);
}

} // namespace app
