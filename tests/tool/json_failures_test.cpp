// What a program gets of a failure: one object on standard output, beside the words.

#include <gmock/gmock.h>

#include "apps/reading/failure.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"

using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

struct FailingRun {
    const char *name;
    QStringList arguments;
    int exitStatus;
};

void PrintTo(const FailingRun &run, std::ostream *stream)
{
    *stream << run.name << ": " << run.arguments.join(' ').toStdString();
}

class JsonFailure : public testing::TestWithParam<FailingRun>
{
};

TEST_P(JsonFailure, IsOneObjectOnStandardOutputAndTheSameWordsAsWithoutIt)
{
    const FailingRun &failing = GetParam();
    const ProcessResult words = runTool(failing.arguments);
    const ProcessResult run = runTool(failing.arguments + QStringList{"--json"});
    EXPECT_EQ(run.exitStatus, failing.exitStatus);
    EXPECT_EQ(run.error(), words.error());
    EXPECT_EQ(words.exitStatus, failing.exitStatus);
    EXPECT_THAT(words.output(), IsEmpty());

    EXPECT_EQ(run.standardOutput.count('\n'), 1);
    const QJsonObject object = parsedObject(run.standardOutput);
    EXPECT_EQ(object.keys(), QStringList{"error"});
    const QJsonObject error = object["error"].toObject();
    EXPECT_EQ(error["name"].toString().toStdString(), failing.name);
    EXPECT_EQ(error["exitStatus"], failing.exitStatus);
    EXPECT_FALSE(error["remedy"].toString().isEmpty());
    const std::string spoken = run.standardError.simplified().toStdString();
    EXPECT_THAT(spoken, HasSubstr(error["cause"].toString().simplified().toStdString()));
    if (!error["code"].isNull()) {
        const std::string code = std::to_string(error["code"].toInt()) + " (" + failing.name + ')';
        EXPECT_THAT(spoken, testing::AllOf(HasSubstr("Code: " + code), HasSubstr("Cause: "),
                                           HasSubstr("What to do: ")));
    }
}

const FailingRun FAILING_RUNS[] = {
    {"IDCARD_RESULT_PORT_NOT_OPEN",
     {"read", "--simulate", "resident", "--fault", "open-fails=3"},
     3},
    {"IDCARD_RESULT_NO_CARD", {"read", "--simulate", "resident", "--fault", "no-card"}, 4},
    {"IDCARD_RESULT_PHOTO_NOT_DECODED",
     {"read", "--simulate", "resident", "--fault", "photo-undecodable"},
     6},
    {"IDCARD_RESULT_OK", {"read", "--simulate", "resident", "--fault", "unknown-kind"}, 8},
    {"IDCARD_RESULT_PORT_NOT_OPEN",
     {"read", "--simulate", "resident", "--fault", "read-fails=1"},
     3},
    {"IDCARD_RESULT_OK", {"read", "--simulate", "resident", "--fault", "read-fails=7"}, 8},
    {"IDCARD_RESULT_OK", {"watch", "--simulate", "resident", "--fault", "unknown-kind"}, 8},
    {"IDCARD_RESULT_PORT_NOT_OPEN", {"read"}, 3},
    {"TOOL_SIMULATION_REFUSED", {"read", "--simulate", "no-such-card"}, 2},
    {"TOOL_SIMULATION_REFUSED", {"read", "--simulate", "resident", "--fault", "no-such-fault"}, 2},
    {"TOOL_SIMULATION_REFUSED", {"watch", "--simulate", "no-such-card"}, 2},
    {"TOOL_SIMULATION_REFUSED", {"render", "no-such-card", "--out", "none"}, 2},
    {"TOOL_RECORD_NOT_READ", {"decode", "/no/such/file"}, 2},
    {"TOOL_NOT_A_RECORD", {"decode", "/dev/null"}, 2},
    {"TOOL_FILES_NOT_WRITTEN", {"read", "--simulate", "resident", "--out", "/dev/null"}, 7},
    {"TOOL_FILES_NOT_WRITTEN", {"watch", "--simulate", "resident", "--out", "/dev/null"}, 7},
    {"TOOL_FILES_NOT_WRITTEN", {"render", "resident", "--out", "/dev/null"}, 7},
    {"TOOL_FILES_NOT_WRITTEN", {"decode", "/dev/null", "--out", "/dev/null"}, 7},
    {"TOOL_FILES_NOT_WRITTEN", {"usb", "--device", "1209:0001", "--raw", "/dev/null"}, 7},
    {"TOOL_OPTIONS_CONTRADICT", {"doctor", "--road", "library", "--device", "1209:0001"}, 2},
    {"TOOL_OPTIONS_CONTRADICT", {"read", "--road", "usb", "--simulate", "resident"}, 2}};

INSTANTIATE_TEST_SUITE_P(Runs, JsonFailure, testing::ValuesIn(FAILING_RUNS));

class JsonFailures : public FolderTest
{
};

TEST_F(JsonFailures, WrongCommandLineIsOneToo)
{
    for (const QStringList &arguments :
         {QStringList{"read", "--no-such-option", "--json"}, QStringList{"reed", "-json"},
          QStringList{"read", "--json", "--wait", "soon"}}) {
        const ProcessResult run = runTool(arguments);
        EXPECT_EQ(run.exitStatus, 2);
        const QJsonObject error = parsedObject(run.standardOutput)["error"].toObject();
        EXPECT_EQ(error["name"], "TOOL_WRONG_USAGE");
        EXPECT_EQ(error["exitStatus"], 2);
        EXPECT_THAT(run.error(), HasSubstr(error["cause"].toString().toStdString()));
    }
}

TEST_F(JsonFailures, WaitThatIsBrokenOffHasANameOfItsOwn)
{
    RunningTool tool({"read", "--json", "--verbose", "--wait", "50", "--simulate", "resident",
                      "--fault", "no-card"});
    EXPECT_TRUE(tool.waitForError("The simulator is"));
    const ProcessResult run = tool.endedBy(SIGINT);
    EXPECT_EQ(run.exitStatus, 4);
    EXPECT_EQ(errorNameIn(run.standardOutput), "TOOL_INTERRUPTED");
}

TEST_F(JsonFailures, CardWhosePhotoWasNotDecodedHasTheErrorBesideItsOwnParts)
{
    const ProcessResult run = runTool({"decode", "--json", recordFile("resident"), "--out", out()});
    EXPECT_EQ(run.exitStatus, 6);
    const QJsonObject card = parsedObject(run.standardOutput);
    EXPECT_EQ(card["kind"], "resident");
    const QJsonObject error = card["error"].toObject();
    EXPECT_EQ(error["name"], "IDCARD_RESULT_PHOTO_NOT_DECODED");
    EXPECT_EQ(error["code"], -26);
    EXPECT_EQ(error["exitStatus"], 6);
    EXPECT_FALSE(parsedObject(readFile(out() + "/card.json")).contains("error"));
}

TEST_F(JsonFailures, CardThatCouldNotBeSavedHasTheErrorBesideItsOwnParts)
{
    for (const char *command : {"read", "watch"}) {
        const FileSizeLimit limit(20000); // card.json fits, the photo does not
        const ProcessResult run =
            runTool({command, "--json", "--simulate", "resident", "--out", path(command)});
        EXPECT_EQ(run.exitStatus, 7);
        const QJsonObject card = parsedObject(run.standardOutput);
        EXPECT_EQ(card["kind"], "resident");
        EXPECT_EQ(card["photo"].toObject()["file"], QJsonValue());
        const QJsonObject error = card["error"].toObject();
        EXPECT_EQ(error["name"], "TOOL_FILES_NOT_WRITTEN");
        EXPECT_THAT(run.error(), HasSubstr(error["cause"].toString().toStdString()));
    }
}

TEST_F(JsonFailures, WatchPrintsThemBetweenTheCardsOneALine)
{
    const QString bad = path("bad.json");
    QByteArray description =
        readFile(QStringLiteral(IDCARD_SOURCE_DIR "/simulator/cards/hmt-macao.json"));
    const int start = description.indexOf('{') + 1;
    writeFile(bad, description.insert(start, "\"faults\": [\"read-fails=7\"],"));
    const ProcessResult run = runTool(
        {"watch", "--json", "--simulate", "resident", "--simulate", bad, "--simulate", "resident"});
    EXPECT_EQ(run.exitStatus, 8);
    const QVector<QJsonObject> lines = parsedLines(run.standardOutput);
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0]["kind"], "resident");
    EXPECT_EQ(lines[1].keys(), QStringList{"error"});
    EXPECT_EQ(lines[1]["error"].toObject()["exitStatus"], 8);
    EXPECT_EQ(lines[2], lines[0]);
    EXPECT_THAT(run.error(), HasSubstr("nothing was read."));
}

} // namespace
