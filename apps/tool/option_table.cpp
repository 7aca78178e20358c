#include "apps/tool/option_table.h"

#include <algorithm>

#include <QCommandLineParser>

namespace app
{

namespace
{

constexpr int DAY_IN_SECONDS = 86400;
constexpr int SHORTEST_INTERVAL_MS = 10;
constexpr int LONGEST_INTERVAL_MS = 60000;
constexpr int HIGHEST_COUNT = 1000000000;
constexpr const char *DEVICE_PATTERN = "[0-9A-Fa-f]{4}:[0-9A-Fa-f]{4}";
constexpr const char *DEVICE_MEANING =
    "a vendor and a product id of four hexadecimal digits each, such as 1209:0001";

} // namespace

const std::vector<CommandRow> &commandTable()
{
    static const std::vector<CommandRow> rows = {
        {Command::Read, "read", nullptr, "read the card that lies on the reader",
         "Reads the card that lies on the reader once and prints what it holds.",
         "  idcard-reader read\n"
         "      read a card and show it\n"
         "  idcard-reader read --wait 30 --json\n"
         "      give the user half a minute to lay a card on the reader, print JSON\n"
         "  idcard-reader read --out visitor\n"
         "      save the card, its photo and its pictures in the folder\n"
         "      \"visitor\" as well\n"
         "  idcard-reader read --simulate resident\n"
         "      try it without a reader (see \"idcard-reader cards\")\n"},
        {Command::Watch, "watch", nullptr, "read card after card, one line of JSON each",
         "Waits for cards and prints every card once, as one line of JSON, until it is ended with "
         "Ctrl-C. A card is new when the reader was empty before it or when it holds something "
         "else than the card before. A card that cannot be read is told on standard error, and "
         "watching goes on.",
         "  idcard-reader watch --out visitors\n"
         "      save every card in a folder of its own: visitors/0001, visitors/0002, ...\n"
         "  idcard-reader watch --count 1\n"
         "      wait for one card, however long it takes\n"},
        {Command::Usb, "usb", nullptr, "read the card over USB, without the maker's library",
         "Reads the card that lies on a reader on the USB bus once and prints what it holds. The "
         "reader maker's library is not needed; the photo needs its photo decoder. A reader that "
         "this user may not open, that another program holds or that is not there is told as such, "
         "with what to do about it.",
         "  idcard-reader usb --list\n"
         "      show what is plugged in, and the ids for --device\n"
         "  idcard-reader usb --device 1209:0001\n"
         "      read a card and show it\n"
         "  idcard-reader usb --device 1209:0001 --wait 30 --json --out visitor\n"
         "      wait half a minute for a card, print JSON, save the card in \"visitor\"\n"
         "  idcard-reader usb --device 1209:0001 --raw visitor.rec\n"
         "      keep the record for \"idcard-reader decode\" as well\n"},
        {Command::Decode, "decode", "[FILE]", "decode a raw card record",
         "Decodes a raw card record as \"idcard-reader usb --raw\" keeps it, 1297, 1809 or 2321 "
         "bytes, and prints what it holds. Without FILE, or with -, it comes from standard input. "
         "What is no such record is refused with the place where it is none; a wrong checksum, "
         "which readers' hosts do not look at, is only told.",
         "  idcard-reader decode visitor.rec\n"
         "      show the card\n"
         "  idcard-reader decode visitor.rec --json --out visitor\n"
         "      print JSON, save the card in the folder \"visitor\"\n"
         "  idcard-reader decode < visitor.rec\n"
         "      the same from standard input\n"},
        {Command::Render, "render", "CARD", "paint the pictures of a described card",
         "Paints the pictures of a described card, as a reading of that card would, without a "
         "reader and without a card. CARD is a file that describes a card, or a name from "
         "\"idcard-reader cards\". The faults of the description do not count, and the portrait "
         "is painted even when the description says that the photo is compressed.",
         "  idcard-reader render my-card.json --out pictures\n"
         "      write pictures/front.jpg and pictures/back.jpg\n"
         "  idcard-reader render my-card.json --out pictures --force\n"
         "      paint anew after a change of the description\n"},
        {Command::Cards, "cards", nullptr, "list the cards that the simulator has built in",
         "Lists the cards that the simulator has built in, for use with --simulate.",
         "  idcard-reader cards\n"
         "      show the names, kinds and purposes\n"},
        {Command::Doctor, "doctor", nullptr, "find out why this machine does not read cards",
         "Looks at everything that reading a card needs on this machine and tells, line by line, "
         "whether it is in order and, if not, what to do: the versions, the locale, the makers' "
         "libraries, the reader on the USB bus and the right to use it, Qt's screen and JPEG "
         "plug-in, and the fonts of the pictures. Nothing is changed, no file is written and no "
         "reader is opened: it may be used while cards are read. The makers' libraries are loaded, "
         "in a process of their own; none of their functions is called.",
         "  idcard-reader doctor\n"
         "      look at everything\n"
         "  idcard-reader doctor --road usb --device 1209:0001\n"
         "      look at what \"idcard-reader usb\" needs for this reader\n"
         "  idcard-reader doctor --json\n"
         "      tell a program\n"},
    };
    return rows;
}

bool paintsCards(Command command)
{
    return command == Command::Read || command == Command::Watch || command == Command::Render;
}

const std::vector<OptionRow> &optionTable()
{
    using C = Command;
    static const std::vector<Command> all = {C::Read,   C::Watch, C::Usb,   C::Decode,
                                             C::Render, C::Cards, C::Doctor};
    static const std::vector<OptionRow> rows = {
        {OptionId::Device,
         {C::Usb},
         "VID:PID",
         "The reader, by its vendor and product id: four hexadecimal digits each, such as "
         "1209:0001. \"idcard-reader usb --list\" shows the ids of what is plugged in.",
         Times::Once,
         0,
         0,
         {},
         true,
         DEVICE_PATTERN,
         DEVICE_MEANING},
        {OptionId::Device,
         {C::Doctor},
         "VID:PID",
         "Look at this reader alone, by its vendor and product id: four hexadecimal digits each, "
         "such as 1209:0001. Without it, every device that could be a reader is looked at.",
         Times::Once,
         0,
         0,
         {},
         false,
         DEVICE_PATTERN,
         DEVICE_MEANING},
        {OptionId::Road,
         {C::Doctor},
         "road",
         "Look only at what one way of reading needs: library, the reader maker's library "
         "(\"idcard-reader read\", readIDCard), or usb, the reader on the USB bus "
         "(\"idcard-reader usb\", CUsbIdReader).",
         Times::Once,
         0,
         0,
         {},
         false,
         "library|usb",
         "library or usb"},
        {OptionId::List,
         {C::Usb},
         nullptr,
         "Read no card; list the USB devices but hubs: ids, device node, whether this user may "
         "open "
         "it, whether it has the pipes of a reader, and what it says it is.",
         Times::Once,
         0,
         0,
         {},
         false,
         nullptr,
         nullptr,
         {OptionId::Device, OptionId::Out, OptionId::Force, OptionId::Wait, OptionId::Raw,
          OptionId::SimulatorPhotos}},
        {OptionId::Json,
         {C::Read, C::Usb, C::Decode, C::Render, C::Cards, C::Doctor},
         nullptr,
         "Print JSON for programs, not a table."},
        {OptionId::Out,
         {C::Read},
         "folder",
         "Save the card in this folder, which is made if need be: card.json, photo.bmp, the "
         "pictures of the card's sides front.jpg and back.jpg and, when the card has fingerprints, "
         "fingerprints.dat. Only their owner can read the files. A permit for Hong Kong, Macao and "
         "Taiwan residents whose number begins with none of 81, 82, 83 has no back.jpg."},
        {OptionId::Out,
         {C::Watch},
         "folder",
         "Save every card in a folder of its own in this folder: 0001, 0002, ... after the highest "
         "number that is there. The files are those of \"idcard-reader read --out\". Only their "
         "owner "
         "can read them."},
        {OptionId::Out,
         {C::Render},
         "folder",
         "Write the pictures front.jpg and back.jpg to this folder, which is made if need be. "
         "Only their owner can read the files. A permit for Hong Kong, Macao and Taiwan "
         "residents whose number begins with none of 81, 82, 83 has no back.jpg.",
         Times::Once,
         0,
         0,
         {},
         true},
        {OptionId::Out,
         {C::Usb, C::Decode},
         "folder",
         "Save the card in this folder, which is made if need be: card.json, photo.bmp and, when "
         "the card has fingerprints, fingerprints.dat. Only their owner can read the files. "
         "Pictures of the card's sides are painted by \"idcard-reader read\" alone."},
        {OptionId::Raw,
         {C::Usb},
         "file",
         "Keep the raw record in this file as the reader sent it, also when it cannot be decoded; "
         "\"idcard-reader decode\" reads it. Only its owner can read the file."},
        {OptionId::Force,
         {C::Read, C::Decode},
         nullptr,
         "Replace the card that the folder of --out holds. Without it nothing is overwritten.",
         Times::Once,
         0,
         0,
         {OptionId::Out}},
        {OptionId::Force,
         {C::Usb},
         nullptr,
         "Replace the card that the folder of --out holds, and the file of --raw. Without it "
         "nothing is overwritten.",
         Times::Once,
         0,
         0,
         {OptionId::Out, OptionId::Raw}},
        {OptionId::Force,
         {C::Render},
         nullptr,
         "Replace the pictures that the folder of --out holds. Without it nothing is overwritten."},
        {OptionId::Wait,
         {C::Read, C::Usb},
         "seconds",
         "If no card lies on the reader, wait up to this long for one.",
         Times::Once,
         1,
         DAY_IN_SECONDS},
        {OptionId::Count,
         {C::Watch},
         "number",
         "End after so many cards.",
         Times::Once,
         1,
         HIGHEST_COUNT},
        {OptionId::Interval,
         {C::Watch},
         "milliseconds",
         "Pause between two looks at the reader; 500 if not given.",
         Times::Once,
         SHORTEST_INTERVAL_MS,
         LONGEST_INTERVAL_MS},
        {OptionId::Simulate,
         {C::Read},
         "card",
         "Read this card on the simulator, without a reader: a name from \"idcard-reader cards\" "
         "or a file that describes a card."},
        {OptionId::Simulate,
         {C::Watch},
         "card",
         "Put this card on the simulator, without a reader: a name from \"idcard-reader cards\" or "
         "a file that describes a card. Given several times, the cards come one after the other, "
         "and the program ends after the last.",
         Times::Often},
        {OptionId::Fault,
         {C::Read, C::Watch},
         "faults",
         "Let the simulator fail, with one of the faults below or several separated by commas.",
         Times::Once,
         0,
         0,
         {OptionId::Simulate}},
        {OptionId::SimulatorPhotos,
         {C::Usb, C::Decode},
         nullptr,
         "Decode the photo with the simulator's decoder, not with the maker's: simulated readers "
         "and their records have photos in a code of the simulator's own."},
        {OptionId::Verbose, all, nullptr,
         "Tell on standard error what is done, and show the messages of the libraries there. What "
         "the card holds is never among it."},
        {OptionId::Help, all, nullptr, "Show this help."},
        {OptionId::Version, all, nullptr, "Show the version."},
    };
    return rows;
}

const char *optionName(OptionId id)
{
    switch (id) {
    case OptionId::Json:
        return "json";
    case OptionId::Out:
        return "out";
    case OptionId::Force:
        return "force";
    case OptionId::Device:
        return "device";
    case OptionId::List:
        return "list";
    case OptionId::Road:
        return "road";
    case OptionId::Raw:
        return "raw";
    case OptionId::SimulatorPhotos:
        return "simulator-photos";
    case OptionId::Wait:
        return "wait";
    case OptionId::Count:
        return "count";
    case OptionId::Interval:
        return "interval";
    case OptionId::Simulate:
        return "simulate";
    case OptionId::Fault:
        return "fault";
    case OptionId::Verbose:
        return "verbose";
    case OptionId::Help:
        return "help";
    case OptionId::Version:
        return "version";
    }
    return "";
}

QString optionUsage(const OptionRow &row)
{
    const QString usage = QStringLiteral("--") + QLatin1String(optionName(row.id));
    return row.valueName == nullptr
               ? usage
               : QStringLiteral("%1 <%2>").arg(usage, QLatin1String(row.valueName));
}

QStringList requiredUsage(const OptionRow &row, Command command)
{
    QStringList alternatives{optionUsage(row)};
    for (const OptionRow &other : optionTable()) {
        if (belongsTo(other, command) &&
            std::count(other.excludes.begin(), other.excludes.end(), row.id) > 0)
            alternatives << optionUsage(other);
    }
    return alternatives;
}

QString commandUsage(const CommandRow &command)
{
    QStringList words{QStringLiteral("idcard-reader"), QLatin1String(command.name)};
    if (command.argument != nullptr)
        words << QLatin1String(command.argument);
    for (const OptionRow &row : optionTable()) {
        if (!row.isRequired || !belongsTo(row, command.command))
            continue;
        const QStringList ways = requiredUsage(row, command.command);
        const QString usage = ways.join(QStringLiteral(" | "));
        words << (ways.size() > 1 ? QStringLiteral("(%1)").arg(usage) : usage);
    }
    return (words << QStringLiteral("[options]")).join(QLatin1Char(' '));
}

bool isArgumentOptional(const CommandRow &command)
{
    return command.argument != nullptr && command.argument[0] == '[';
}

bool belongsTo(const OptionRow &row, Command command)
{
    return std::find(row.commands.begin(), row.commands.end(), command) != row.commands.end();
}

QStringList addOptions(const CommandRow &command, QCommandLineParser *parser)
{
    QStringList known;
    parser->setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const OptionRow &row : optionTable()) {
        if (!belongsTo(row, command.command))
            continue;
        QStringList names;
        if (row.id == OptionId::Help)
            names << QStringLiteral("h");
        names << QLatin1String(optionName(row.id));
        parser->addOption(QCommandLineOption(names, QString::fromUtf8(row.text),
                                             QString::fromUtf8(row.valueName)));
        known << names.last();
    }
    return known;
}

} // namespace app
