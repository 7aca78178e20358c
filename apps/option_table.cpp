#include "apps/option_table.h"

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

} // namespace

const std::vector<CommandRow> &commandTable()
{
    static const std::vector<CommandRow> rows = {
        {Command::Read, "read", "read the card that lies on the reader",
         "Reads the card that lies on the reader once and prints what it holds.",
         "  idcard-reader read\n"
         "      read a card and show it\n"
         "  idcard-reader read --wait 30 --json\n"
         "      give the user half a minute to lay a card on the reader, print JSON\n"
         "  idcard-reader read --out visitor\n"
         "      save the card and its photo in the folder \"visitor\" as well\n"
         "  idcard-reader read --simulate resident\n"
         "      try it without a reader (see \"idcard-reader cards\")\n"},
        {Command::Watch, "watch", "read card after card, one line of JSON each",
         "Waits for cards and prints every card once, as one line of JSON, until it is ended with "
         "Ctrl-C. A card is new when the reader was empty before it or when it holds something "
         "else than the card before. A card that cannot be read is told on standard error, and "
         "watching goes on.",
         "  idcard-reader watch --out visitors\n"
         "      save every card in a folder of its own: visitors/0001, visitors/0002, ...\n"
         "  idcard-reader watch --count 1\n"
         "      wait for one card, however long it takes\n"},
        {Command::Cards, "cards", "list the cards that the simulator has built in",
         "Lists the cards that the simulator has built in, for use with --simulate.",
         "  idcard-reader cards\n"
         "      show the names, kinds and purposes\n"},
    };
    return rows;
}

const std::vector<OptionRow> &optionTable()
{
    using C = Command;
    static const std::vector<OptionRow> rows = {
        {OptionId::Json, {C::Read, C::Cards}, nullptr, "Print JSON for programs, not a table."},
        {OptionId::Out,
         {C::Read},
         "folder",
         "Save the card in this folder, which is made if need be: card.json, photo.bmp and, when "
         "the card has fingerprints, fingerprints.dat. Only their owner can read the files."},
        {OptionId::Out,
         {C::Watch},
         "folder",
         "Save every card in a folder of its own in this folder: 0001, 0002, ... after the highest "
         "number that is there. Only their owner can read them."},
        {OptionId::Force,
         {C::Read},
         nullptr,
         "Replace the card that the folder of --out holds. Without it nothing is overwritten.",
         Times::Once,
         0,
         0,
         OptionId::Out},
        {OptionId::Wait,
         {C::Read},
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
         OptionId::Simulate},
        {OptionId::Verbose,
         {C::Read, C::Watch, C::Cards},
         nullptr,
         "Tell on standard error what is done, and show the messages of the libraries there. What "
         "the card holds is never among it."},
        {OptionId::Help, {C::Read, C::Watch, C::Cards}, nullptr, "Show this help."},
        {OptionId::Version, {C::Read, C::Watch, C::Cards}, nullptr, "Show the version."},
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

bool belongsTo(const OptionRow &row, Command command)
{
    return std::find(row.commands.begin(), row.commands.end(), command) != row.commands.end();
}

void addOptions(const CommandRow &command, QCommandLineParser *parser)
{
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
    }
}

} // namespace app
