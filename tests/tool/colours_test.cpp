// Colours of idcard-reader: on a terminal whose user wants them, and nowhere else.

#include <gmock/gmock.h>

#include "tests/support/terminal.h"
#include "tests/tool/tool_runner.h"

using testing::HasSubstr;
using testing::Not;

namespace
{

constexpr const char *RED = "\033[31m";
constexpr const char *YELLOW = "\033[33m";
constexpr const char *GREEN = "\033[32m";
constexpr const char *ANY = "\033[3";

enum class On { STANDARD_OUTPUT, STANDARD_ERROR };

/** What a terminal shows of a run, with these variables. */
std::string shownOn(On stream, const QStringList &arguments,
                    const QMap<QString, QString> &variables = {})
{
    const Terminal terminal;
    ProcessInput input;
    input.environment = {{"TERM", "xterm-256color"}, {"NO_COLOR", QString()}};
    input.environment.insert(variables);
    QString &file =
        stream == On::STANDARD_OUTPUT ? input.standardOutputFile : input.standardErrorFile;
    file = terminal.path();
    runTool(arguments, input);
    return terminal.read();
}

const QStringList FAILURE = {"read", "--simulate", "resident", "--fault", "no-card"};
const QStringList NOTED = {"read", "--simulate", "foreign-2017-unknown-nationality"};

TEST(Colours, HeadlineOfAFailureIsRedOnATerminal)
{
    EXPECT_THAT(shownOn(On::STANDARD_ERROR, FAILURE),
                HasSubstr(std::string(RED) + "No card was found on the reader.\033[0m"));
}

TEST(Colours, LevelsOfTheDoctorHaveTheirOwn)
{
    const std::string report = shownOn(On::STANDARD_OUTPUT, {"doctor"});
    EXPECT_THAT(report, HasSubstr(std::string(GREEN) + "ok "));
    EXPECT_THAT(report, HasSubstr(std::string(RED) + "FAILURE "));
}

TEST(Colours, NotesOfACardAreYellow)
{
    const std::string table = shownOn(On::STANDARD_OUTPUT, NOTED);
    EXPECT_THAT(table, HasSubstr(std::string(YELLOW) + "Note "));
    EXPECT_THAT(table.substr(0, table.find("Note ")), Not(HasSubstr(std::string(RED))));
}

TEST(Colours, AreLeftOutWhereTheUserDoesNotWantThem)
{
    for (const QMap<QString, QString> &variables :
         {QMap<QString, QString>{{"NO_COLOR", "1"}}, {{"TERM", "dumb"}}, {{"TERM", QString()}}})
        EXPECT_THAT(shownOn(On::STANDARD_ERROR, FAILURE, variables), Not(HasSubstr(ANY)));
}

TEST(Colours, EmptyNoColorIsNoWish)
{
    EXPECT_THAT(shownOn(On::STANDARD_ERROR, FAILURE, {{"NO_COLOR", ""}}), HasSubstr(RED));
}

TEST(Colours, AreLeftOutOfFilesPipesAndJson)
{
    EXPECT_THAT(runTool(FAILURE, {{{"TERM", "xterm"}}}).error(), Not(HasSubstr("\033")));
    EXPECT_THAT(runTool({"doctor"}, {{{"TERM", "xterm"}}}).output(), Not(HasSubstr("\033")));
    EXPECT_THAT(shownOn(On::STANDARD_OUTPUT, {"doctor", "--json"}), Not(HasSubstr("\033")));
    EXPECT_THAT(shownOn(On::STANDARD_OUTPUT, NOTED + QStringList{"--json"}),
                Not(HasSubstr("\033")));
}

} // namespace
