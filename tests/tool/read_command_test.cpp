// "idcard-reader read": what it prints and how it ends.

#include <csignal>

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QJsonDocument>

#include "tests/card/expected_json.h"
#include "tests/support/files.h"
#include "tests/support/terminal.h"
#include "tests/tool/tool_runner.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

class ReadKind : public testing::TestWithParam<const char *>
{
};

TEST_P(ReadKind, JsonHoldsTheDescribedCard)
{
    const QString name = QLatin1String(GetParam());
    const ProcessResult run = runTool({"read", "--json", "--simulate", name});
    expectEnd(run, 0);
    EXPECT_EQ(QJsonDocument(parsedObject(run.standardOutput)).toJson().toStdString(),
              QJsonDocument(expectedOfRead(builtInCard(name))).toJson().toStdString());
}

TEST_P(ReadKind, TableShowsTheDescribedCard)
{
    const QString name = QLatin1String(GetParam());
    const simulator::CardDescription card = builtInCard(name);
    const ProcessResult run = runTool({"read", "--simulate", name});
    expectEnd(run, 0);
    const std::string table = run.output();
    for (const QString &text : {card.name, card.englishName, card.chineseName, card.address,
                                card.idNumber, card.issuingAuthority, card.travelPermitNumber}) {
        EXPECT_THAT(table, HasSubstr(text.toStdString()));
    }
    EXPECT_THAT(table, HasSubstr(card.birthDate.mid(0, 4).toStdString() + "-" +
                                 card.birthDate.mid(4, 2).toStdString() + "-" +
                                 card.birthDate.mid(6).toStdString()));
}

TEST(Read, PicturesThatAreNotSavedAreNotSpokenOf)
{
    const ProcessResult run = runTool({"read", "--simulate", "hmt-unknown-region"});
    expectEnd(run, 0);
    EXPECT_THAT(run.output(), Not(HasSubstr("picture ")));
}

INSTANTIATE_TEST_SUITE_P(Kinds, ReadKind,
                         testing::Values("resident", "hmt-hong-kong", "foreign-2017", "foreign-new",
                                         "resident-compressed-photo", "resident-one-fingerprint",
                                         "resident-no-fingerprint", "resident-long-term",
                                         "resident-rare-characters", "resident-two-character-name",
                                         "foreign-2017-unknown-nationality"));

TEST(Read, TableShowsNotesInWords)
{
    EXPECT_THAT(runTool({"read", "--simulate", "hmt-macao"}).output(), // valid to 2025
                HasSubstr("\nNote                  The card has expired.\n"));
    EXPECT_THAT(runTool({"read", "--simulate", "resident-long-term"}).output(),
                Not(HasSubstr("\nNote")));
}

TEST(Read, FieldsWithoutContentAreEmptyInTheJsonAndADashInTheTable)
{
    const QString card = QStringLiteral("foreign-2017-unknown-nationality");
    const QJsonObject json =
        parsedObject(runTool({"read", "--json", "--simulate", card}).standardOutput);
    EXPECT_EQ(json["nationality"], QJsonValue(QString()));
    const std::string table = runTool({"read", "--simulate", card}).output();
    EXPECT_THAT(table, HasSubstr("\nNationality    -\n"));
    EXPECT_THAT(table, HasSubstr("\nChinese name   -\n")); // filled up with blanks by the reader
}

TEST(Read, DescriptionFileIsReadLikeABuiltInCard)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QString::fromUtf8("我的卡.json"));
    writeFile(path, readFile(QStringLiteral(IDCARD_SOURCE_DIR "/simulator/cards/resident.json")));
    EXPECT_EQ(runTool({"read", "--json", "--simulate", path}).standardOutput,
              runTool({"read", "--json", "--simulate", "resident"}).standardOutput);
}

TEST(Read, ChineseNamesOfFilesAreUnderstoodAndPrintedInThePlainLocale)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QString::fromUtf8("我的卡.json"));
    const QString out = folder.filePath(QString::fromUtf8("访客"));
    writeFile(path, readFile(QStringLiteral(IDCARD_SOURCE_DIR "/simulator/cards/resident.json")));
    const ProcessResult run =
        runTool({"read", "--json", "--simulate", path, "--out", out}, {{{"LC_ALL", "C"}}});
    EXPECT_EQ(run.exitStatus, 0) << run.error();
    EXPECT_EQ(parsedObject(run.standardOutput)["photo"].toObject()["file"], out + "/photo.bmp");
}

TEST(Read, InstalledReaderIsUsedWithoutSimulate)
{
    const InstalledReader reader;
    const ProcessResult run = runTool({"read", "--json"}, {reader.variables("hmt-macao")});
    EXPECT_EQ(run.exitStatus, 0) << run.error();
    EXPECT_EQ(parsedObject(run.standardOutput).value("idNumber").toString(),
              builtInCard("hmt-macao").idNumber);
}

TEST(Read, EmptyInstalledReaderIsReportedAsNoCard)
{
    const InstalledReader reader;
    EXPECT_EQ(runTool({"read"}, {reader.variables(QStringLiteral(""))}).exitStatus, 4);
}

TEST(Read, FailureSaysNothingOfTheCardEvenWhenVerbose)
{
    for (const char *fault : {"open-fails=3", "read-fails=1", "no-card", "photo-undecodable",
                              "unknown-kind", "read-fails=7"})
        expectNothingOf(builtInCard("resident"),
                        runTool({"read", "--verbose", "--simulate", "resident", "--fault", fault})
                            .standardError);
}

TEST(Read, VerboseShowsTheStepsWithoutTheCard)
{
    const ProcessResult run = runTool({"read", "--verbose", "--simulate", "resident"});
    expectEnd(run, 0, "libidcard_simulator.so");
    EXPECT_THAT(run.error(), HasSubstr("with the code 0"));
    expectNothingOf(builtInCard("resident"), run.standardError);
}

TEST(Read, ReadingThatTheMakersLibraryBreaksOffEndsWithItsStatus)
{
    const InstalledReader reader(QStringLiteral("libidcard_broken_reader.so"));
    const ProcessResult run = runTool({"read"}, {reader.variables(QString())});
    expectEnd(run, 5, "Code: -23 (IDCARD_RESULT_READ_FAILED)");
}

TEST(Read, MakersLibraryThatEndsTheProgramInAReadingIsAFailureOfTheReading)
{
    ProcessInput input;
    input.environment = {{"LD_LIBRARY_PATH", IDCARD_UNRULY_READER}, {"IDCARD_UNRULY", "exit-0"}};
    const ProcessResult run = runTool({"read", "--json"}, input);
    expectEnd(run, 5, "was broken off");
    EXPECT_EQ(errorNameIn(run.standardOutput), "TOOL_READ_BROKEN_OFF");
    EXPECT_EQ(runTool({"watch"}, input).exitStatus, 5);
}

TEST(ReadWait, CardThatComesLaterIsRead)
{
    QElapsedTimer time;
    time.start();
    const ProcessResult run =
        runTool({"read", "--wait", "30", "--simulate", "resident", "--fault", "no-card=2"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_GE(time.elapsed(), 400); // two pauses
    EXPECT_THAT(run.error(), IsEmpty()) << "no terminal, no sign of life";
}

TEST(ReadWait, WithoutItAnEmptyReaderIsAFailureAtOnce)
{
    EXPECT_EQ(runTool({"read", "--simulate", "resident", "--fault", "no-card=1"}).exitStatus, 4);
}

TEST(ReadWait, EndsWhenTheTimeIsOver)
{
    QElapsedTimer time;
    time.start();
    const ProcessResult run =
        runTool({"read", "--wait", "1", "--simulate", "resident", "--fault", "no-card"});
    expectEnd(run, 4, "Code: -24");
    EXPECT_GE(time.elapsed(), 1000);
}

TEST(ReadWait, OtherFailuresEndItAtOnce)
{
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(runTool({"read", "--wait", "55", "--simulate", "resident", "--fault", "open-fails=3"})
                  .exitStatus,
              3);
    EXPECT_LT(time.elapsed(), 50000);
}

TEST(ReadWait, TerminalShowsASignOfLifeAndIsLeftClean)
{
    const Terminal terminal;
    ProcessInput input;
    input.standardErrorFile = terminal.path();
    EXPECT_EQ(
        runTool({"read", "--wait", "30", "--simulate", "resident", "--fault", "no-card=1"}, input)
            .exitStatus,
        0);
    const std::string shown = terminal.read();
    EXPECT_THAT(shown, HasSubstr("Lay a card on the reader (30 s left"));
    EXPECT_THAT(shown, testing::EndsWith("\r\x1b[K"));
}

class ReadSignal : public testing::TestWithParam<int>
{
};

TEST_P(ReadSignal, EndsTheWaitWithAMessage)
{
    RunningTool tool(
        {"read", "--verbose", "--wait", "50", "--simulate", "resident", "--fault", "no-card"});
    EXPECT_TRUE(tool.waitForError("The simulator is"));
    QElapsedTimer time;
    time.start();
    const ProcessResult run = tool.endedBy(GetParam());
    EXPECT_LT(time.elapsed(), 30000);
    expectEnd(run, 4, "Broken off before a card");
    EXPECT_THAT(run.output(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Signals, ReadSignal, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(ReadSignal, ReadingThatFailsAfterItIsReportedWithItsOwnCause)
{
    RunningTool tool({"read", "--verbose", "--simulate", "resident", "--fault",
                      "delay-ms=1000, photo-undecodable"});
    EXPECT_TRUE(tool.waitForError("The simulator is"));
    expectEnd(tool.endedBy(SIGINT), 6, "Code: -26");
}

TEST(ReadSignal, ReadingThatNeverEndsIsLeftSoonAfterIt)
{
    RunningTool tool({"read", "--verbose", "--simulate", "resident", "--fault",
                      "transient-failures=1000000000"});
    EXPECT_TRUE(tool.waitForError("card reading fail!"));
    expectEnd(tool.endedBy(SIGINT), 5, "was broken off");
}

} // namespace
