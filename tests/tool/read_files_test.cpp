// "idcard-reader read --out": the files it writes, and when it writes none.

#include <gmock/gmock.h>

#include <QDir>

#include "simulator/card/raw_record.h"
#include "tests/card/picture_files.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr int PHOTO_SIZE = 38862;

class ReadOut : public FolderTest
{
protected:
    ProcessResult read(const QString &card, const QStringList &more = {}) const
    {
        return runTool(QStringList{"read", "--simulate", card, "--out", out()} + more);
    }

    std::vector<std::string> names() const { return namesIn(out()); }
};

TEST_F(ReadOut, CardWithEverything_GivesFivePrivateFilesThatTableAndJsonName)
{
    const ProcessResult run = read("resident");
    expectEnd(run, 0);
    const std::vector<std::string> files = {"back.jpg", "card.json", "fingerprints.dat",
                                            "front.jpg", "photo.bmp"};
    EXPECT_EQ(names(), files);
    EXPECT_EQ(modeOf(out()), 0700);
    for (const std::string &name : files) {
        const QString file = out() + '/' + QString::fromStdString(name);
        EXPECT_EQ(modeOf(file), 0600) << name;
        EXPECT_THAT(run.output(), HasSubstr(file.toStdString() + '\n'));
    }
    const QByteArray photo = readFile(out() + "/photo.bmp");
    EXPECT_EQ(photo.size(), PHOTO_SIZE);
    EXPECT_TRUE(photo.startsWith("BM"));

    const QByteArray printed = read("resident", {"--force", "--json"}).standardOutput;
    const QByteArray saved = readFile(out() + "/card.json");
    for (const auto &[part, file] : {std::pair("photo", "photo.bmp"),
                                     {"fingerprints", "fingerprints.dat"},
                                     {"frontPicture", "front.jpg"},
                                     {"backPicture", "back.jpg"}}) {
        EXPECT_EQ(parsedObject(saved)[part].toObject()["file"], file);
        EXPECT_EQ(parsedObject(printed)[part].toObject()["file"], out() + '/' + file);
    }
    EXPECT_EQ(parsedObject(saved)["idNumber"].toString(), builtInCard("resident").idNumber);
}

TEST_F(ReadOut, CardInThePlaceOfAnother_LeavesNothingOfTheOldOne)
{
    const struct {
        const char *card;
        std::vector<std::string> files;
        int prints; ///< bytes
    } cards[] = {
        {"resident", {"back.jpg", "card.json", "fingerprints.dat", "front.jpg", "photo.bmp"}, 1024},
        {"resident-one-fingerprint",
         {"back.jpg", "card.json", "fingerprints.dat", "front.jpg", "photo.bmp"},
         512},
        {"resident-no-fingerprint", {"back.jpg", "card.json", "front.jpg", "photo.bmp"}, 0},
        {"foreign-new", {"back.jpg", "card.json", "front.jpg", "photo.bmp"}, 0},
        {"hmt-unknown-region", {"card.json", "front.jpg", "photo.bmp"}, 0},
        {"hmt-photo-32-bits", {"back.jpg", "card.json", "front.jpg"}, 0}, // not kept as photo.bmp
    };
    for (const auto &c : cards) {
        EXPECT_EQ(read(c.card, {"--force"}).exitStatus, 0);
        EXPECT_EQ(names(), c.files) << c.card;
        if (c.prints > 0) {
            EXPECT_EQ(readFile(out() + "/fingerprints.dat").size(), c.prints);
        }
        EXPECT_EQ(parsedObject(readFile(out() + "/card.json"))["idNumber"],
                  builtInCard(c.card).idNumber);
    }
}

TEST_F(ReadOut, PermitOfAnUnknownRegion_IsReportedAndHasNoBackPicture)
{
    const std::string reason = "the permit's number begins with none of 81, 82, 83";
    const ProcessResult run = read("hmt-unknown-region");
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.output(), HasSubstr("\nBack picture          none: " + reason + '\n'));
    EXPECT_THAT(run.error(), HasSubstr("There is no picture of the card's back: " + reason +
                                       "; back.jpg is not written.\n"));
    expectCardPicture(out() + "/front.jpg", QStringLiteral("hmt"));

    const QJsonObject none{{"format", "none"}, {"file", QJsonValue()}};
    for (const QByteArray &json :
         {readFile(out() + "/card.json"),
          read("hmt-unknown-region", {"--json", "--force"}).standardOutput})
        EXPECT_EQ(parsedObject(json)["backPicture"].toObject(), none);
}

TEST_F(ReadOut, CompressedPhotoIsTheSamePictureAsByDecode)
{
    const QString card = "resident-compressed-photo";
    expectEnd(read(card), 0);
    for (const char *name : {"/front.jpg", "/back.jpg"})
        expectCardPicture(out() + name, QStringLiteral("resident"));
    runTool({"decode", recordFile(recordOf(card)), "--simulator-photos", "--out", path("decoded")});
    EXPECT_EQ(readFile(out() + "/photo.bmp").size(), PHOTO_SIZE);
    EXPECT_EQ(readFile(out() + "/photo.bmp"), readFile(path("decoded") + "/photo.bmp"));
}

TEST_F(ReadOut, CompressedPhotoThatTheDecoderRefusesIsReportedAsByDecode)
{
    const ProcessResult run = read("resident-compressed-photo", {"--fault", "photo-undecodable"});
    EXPECT_EQ(run.exitStatus, 6);
    QString problem;
    const auto undecodable = simulator::parseFaults(QStringList("photo-undecodable"), &problem);
    ASSERT_TRUE(undecodable) << problem.toStdString();
    const QString record = recordFile(simulator::readAnswer(builtInCard("resident"), *undecodable));
    const ProcessResult decoded = runTool({"decode", record, "--simulator-photos"});
    EXPECT_EQ(decoded.exitStatus, 6);
    EXPECT_EQ(decoded.error(), run.error());
}

TEST_F(ReadOut, PhotoInAFormThatIsNotKnownIsReportedAndNotWritten)
{
    const ProcessResult run = read("hmt-photo-32-bits");
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.error(), AllOf(HasSubstr("not known"), HasSubstr("photo.bmp is not written")));
    EXPECT_THAT(names(), ElementsAre("back.jpg", "card.json", "front.jpg"));
}

TEST_F(ReadOut, ExistingCardIsNotOverwrittenAndNothingIsPrinted)
{
    read("resident");
    const auto before = folderState(out());
    const ProcessResult run = read("hmt-hong-kong");
    EXPECT_EQ(run.exitStatus, 7);
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_THAT(run.error(),
                AllOf(HasSubstr("already holds card.json, photo.bmp, fingerprints.dat, front.jpg, "
                                "back.jpg"),
                      HasSubstr("--force")));
    EXPECT_EQ(folderState(out()), before);
}

TEST_F(ReadOut, FailedReadingMakesNoFolder)
{
    EXPECT_EQ(read("resident", {"--fault", "no-card"}).exitStatus, 4);
    EXPECT_FALSE(QDir(out()).exists());
}

TEST_F(ReadOut, FolderThatCannotBeMadeIsReportedAndTheCardIsStillPrinted)
{
    writeFile(path("file"), "in the way");
    const ProcessResult run =
        runTool({"read", "--json", "--simulate", "resident", "--out", path("file") + "/card"});
    expectEnd(run, 7, "could not be made");
    const QJsonObject json = parsedObject(run.standardOutput);
    EXPECT_EQ(json["idNumber"].toString(), builtInCard("resident").idNumber);
    EXPECT_TRUE(json["photo"].toObject()["file"].isNull());
}

TEST_F(ReadOut, PathUpFromALink_IsWhereTheSystemFindsTheFiles)
{
    ASSERT_TRUE(QDir().mkpath(path("far/away")));
    ASSERT_TRUE(QFile::link(path("far/away"), path("link")));
    const QString folder = path("link/../card");
    const ProcessResult run =
        runTool({"read", "--json", "--simulate", "resident", "--out", folder});
    expectEnd(run, 0);
    EXPECT_EQ(parsedObject(run.standardOutput)["photo"].toObject()["file"], folder + "/photo.bmp");
    EXPECT_EQ(readFile(path("far/card/photo.bmp")).size(), PHOTO_SIZE);
    EXPECT_FALSE(QDir(out()).exists());
}

TEST_F(ReadOut, PathUpFromAFolderThatIsNotThere_IsRefusedAndNothingIsRead)
{
    const ProcessResult run = runTool(
        {"read", "--json", "--simulate", "resident", "--out", path("missing") + "/../card"});
    expectEnd(run, 7, "/missing/../card could not be made: No such file or directory");
    EXPECT_EQ(parsedObject(run.standardOutput).keys(), QStringList{"error"});
    EXPECT_THAT(namesIn(path({})), IsEmpty());
}

TEST_F(ReadOut, DiskThatFillsUpHalfWayLeavesNothing)
{
    const FileSizeLimit limit(20000); // card.json fits, the photo does not
    const ProcessResult run = read("resident");
    expectEnd(run, 7, "photo.bmp could not be written");
    EXPECT_FALSE(QDir(out()).exists());
}

} // namespace
