// "idcard-reader watch".

#include <csignal>

#include <gmock/gmock.h>

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThread>

#include "tests/card/picture_files.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace
{

std::vector<std::string> kindsIn(const QByteArray &lines)
{
    std::vector<std::string> kinds;
    for (const QJsonObject &card : parsedLines(lines))
        kinds.push_back(card["kind"].toString().toStdString());
    return kinds;
}

TEST(Watch, SimulatedCardsComeOneAfterTheOther)
{
    const QStringList cards{"--simulate", "resident",      "--simulate", "resident",
                            "--simulate", "hmt-hong-kong", "--simulate", "foreign-new"};
    const ProcessResult run = runTool(QStringList{"watch"} + cards);
    expectEnd(run, 0);
    EXPECT_THAT(kindsIn(run.standardOutput),
                ElementsAre("resident", "resident", "hmt", "foreign-new"));
    const ProcessResult one = runTool(QStringList{"watch", "--count", "1"} + cards);
    expectEnd(one, 0);
    EXPECT_THAT(kindsIn(one.standardOutput), ElementsAre("resident"));
}

TEST(Watch, LineHoldsTheSameAsReadPrints)
{
    for (const QStringList &card :
         {QStringList{"--simulate", "resident"},
          QStringList{"--simulate", "resident", "--inline", "all"},
          QStringList{"--simulate", "resident-compressed-photo", "--inline", "photo"}}) {
        SCOPED_TRACE(card.join(' ').toStdString());
        const QByteArray line = runTool(QStringList{"watch", "--json"} + card).standardOutput;
        EXPECT_EQ(line.count('\n'), 1);
        const ProcessResult read = runTool(QStringList{"read", "--json"} + card);
        expectEnd(read, 0);
        EXPECT_EQ(parsedObject(line), parsedObject(read.standardOutput));
    }
}

TEST(Watch, EmptyReaderIsWaitedOutQuietly)
{
    const ProcessResult run =
        runTool({"watch", "--interval", "10", "--simulate", "resident", "--fault", "no-card=3"});
    expectEnd(run, 0);
    EXPECT_THAT(kindsIn(run.standardOutput), ElementsAre("resident"));
}

TEST(Watch, FaultsRestartWithEveryCard)
{
    const ProcessResult run = runTool({"watch", "--verbose", "--simulate", "resident", "--simulate",
                                       "hmt-hong-kong", "--fault", "transient-failures=2"});
    EXPECT_EQ(run.standardError.count("card reading fail!"), 4);
}

TEST(Watch, CardsThatCannotBeReadAreReportedAndTheOthersPrintedAndTheFirstDecidesTheStatus)
{
    QTemporaryDir folder;
    QJsonObject description =
        parsedObject(readFile(QStringLiteral(IDCARD_SOURCE_DIR "/simulator/cards/hmt-macao.json")));
    QStringList arguments{"watch", "--simulate", "resident"};
    for (const char *const fault : {"photo-undecodable", "read-fails=7"}) {
        description["faults"] = QJsonArray{fault};
        const QString bad = folder.filePath(QLatin1String(fault));
        writeFile(bad, QJsonDocument(description).toJson());
        arguments << "--simulate" << bad << "--simulate"
                  << "resident";
    }
    const ProcessResult run = runTool(arguments);
    EXPECT_EQ(run.exitStatus, 6);
    EXPECT_THAT(kindsIn(run.standardOutput), ElementsAre("resident", "resident", "resident"));
    const QByteArray printed = run.standardError;
    EXPECT_EQ(printed.count("Code: "), 2) << printed.toStdString();
    EXPECT_LT(printed.indexOf("Code: -26"), printed.indexOf("nothing was read."))
        << printed.toStdString();
}

TEST(Watch, DescriptionThatIsRefusedIsReportedBeforeTheFirstCard)
{
    const ProcessResult run =
        runTool({"watch", "--simulate", "resident", "--simulate", "no-such-card"});
    expectEnd(run, 2, "no-such-card");
    EXPECT_THAT(run.output(), IsEmpty());
}

class WatchReader : public testing::Test
{
protected:
    /** Watches the installed reader with this card and these faults. */
    RunningTool watch(const QStringList &options, const QString &card,
                      const QString &faults = {}) const
    {
        return RunningTool(QStringList{"watch"} + options, {m_reader.variables(card, faults)});
    }

private:
    InstalledReader m_reader;
};

TEST_F(WatchReader, CardThatStaysIsReportedOnceAtOnceAndTheSignalEndsItWell)
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        RunningTool tool = watch({"--interval", "10"}, "hmt-hong-kong");
        EXPECT_THAT(kindsIn(tool.nextLine() + "\n"), ElementsAre("hmt"));
        QThread::msleep(300); // many looks
        const ProcessResult run = tool.endedBy(number);
        expectEnd(run, 0);
        EXPECT_THAT(run.output(), IsEmpty());
    }
}

TEST_F(WatchReader, InTheBackgroundOfAScript_GoesOnWhenCtrlCIsPressedAndEndsWithSigterm)
{
    const auto handler = std::signal(SIGINT, SIG_IGN); // as the shell does for what it starts there
    RunningTool tool = watch({"--interval", "10"}, "hmt-hong-kong");
    std::signal(SIGINT, handler);
    EXPECT_THAT(kindsIn(tool.nextLine() + "\n"), ElementsAre("hmt"));
    tool.signal(SIGINT);
    EXPECT_FALSE(tool.endsWithin(500));
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0) << run.error();
}

TEST_F(WatchReader, HostThatIgnoresSigtermEndsItByIt)
{
    const auto handler = std::signal(SIGTERM, SIG_IGN); // which the program inherits
    RunningTool tool = watch({"--interval", "10"}, "hmt-hong-kong");
    std::signal(SIGTERM, handler);
    EXPECT_THAT(kindsIn(tool.nextLine() + "\n"), ElementsAre("hmt"));
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0) << run.error();
}

TEST_F(WatchReader, CountOfTheReaderIsKept)
{
    const ProcessResult run = watch({"--count", "1"}, "resident").result();
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(kindsIn(run.standardOutput), ElementsAre("resident"));
}

TEST_F(WatchReader, ReaderThatDoesNotOpenIsReportedOnceAndLookedForUntilTheSignal)
{
    RunningTool tool = watch({"--interval", "10"}, "resident", "open-fails=2");
    EXPECT_TRUE(tool.waitForError("Watching goes on until the reader is there."));
    QThread::msleep(300); // many looks
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_EQ(run.standardError.count("Code: -5"), 1);
    EXPECT_EQ(run.standardError.count("Watching goes on"), 1);
}

TEST(Watch, ReaderThatDoesNotOpenIsReportedForEverySimulatedCard)
{
    const ProcessResult run = runTool({"watch", "--simulate", "resident", "--simulate",
                                       "hmt-hong-kong", "--fault", "open-fails=2"});
    EXPECT_EQ(run.exitStatus, 3);
    EXPECT_EQ(run.standardError.count("Code: -5"), 2);
    EXPECT_EQ(run.standardError.count("Watching goes on"), 0);
}

TEST_F(WatchReader, FailureThatLastsIsReportedOnce)
{
    RunningTool tool = watch({"--interval", "10"}, "resident", "read-fails=7");
    EXPECT_TRUE(tool.waitForError("What to do:"));
    QThread::msleep(300);
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.standardError.count("Cause:"), 1);
}

TEST_F(WatchReader, LongIntervalDoesNotDelayTheSignal)
{
    RunningTool tool = watch({"--interval", "60000"}, "resident");
    EXPECT_THAT(tool.nextLine().toStdString(), Not(IsEmpty()));
    tool.signal(SIGTERM);
    EXPECT_TRUE(tool.endsWithin(20000));
}

TEST(WatchOutput, LossOfItsReaderEndsTheWatchQuietlyBeforeTheNextCard)
{
    const InstalledReader reader;
    for (const StandardOutput kind : {StandardOutput::COLLECTED, StandardOutput::SOCKET}) {
        ProcessInput input{reader.variables("resident")};
        input.standardOutput = kind; // a socket is what Node.js gives
        RunningTool tool({"watch", "--interval", "60000"}, input);
        EXPECT_FALSE(tool.nextLine().isEmpty()); // as "head -1" does
        tool.closeStandardOutput();
        EXPECT_TRUE(tool.endsWithin(20000));
        expectEndByLossOfItsReader(tool.result());
    }
}

TEST(WatchOutput, LossOfItsReaderDuringAReadingEndsTheWatchQuietlyAfterIt)
{
    QTemporaryDir folder;
    RunningTool tool({"watch", "--simulate", "resident", "--simulate", "resident", "--simulate",
                      "resident", "--fault", "delay-ms=1000", "--out", folder.path()});
    EXPECT_FALSE(tool.nextLine().isEmpty()); // as "head -1" does
    tool.closeStandardOutput();
    expectEndByLossOfItsReader(tool.result());
    EXPECT_LE(namesIn(folder.path()).size(), 2U);
}

TEST_F(WatchReader, ReadingThatNeverEndsIsLeftSoonAfterTheSignal)
{
    RunningTool tool = watch({"--verbose"}, "resident", "transient-failures=1000000000");
    EXPECT_TRUE(tool.waitForError("card reading fail!"));
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0) << run.error();
}

// With --events.

std::vector<std::string> eventsIn(const QByteArray &lines)
{
    std::vector<std::string> events;
    for (const QJsonObject &event : parsedLines(lines))
        events.push_back(event["event"].toString().toStdString());
    return events;
}

TEST(WatchEvents, CardsThatComeAndGoAreReportedInTheirOrder)
{
    const ProcessResult run =
        runTool({"watch", "--events", "--simulate", "resident", "--simulate", "hmt-hong-kong"});
    expectEnd(run, 0);
    EXPECT_THAT(
        eventsIn(run.standardOutput),
        ElementsAre("reader-added", "card-read", "card-removed", "card-read", "card-removed"));
}

TEST(WatchEvents, CardIsThatOfALineWithoutThem)
{
    for (const QStringList &more : {QStringList{}, QStringList{"--inline", "all"}}) {
        const QStringList simulated = QStringList{"--simulate", "resident"} + more;
        const auto events =
            parsedLines(runTool(QStringList{"watch", "--events"} + simulated).standardOutput);
        ASSERT_EQ(events.size(), 3);
        EXPECT_EQ(events[1]["card"].toObject(),
                  parsedObject(runTool(QStringList{"watch", "--json"} + simulated).standardOutput));
        EXPECT_EQ(events[1].keys(), (QStringList{"card", "event", "time"}));
    }
}

TEST(WatchEvents, TimeIsThatOfTheEventWithTheOffsetFromUtc)
{
    for (const char *zone : {"UTC", "Asia/Shanghai", "America/St_Johns"}) {
        ProcessInput input;
        input.environment = {{"TZ", zone}};
        const QDateTime before = QDateTime::currentDateTimeUtc();
        const auto events = parsedLines(
            runTool({"watch", "--events", "--simulate", "resident"}, input).standardOutput);
        ASSERT_EQ(events.size(), 3);
        const QString text = events[0]["time"].toString();
        const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
        EXPECT_GE(time, before) << text.toStdString();
        EXPECT_LE(time, QDateTime::currentDateTimeUtc()) << text.toStdString();
        const QByteArray name = zone;
        const int minutes = name == "UTC" ? 0 : name == "Asia/Shanghai" ? 480 : -210;
        const int summer = name.startsWith("America") ? 60 : 0;
        EXPECT_THAT(time.offsetFromUtc() / 60, testing::AnyOf(minutes, minutes + summer));
        EXPECT_FALSE(text.endsWith('Z'));
    }
}

TEST(WatchEvents, FailureIsThatOfJsonWithoutThem)
{
    const QStringList failing{"--simulate", "resident", "--fault", "unknown-kind"};
    const ProcessResult run = runTool(QStringList{"watch", "--events"} + failing);
    EXPECT_EQ(run.exitStatus, 8);
    const auto events = parsedLines(run.standardOutput);
    ASSERT_EQ(events.size(), 2);
    EXPECT_EQ(events[1]["event"], "read-failed");
    const ProcessResult plain = runTool(QStringList{"watch", "--json"} + failing);
    EXPECT_EQ(events[1]["error"], parsedObject(plain.standardOutput)["error"]);
    EXPECT_EQ(run.error(), plain.error());
}

TEST(WatchEvents, CardThatCouldNotBeSavedHasTheErrorBesideItsOwnParts)
{
    QTemporaryDir folder;
    const FileSizeLimit limit(20000); // card.json fits, the photo does not
    const ProcessResult run =
        runTool({"watch", "--events", "--simulate", "resident", "--out", folder.filePath("cards")});
    EXPECT_EQ(run.exitStatus, 7);
    const auto events = parsedLines(run.standardOutput);
    ASSERT_EQ(events.size(), 2);
    EXPECT_EQ(events[1]["card"].toObject()["error"].toObject()["name"], "TOOL_FILES_NOT_WRITTEN");
}

TEST(WatchEvents, CountEndsThemWithTheLastCard)
{
    const ProcessResult run = runTool({"watch", "--events", "--count", "1", "--simulate",
                                       "resident", "--simulate", "hmt-hong-kong"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(eventsIn(run.standardOutput), ElementsAre("reader-added", "card-read"));
}

TEST_F(WatchReader, ReaderThatIsMissingToBeginWithIsAFailedReadAmongTheEvents)
{
    RunningTool tool =
        watch({"--events", "--json", "--interval", "10"}, "resident", "open-fails=2");
    EXPECT_TRUE(tool.waitForError("Watching goes on until the reader is there."));
    const QJsonObject event = QJsonDocument::fromJson(tool.nextLine()).object();
    EXPECT_EQ(event["event"].toString(), "read-failed");
    EXPECT_EQ(event["error"].toObject()["name"].toString(), "IDCARD_RESULT_PORT_NOT_OPEN");
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0) << run.error();
}

TEST(WatchTimeout, EndsAReadingThatNeverEnds)
{
    const QStringList neverEnding{"--timeout", "1",       "--simulate",
                                  "resident",  "--fault", "transient-failures=1000000"};
    const ProcessResult words = runTool(QStringList{"watch"} + neverEnding);
    expectEnd(words, 11, "Reading the card did not end in time.");
    EXPECT_THAT(words.output(), IsEmpty());
    const ProcessResult json = runTool(QStringList{"watch", "--json"} + neverEnding);
    EXPECT_EQ(json.exitStatus, 11);
    EXPECT_EQ(errorNameIn(json.standardOutput), "TOOL_READ_TIMED_OUT");
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const auto events =
        parsedLines(runTool(QStringList{"watch", "--events"} + neverEnding).standardOutput);
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events[0]["event"], "read-failed");
    EXPECT_EQ(events[0]["error"].toObject()["name"], "TOOL_READ_TIMED_OUT");
    EXPECT_GE(QDateTime::fromString(events[0]["time"].toString(), Qt::ISODateWithMs),
              before.addSecs(1));
}

TEST(WatchTimeout, LeavesReadingsAloneThatEndInTime)
{
    const ProcessResult run = runTool({"watch", "--timeout", "4", "--interval", "1700",
                                       "--simulate", "resident", "--fault", "no-card=3"});
    EXPECT_EQ(run.exitStatus, 0) << run.error();
    EXPECT_THAT(kindsIn(run.standardOutput), ElementsAre("resident"));
}

class WatchOut : public FolderTest
{
protected:
    ProcessResult watch(const QStringList &cards) const
    {
        QStringList arguments{"watch", "--out", out()};
        for (const QString &card : cards)
            arguments << "--simulate" << card;
        return runTool(arguments);
    }
};

TEST_F(WatchOut, EveryCardGetsANumberedPrivateFolder)
{
    const ProcessResult run = watch({"resident", "hmt-hong-kong"});
    EXPECT_EQ(run.exitStatus, 0);
    const auto cards = parsedLines(run.standardOutput);
    ASSERT_EQ(cards.size(), 2);
    for (const auto &[part, file] : {std::pair("photo", "/0002/photo.bmp"),
                                     {"frontPicture", "/0002/front.jpg"},
                                     {"backPicture", "/0002/back.jpg"}})
        EXPECT_EQ(cards[1][part].toObject()["file"], out() + file);
    EXPECT_THAT(namesIn(out()), ElementsAre("0001", "0002"));
    EXPECT_THAT(namesIn(out() + "/0001"),
                ElementsAre("back.jpg", "card.json", "fingerprints.dat", "front.jpg", "photo.bmp"));
    EXPECT_THAT(namesIn(out() + "/0002"),
                ElementsAre("back.jpg", "card.json", "front.jpg", "photo.bmp"));
    expectCardPicture(out() + "/0001/front.jpg", QStringLiteral("resident"));
    expectCardPicture(out() + "/0002/back.jpg", QStringLiteral("hmt"));
    EXPECT_EQ(modeOf(out()), 0700);
    EXPECT_EQ(modeOf(out() + "/0001"), 0700);
    EXPECT_EQ(modeOf(out() + "/0001/card.json"), 0600);
}

TEST_F(WatchOut, SecondRunGoesOnAfterTheFirst)
{
    watch({"resident", "resident"});
    const auto before = folderState(out() + "/0002");
    EXPECT_EQ(watch({"hmt-hong-kong"}).exitStatus, 0);
    EXPECT_THAT(namesIn(out()), ElementsAre("0001", "0002", "0003"));
    EXPECT_EQ(folderState(out() + "/0002"), before);
}

TEST_F(WatchOut, FolderThatCannotBeMadeIsReportedBeforeTheFirstCard)
{
    writeFile(out(), "in the way");
    const ProcessResult run = watch({"resident"});
    expectEnd(run, 7, "is not a folder");
    EXPECT_THAT(run.output(), IsEmpty());
}

TEST_F(WatchOut, DiskThatFillsUpEndsItWithTheCardPrintedAndNoFolder)
{
    const FileSizeLimit limit(20000);
    const ProcessResult run = watch({"resident", "hmt-hong-kong"});
    EXPECT_EQ(run.exitStatus, 7);
    const auto cards = parsedLines(run.standardOutput);
    ASSERT_EQ(cards.size(), 1);
    EXPECT_TRUE(cards[0]["photo"].toObject()["file"].isNull());
    EXPECT_THAT(namesIn(out()), IsEmpty());
}

} // namespace
