// "idcard-reader decode": what it prints and writes, and what it refuses.

#include <gmock/gmock.h>

#include <QDir>
#include <QJsonDocument>

#include <csignal>

#include <unistd.h>

#include "simulator/card/card_library.h"
#include "tests/card/expected_json.h"
#include "tests/support/cancelled_thread.h"
#include "tests/support/files.h"
#include "tests/support/locked_folder.h"
#include "tests/tool/tool_runner.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

class Decode : public FolderTest
{
protected:
    ProcessResult decode(const QString &card, const QStringList &more = {}) const
    {
        return runTool(QStringList{"decode", recordFile(recordOf(card)), "--simulator-photos"} +
                       more);
    }
};

TEST_F(Decode, JsonOfEveryBuiltInCardHoldsTheDescribedCard)
{
    const QStringList names = simulator::builtInCardNames();
    ASSERT_GE(names.size(), 24);
    for (const QString &name : names) {
        SCOPED_TRACE(name.toStdString());
        const ProcessResult run = decode(name, {"--json"});
        expectEnd(run, 0);
        const QJsonObject expected = expectedOfRecord(builtInCard(name), "file");
        EXPECT_EQ(QJsonDocument(parsedObject(run.standardOutput)).toJson().toStdString(),
                  QJsonDocument(expected).toJson().toStdString());
    }
}

TEST_F(Decode, TableShowsTheCard)
{
    const simulator::CardDescription card = builtInCard("hmt-taiwan");
    EXPECT_THAT(decode("hmt-taiwan").output(),
                AllOf(HasSubstr(card.idNumber.toStdString()),
                      HasSubstr("\nTimes issued          " + card.issueCount.toStdString() + "\n"),
                      HasSubstr("\nPhoto                 BMP picture, 102 x 126 pixels\n"),
                      Not(HasSubstr("picture "))));
}

TEST_F(Decode, FilesAreTheCardThePhotoAndThePrints)
{
    const ProcessResult run = decode("resident", {"--out", out()});
    expectEnd(run, 0);
    EXPECT_THAT(namesIn(out()), ElementsAre("card.json", "fingerprints.dat", "photo.bmp"));
    EXPECT_EQ(modeOf(out()), 0700);
    for (const char *name : {"/card.json", "/fingerprints.dat", "/photo.bmp"})
        EXPECT_EQ(modeOf(out() + name), 0600) << name;
    EXPECT_EQ(readFile(out() + "/fingerprints.dat"), recordOf("resident").mid(1296, 1024));
    const QByteArray photo = readFile(out() + "/photo.bmp");
    EXPECT_EQ(photo.size(), 38862);
    EXPECT_TRUE(photo.startsWith("BM"));
    const QJsonObject json = parsedObject(readFile(out() + "/card.json"));
    EXPECT_EQ(json["road"].toString(), "file");
    EXPECT_EQ(json["photo"].toObject()["file"].toString(), "photo.bmp");
    EXPECT_THAT(run.output(), AllOf(HasSubstr("/card.json\n"), Not(HasSubstr("Front picture"))));
}

TEST_F(Decode, NothingIsOverwrittenWithoutForce)
{
    decode("resident", {"--out", out()});
    const auto before = folderState(out());
    const ProcessResult run = decode("foreign-new", {"--out", out()});
    expectEnd(run, 7, "--force");
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_EQ(folderState(out()), before);
}

TEST_F(Decode, ForceLeavesNothingOfTheOldCardNotEvenItsPictures)
{
    runTool({"read", "--simulate", "resident", "--out", out()});
    EXPECT_EQ(decode("foreign-new", {"--out", out(), "--force"}).exitStatus, 0);
    EXPECT_THAT(namesIn(out()), ElementsAre("card.json", "photo.bmp"));
}

/** Whether the tool has the folder open, to write in it. */
bool isOpenIn(pid_t tool, const QString &folder)
{
    const QString process = QStringLiteral("/proc/%1/").arg(tool);
    if (!readFile(process + "cmdline").contains("--force"))
        return false; // under the emulator it has the files of this program at first
    const QDir files(process + "fd");
    const QFileInfoList all = files.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot);
    return std::any_of(all.begin(), all.end(),
                       [&](const QFileInfo &file) { return file.symLinkTarget() == folder; });
}

TEST_F(Decode, SignalWhileFilesAreReplaced_EndsItWhenAllAre)
{
    const QStringList arguments{"decode", recordFile("foreign-new"), "--simulator-photos"};
    runTool(arguments + QStringList{"--out", path("new")});
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        QDir(out()).removeRecursively();
        runTool({"read", "--simulate", "resident", "--out", out()});
        LockedFolder lock(out());
        RunningTool tool(arguments + QStringList{"--out", out(), "--force"});
        waitUntil([&] { return isOpenIn(tool.id(), out()); });
        tool.signal(signal);
        EXPECT_FALSE(tool.endsWithin(200));
        lock.unlock();
        EXPECT_EQ(tool.result().signal, signal);
        EXPECT_EQ(folderState(out()), folderState(path("new")));
    }
}

TEST_F(Decode, PhotoThatCannotBeDecodedIsReportedAndTheRestDelivered)
{
    const ProcessResult run = runTool({"decode", recordFile("resident"), "--json", "--out", out()});
    EXPECT_EQ(run.exitStatus, 6);
    EXPECT_THAT(run.error(), AllOf(HasSubstr("The photo of the card could not be decoded."),
                                   HasSubstr("What to do:"), HasSubstr("--simulator-photos"),
                                   HasSubstr("photo.bmp is not written")));
    EXPECT_THAT(namesIn(out()), ElementsAre("card.json", "fingerprints.dat"));
    const QJsonObject json = parsedObject(run.standardOutput);
    EXPECT_EQ(json["idNumber"].toString(), builtInCard("resident").idNumber);
    EXPECT_EQ(json["photo"],
              QJsonValue(QJsonObject{{"format", "compressed"}, {"file", QJsonValue()}}));
}

TEST_F(Decode, PhotoThatTheDecoderRefusesIsReportedWithoutTheHintAtTheSimulator)
{
    QByteArray record = recordOf("resident");
    record.replace(272, 1024, QByteArray(1024, 'x'));
    const ProcessResult run = runTool({"decode", recordFile(record), "--simulator-photos"});
    EXPECT_EQ(run.exitStatus, 6);
    EXPECT_THAT(run.error(), Not(HasSubstr("--simulator-photos")));
}

TEST_F(Decode, DecoderOfTheMakersNameIsFoundLikeTheReadersLibrary)
{
    const InstalledReader installed;
    EXPECT_EQ(
        runTool({"decode", recordFile("resident")}, {installed.variables(QString())}).exitStatus,
        0);
}

TEST_F(Decode, StandardInputIsTakenWithoutAFileAndByADash)
{
    ProcessInput input;
    input.standardInput = recordOf("foreign-2017");
    for (const QStringList &arguments : {QStringList{"decode", "--simulator-photos"},
                                         QStringList{"decode", "-", "--simulator-photos"}}) {
        const ProcessResult run = runTool(arguments + QStringList{"--json"}, input);
        EXPECT_EQ(run.exitStatus, 0) << run.error();
        EXPECT_EQ(parsedObject(run.standardOutput)["idNumber"].toString(),
                  builtInCard("foreign-2017").idNumber);
    }
}

TEST_F(Decode, StandardInputThatIsNoRecordIsRefused)
{
    for (const QByteArray &bytes : {QByteArray(), QByteArray(5000, 'a'), QByteArray(1297, '\0')}) {
        ProcessInput input;
        input.standardInput = bytes;
        const ProcessResult run = runTool({"decode"}, input);
        expectEnd(run, 2, "Standard input is not a raw card record: ");
        EXPECT_THAT(run.output(), IsEmpty());
    }
}

TEST_F(Decode, FileThatIsNoRecordIsRefusedWithThePlaceAndWritesNothing)
{
    QByteArray record = recordOf("resident");
    record[7] = 1;
    const ProcessResult run = runTool({"decode", recordFile(record), "--out", out()});
    expectEnd(run, 2,
              "card.rec is not a raw card record: at offset 7 (status) it has 01 00 90, "
              "where 00 00 90 was expected.\n");
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_FALSE(QDir(out()).exists());
}

TEST_F(Decode, EndlessInputIsReadNoFurtherThanARecord)
{
    const ProcessResult run = runTool({"decode", "/dev/zero"});
    expectEnd(run, 2, "it goes on at offset 2321");
}

TEST_F(Decode, WrongLengthOfPrintsAndChecksumAreReportedAndTheCardDecoded)
{
    QByteArray record = recordOf("resident");
    record[14] = 2; // one print, where there are two; the checksum is then wrong, too
    const ProcessResult run = runTool({"decode", recordFile(record), "--simulator-photos"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.error(),
                AllOf(HasSubstr("card.rec is an odd record: at offset 14 (length of the finger"),
                      HasSubstr("card.rec is an odd record: at offset 2320 (checksum)")));
    EXPECT_THAT(run.output(), AllOf(HasSubstr(builtInCard("resident").name.toStdString()),
                                    HasSubstr("What was read may be wrong")));
}

TEST_F(Decode, CutTextStandsWholeBesideItInTheTable)
{
    const QString address = builtInCard("resident-longest-texts").address;
    EXPECT_THAT(decode("resident-longest-texts").output(),
                HasSubstr("Address is cut; the record has: " + address.toStdString()));
}

TEST_F(Decode, SexCodeAtWhichTheDecoderStopsIsReportedAndGivesNoCard)
{
    QByteArray record = recordOf("foreign-2017");
    record[16 + 120] = '5';
    const ProcessResult run = runTool({"decode", recordFile(record), "--json"});
    expectEnd(run, 8, "sex code");
    EXPECT_EQ(parsedObject(run.standardOutput).keys(), QStringList{"error"});
}

TEST_F(Decode, FileThatCannotBeReadIsReportedWithItsName)
{
    const struct {
        QString path;
        const char *reason;
    } cases[] = {{path("missing"), "No such file"}, {path(""), "directory"}};
    for (const auto &unreadable : cases) {
        const ProcessResult run = runTool({"decode", unreadable.path});
        EXPECT_EQ(run.exitStatus, 2);
        EXPECT_THAT(run.error(),
                    AllOf(HasSubstr(unreadable.path.toStdString() + " could not be read"),
                          HasSubstr(unreadable.reason)));
    }
}

TEST_F(Decode, FileThatThisUserMayNotReadIsReported)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may read every file";
    const QString record = recordFile("resident");
    ASSERT_TRUE(QFile::setPermissions(record, QFileDevice::WriteOwner));
    expectEnd(runTool({"decode", record}), 2, "Permission denied");
}

TEST_F(Decode, VerboseShowsNothingOfWhatTheCardHolds)
{
    for (const char *name : {"resident", "hmt-taiwan", "foreign-2017", "foreign-new"}) {
        SCOPED_TRACE(name);
        const ProcessResult run = decode(name, {"--verbose"});
        expectEnd(run, 0, "libidcard_simulator.so");
        expectNothingOf(builtInCard(name), run.standardError);
    }
}

TEST_F(Decode, NeedsNoDisplayAndNoGraphics)
{
    EXPECT_EQ(runTool({"decode", recordFile("resident"), "--simulator-photos"},
                      {{{"QT_QPA_PLATFORM", "no-such-platform"}}})
                  .exitStatus,
              0);
}

} // namespace
