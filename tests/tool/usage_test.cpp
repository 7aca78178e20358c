// The command line of idcard-reader: help, version and wrong usages.

#include <gmock/gmock.h>

#include <QRegularExpression>

#include "tests/tool/tool_runner.h"

using testing::HasSubstr;

namespace
{

struct WrongUsage {
    QStringList arguments;
    const char *message;
};

void PrintTo(const WrongUsage &usage, std::ostream *stream)
{
    *stream << usage.arguments.join(QLatin1Char(' ')).toStdString();
}

class Usage : public testing::TestWithParam<WrongUsage>
{
};

TEST_P(Usage, IsRefusedWithAReason)
{
    const ProcessResult run = runTool(GetParam().arguments);
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_EQ(run.standardOutput.isEmpty(), !GetParam().arguments.contains("--json"));
    EXPECT_THAT(run.standardError.toStdString(), HasSubstr(GetParam().message));
}

const WrongUsage WRONG_USAGES[] = {
    {{}, "A command is missing"},
    {{"scan"},
     "There is no command scan; the commands are read, watch, usb, decode, render, cards, "
     "doctor."},
    {{"rea"}, "There is no command rea; did you mean read?"},
    {{"watsch", "--json"}, "There is no command watsch; did you mean watch?"},
    {{"a\x1b[1m"}, "There is no command a\\u001B[1m;"},
    {{"help", "raed"}, "There is no command raed; did you mean read?"},
    {{"help", "--jso"}, "The command comes before its options"},
    {{"help", "read", "watch"}, "help takes one command, not watch as well."},
    {{"--json", "read"}, "The command comes before its options, and --json is none"},
    {{"read", "--jso"}, "read has no option --jso; did you mean --json?"},
    {{"read", "-jsno"}, "read has no option -jsno; did you mean --json?"},
    {{"read", "--js=1"}, "read has no option --js; did you mean --json?"},
    {{"usb", "--fetch"}, "usb has no option --fetch.\n"},
    {{"read", "-x"}, "read has no option -x.\n"},
    {{"watch", "--simulated", "resident"},
     "watch has no option --simulated; did you mean --simulate?"},
    {{"render", "--fault"}, "render has no option --fault.\n"},
    {{"read", "--count", "1"}, "count"},
    {{"watch", "--force"}, "force"},
    {{"cards", "--simulate", "resident"}, "simulate"},
    {{"read", "resident"}, "read takes no argument resident."},
    {{"read", "a\x1b[1m"}, "read takes no argument a\\u001B[1m."},
    {{"read", "--simulate", "resident", "--out", "/tmp/\xEF\xBF\xBD"},
     "/tmp/\xEF\xBF\xBD is not written in the encoding of the locale.\n"},
    {{"read", "--wait", "x\n"}, "not x\\u000A."},
    {{"render"}, "render needs a CARD: \"idcard-reader render CARD --out <folder>"},
    {{"render", "", "--out", "there"}, "render needs a CARD"},
    {{"render", "resident"}, "render needs --out <folder>."},
    {{"render", "resident", "hmt-macao", "--out", "there"}, "render takes no argument hmt-macao."},
    {{"render", "resident", "--out", "there", "--fault", "no-card"}, "fault"},
    {{"render", "no-such-card", "--out", "there"}, "no-such-card"},
    {{"read", "--road", "air"}, "--road takes library or usb, not air."},
    {{"read", "--device", "1209"}, "four hexadecimal digits each, such as"},
    {{"read", "--device", "1209:0001"}, "--device only has a meaning together with --road usb."},
    {{"read", "--road", "library", "--device", "1209:0001"},
     "--device only has a meaning together with --road usb."},
    {{"read", "--simulator-photos"},
     "--simulator-photos only has a meaning together with --road usb."},
    {{"read", "--road", "usb", "--simulate", "resident"},
     "--simulate has no meaning together with --road usb"},
    {{"read", "--device", "1209:0001", "--simulate", "resident"},
     "--device has no meaning together with --simulate."},
    {{"doctor", "1209:0001"}, "doctor takes no argument 1209:0001."},
    {{"doctor", "--device", "reader"}, "such as 1209:0001, not reader."},
    {{"doctor", "--road", "usbip"}, "--road takes library or usb, not usbip."},
    {{"doctor", "--road", "library", "--device", "1209:0001"},
     "--device has no meaning together with --road library"},
    {{"watch", "--road", "usb", "--simulate", "resident"},
     "--simulate has no meaning together with --road usb"},
    {{"watch", "--device", "1209:0001"}, "--device only has a meaning together with --road usb."},
    {{"watch", "--inline", "photo"},
     "--inline only has a meaning together with --json or --events."},
    {{"watch", "--timeout", "0"}, "--timeout takes a whole number from 1 to 3600"},
    {{"read", "--timeout", "3601"}, "from 1 to 3600, not 3601."},
    {{"read", "--events"}, "read has no option --events."},
    {{"usb", "1209:0001"}, "usb takes no argument 1209:0001."},
    {{"usb", "--device", ""}, "--device needs a value: \"--device <VID:PID>\"."},
    {{"usb", "--device", "1209"}, "four hexadecimal digits each, such as"},
    {{"usb", "--device", "1209:1"}, "1209:0001, not 1209:1."},
    {{"usb", "--device", "1209:00011"}, "not 1209:00011."},
    {{"usb", "--device", "0x1209:0001"}, "not 0x1209:0001."},
    {{"usb", "--device", "120g:0001"}, "not 120g:0001."},
    {{"usb", "--device", "1209:0001\n"}, "four hexadecimal digits"},
    {{"usb", "--device", "1209:0001", "--device", "1209:0002"}, "--device can be given only once."},
    {{"usb", "--list", "--device", "1209:0001"}, "--device has no meaning together with --list."},
    {{"usb", "--list", "--raw", "file"}, "--raw has no meaning together with --list."},
    {{"usb", "--device", "1209:0001", "--force"},
     "--force only has a meaning together with --out or --raw."},
    {{"usb", "--device", "1209:0001", "--raw", ""}, "--raw needs a value: \"--raw <file>\"."},
    {{"usb", "--device", "1209:0001", "--simulate", "resident"}, "simulate"},
    {{"decode", "one", "two"}, "decode takes no argument two."},
    {{"decode", "one", "--force"}, "--force only has a meaning together with --out."},
    {{"decode", "one", "--wait", "1"}, "wait"},
    {{"read", "--out"}, "out"},
    {{"read", "--out", ""}, "--out needs a value: \"--out <folder>\"."},
    {{"read", "--simulate", ""}, "--simulate needs a value: \"--simulate <card>\"."},
    {{"read", "--simulate", "resident", "--fault", ""},
     "--fault needs a value: \"--fault <faults>\"."},
    {{"read", "--wait", " "}, "--wait needs a value: \"--wait <seconds>\"."},
    {{"read", "--force"}, "--force only has a meaning together with --out."},
    {{"read", "--fault", "no-card"}, "--fault only has a meaning together with --simulate."},
    {{"watch", "--fault", "no-card"}, "--fault only has a meaning together with --simulate."},
    {{"read", "--wait", "soon"}, "--wait takes a whole number from 1 to 86400, not soon."},
    {{"read", "--wait", "0"}, "from 1 to 86400, not 0."},
    {{"read", "--wait", "-1"}, "from 1 to 86400, not -1."},
    {{"read", "--wait", "1.5"}, "from 1 to 86400, not 1.5."},
    {{"read", "--wait", "99999999999"}, "from 1 to 86400, not 99999999999."},
    {{"read", "--wait", "1", "--wait", "2"}, "--wait can be given only once."},
    {{"read", "--simulate", "resident", "--simulate", "resident"},
     "--simulate can be given only once."},
    {{"watch", "--count", "0"}, "--count takes a whole number from 1"},
    {{"watch", "--interval", "1"}, "--interval takes a whole number from 10"},
    {{"read", "--simulate", "no-such-card"}, "no-such-card"},
    {{"read", "--simulate", "residant"}, "did you mean resident?"},
    {{"read", "--simulate", "resident", "--fault", "no-crad"},
     "fault \"no-crad\" is not known; did you mean no-card?"},
    {{"read", "--simulate", "resident", "--fault", "earthquake"}, "earthquake"},
    {{"read", "--simulate", "resident", "--fault", "unplugged"},
     "no fault \"unplugged\"; only the reader on USB has it: use "
     "idcard-virtual-reader"},
    {{"watch", "--simulate", "resident", "--fault", "no-card=1,read-answer-cut=3"},
     "no fault \"read-answer-cut\"; only the reader on USB"}};

INSTANTIATE_TEST_SUITE_P(Wrong, Usage, testing::ValuesIn(WRONG_USAGES));

/** The numbers under "Exit status:" in a help text. */
QList<int> statusesIn(const QString &help)
{
    static const QRegularExpression number(QStringLiteral("^  (\\d+)  "),
                                           QRegularExpression::MultilineOption);
    QList<int> statuses;
    auto matches = number.globalMatch(help, help.indexOf(QStringLiteral("\nExit status:\n")));
    while (matches.hasNext())
        statuses << matches.next().captured(1).toInt();
    return statuses;
}

/** What the help of a command says. */
struct Described {
    const char *command;
    QStringList options;
    QList<int> statuses; ///< that it can end with
};

void PrintTo(const Described &described, std::ostream *stream)
{
    *stream << described.command;
}

class CommandHelp : public testing::TestWithParam<Described>
{
};

TEST_P(CommandHelp, MentionsOptionsStatusesAndAnExampleHoweverItIsAskedFor)
{
    const QString command = QLatin1String(GetParam().command);
    const ProcessResult run = runTool({command, "--help"});
    expectEnd(run, 0);
    const std::string help = run.output();
    EXPECT_THAT(help, testing::StartsWith("Usage: idcard-reader " + command.toStdString()));
    for (const QString &option : GetParam().options)
        EXPECT_THAT(help, HasSubstr("  --" + option.toStdString()));
    EXPECT_THAT(help, HasSubstr("-h, --help"));
    EXPECT_THAT(help, HasSubstr("Examples:\n  idcard-reader " + command.toStdString()));
    EXPECT_EQ(statusesIn(QString::fromUtf8(run.standardOutput)), GetParam().statuses);
    for (const QByteArray &line : run.standardOutput.split('\n'))
        EXPECT_LE(line.size(), 79) << line.toStdString();
    for (const QStringList &same : {QStringList{"help", command}, QStringList{command, "-h"}}) {
        EXPECT_EQ(runTool(same).exitStatus, 0);
        EXPECT_EQ(runTool(same).standardOutput, run.standardOutput);
    }
}

const QList<int> OF_A_READING = {0, 1, 2, 3, 4, 5, 6, 7, 8, 11};

const Described COMMANDS[] = {
    {"read",
     {"json", "out <folder>", "force", "wait <seconds>", "road <road>", "device <VID:PID>",
      "simulator-photos", "simulate <card>", "fault <faults>", "verbose", "version"},
     OF_A_READING},
    {"watch",
     {"events", "out <folder>", "count <number>", "interval <milliseconds>", "timeout <seconds>",
      "road <road>", "device <VID:PID>", "simulate <card>", "fault <faults>", "verbose", "version"},
     OF_A_READING},
    {"render", {"json", "out <folder>", "force", "verbose", "version"}, {0, 1, 2, 7}},
    {"usb",
     {"device <VID:PID>", "list", "json", "out <folder>", "raw <file>", "force", "wait <seconds>",
      "simulator-photos", "verbose", "version"},
     OF_A_READING},
    {"decode",
     {"json", "out <folder>", "force", "simulator-photos", "verbose", "version"},
     {0, 1, 2, 6, 7, 8}},
    {"cards", {"json", "verbose", "version"}, {0, 1, 2}},
    {"doctor",
     {"device <VID:PID>", "road <road>", "json", "verbose", "version"},
     {0, 1, 2, 9, 10}}};

INSTANTIATE_TEST_SUITE_P(Commands, CommandHelp, testing::ValuesIn(COMMANDS));

TEST(Help, ListsTheCommandsAndTheExitStatuses)
{
    for (const char *option : {"--help", "-h", "help"}) {
        const ProcessResult run = runTool({option});
        EXPECT_EQ(run.exitStatus, 0);
        const std::string help = run.standardOutput.toStdString();
        for (const char *text :
             {"\n  read ", "\n  watch ", "\n  usb ", "\n  decode ", "\n  render ", "\n  cards ",
              "\n  doctor ", "Exit status:", "\n  10  ", "\n  11  "})
            EXPECT_THAT(help, HasSubstr(text));
    }
}

TEST(Help, NamesTheFilesThatAreWritten)
{
    for (const char *command : {"read", "render"}) {
        const std::string help = runTool({command, "--help"}).standardOutput.toStdString();
        EXPECT_THAT(help, testing::AllOf(HasSubstr("front.jpg"), HasSubstr("back.jpg"))) << command;
    }
    for (const char *command : {"usb", "decode"}) {
        const QString lines = QString::fromUtf8(runTool({command, "--help"}).standardOutput);
        const std::string help = lines.simplified().toStdString(); // wherever the lines break
        EXPECT_THAT(help, testing::AllOf(HasSubstr("card.json"), HasSubstr("fingerprints.dat"),
                                         HasSubstr("sides are painted by")))
            << command;
        EXPECT_THAT(help, testing::Not(HasSubstr("front.jpg"))) << command;
    }
}

TEST(Help, ListsTheFaultsOfTheSimulator)
{
    const std::string help = runTool({"read", "--help"}).standardOutput.toStdString();
    for (const char *fault : {"open-fails=N", "no-card=N", "transient-failures=N",
                              "photo-undecodable", "unknown-kind=N"})
        EXPECT_THAT(help, HasSubstr(fault));
}

TEST(Help, LeavesOutTheFaultsOfAReaderOnUsb)
{
    for (const char *command : {"read", "watch"}) {
        const std::string help = runTool({command, "--help"}).standardOutput.toStdString();
        for (const char *fault : {"unplugged", "answer-", "reset-refused"})
            EXPECT_THAT(help, testing::Not(HasSubstr(fault))) << command;
    }
}

TEST(Help, NeedsNoDisplay)
{
    for (const QStringList &arguments :
         {QStringList{"--help"}, QStringList{"--version"}, QStringList{"read", "--help"}})
        EXPECT_EQ(runTool(arguments, {{{"QT_QPA_PLATFORM", "no-such-platform"}}}).exitStatus, 0);
}

TEST(Version, NamesProgramAndLibrary)
{
    for (const QStringList &arguments :
         {QStringList{"--version"}, QStringList{"read", "--version"}}) {
        const ProcessResult run = runTool(arguments);
        EXPECT_EQ(run.exitStatus, 0);
        EXPECT_EQ(run.standardOutput.toStdString(), "idcard-reader 1.5.0\nlibrary version:1.5.0\n");
    }
}

} // namespace
