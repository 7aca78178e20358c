// "idcard-reader read --out": the files it writes, and when it writes none.

#include <gmock/gmock.h>

#include <QDir>
#include <QJsonDocument>

#include "simulator/card/raw_record.h"
#include "tests/support/files.h"
#include "tests/tool/file_size_limit.h"
#include "tests/tool/picture_files.h"
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

TEST_F(ReadOut, CardWithEverythingGivesFivePrivateFiles)
{
    expectEnd(read("resident"), 0);
    EXPECT_THAT(names(),
                ElementsAre("back.jpg", "card.json", "fingerprints.dat", "front.jpg", "photo.bmp"));
    EXPECT_EQ(modeOf(out()), 0700);
    for (const char *name :
         {"/back.jpg", "/card.json", "/fingerprints.dat", "/front.jpg", "/photo.bmp"})
        EXPECT_EQ(modeOf(out() + name), 0600) << name;
}

TEST_F(ReadOut, PhotoIsTheWholeBmpFile)
{
    read("resident");
    const QByteArray photo = readFile(out() + "/photo.bmp");
    EXPECT_EQ(photo.size(), PHOTO_SIZE);
    EXPECT_TRUE(photo.startsWith("BM"));
}

TEST_F(ReadOut, FingerprintsAreAsLongAsThereArePrints)
{
    read("resident");
    EXPECT_EQ(readFile(out() + "/fingerprints.dat").size(), 1024);
    read("resident-one-fingerprint", {"--force"});
    EXPECT_EQ(readFile(out() + "/fingerprints.dat").size(), 512);
}

TEST_F(ReadOut, CardWithoutFingerprintsGivesNoFileOfThem)
{
    read("resident-no-fingerprint");
    EXPECT_THAT(names(), ElementsAre("back.jpg", "card.json", "front.jpg", "photo.bmp"));
}

TEST_F(ReadOut, OtherKindsGiveCardPhotoAndPictures)
{
    read("foreign-new");
    EXPECT_THAT(names(), ElementsAre("back.jpg", "card.json", "front.jpg", "photo.bmp"));
}

TEST_F(ReadOut, EveryKindGivesAPictureOfEitherSide)
{
    for (const char *card : {"resident", "hmt-hong-kong", "hmt-taiwan", "foreign-2017",
                             "foreign-new", "resident-compressed-photo"}) {
        SCOPED_TRACE(card);
        EXPECT_EQ(read(card, {"--force"}).exitStatus, 0);
        const QString kind = simulator::cardKindName(builtInCard(card).kind);
        expectCardPicture(out() + "/front.jpg", kind);
        expectCardPicture(out() + "/back.jpg", kind);
        EXPECT_NE(readFile(out() + "/front.jpg"), readFile(out() + "/back.jpg"));
    }
}

TEST_F(ReadOut, PermitOfAnUnknownRegionIsReportedAndHasNoBackPicture)
{
    const ProcessResult run = read("hmt-unknown-region");
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(names(), ElementsAre("card.json", "front.jpg", "photo.bmp"));
    EXPECT_THAT(run.output(),
                HasSubstr("\nBack picture          none: the permit's number begins with none of "
                          "81, 82, 83\n"));
    EXPECT_THAT(run.error(),
                HasSubstr("There is no picture of the card's back: the permit's number begins with "
                          "none of 81, 82, 83; back.jpg is not written.\n"));
    expectCardPicture(out() + "/front.jpg", QStringLiteral("hmt"));
}

TEST_F(ReadOut, PictureThatIsMissingIsNamedNullInTheJson)
{
    const QByteArray printed = read("hmt-unknown-region", {"--json"}).standardOutput;
    const QJsonObject none{{"format", "none"}, {"file", QJsonValue()}};
    EXPECT_EQ(parsedObject(printed)["backPicture"].toObject(), none);
    const QJsonObject saved = parsedObject(readFile(out() + "/card.json"));
    EXPECT_EQ(saved["backPicture"].toObject(), none);
    EXPECT_EQ(saved["frontPicture"].toObject()["file"].toString(), "front.jpg");
}

TEST_F(ReadOut, ForceRemovesAnOldBackPictureThatTheNewCardDoesNotHave)
{
    read("hmt-taiwan");
    EXPECT_EQ(read("hmt-unknown-region", {"--force"}).exitStatus, 0);
    EXPECT_THAT(names(), ElementsAre("card.json", "front.jpg", "photo.bmp"));
}

TEST_F(ReadOut, PictureInTheFolderIsNotOverwritten)
{
    ASSERT_TRUE(QDir().mkdir(out()));
    writeFile(out() + "/back.jpg", "mine");
    expectEnd(read("resident"), 7, "already holds back.jpg");
    EXPECT_THAT(names(), ElementsAre("back.jpg"));
    EXPECT_EQ(readFile(out() + "/back.jpg"), "mine");
}

TEST_F(ReadOut, CompressedPhotoIsTheSamePictureAsByDecode)
{
    const QString card = "resident-compressed-photo";
    expectEnd(read(card), 0);
    writeFile(path("card.rec"), simulator::readAnswer(builtInCard(card), {}));
    runTool({"decode", path("card.rec"), "--simulator-photos", "--out", path("decoded")});
    EXPECT_EQ(readFile(out() + "/photo.bmp").size(), 38862);
    EXPECT_EQ(readFile(out() + "/photo.bmp"), readFile(path("decoded") + "/photo.bmp"));
}

TEST_F(ReadOut, CompressedPhotoThatTheDecoderRefusesIsReportedAsByDecode)
{
    const ProcessResult run = read("resident-compressed-photo", {"--fault", "photo-undecodable"});
    EXPECT_EQ(run.exitStatus, 6);
    QString problem;
    const auto undecodable = simulator::parseFaults(QStringList("photo-undecodable"), &problem);
    ASSERT_TRUE(undecodable) << problem.toStdString();
    writeFile(path("card.rec"), simulator::readAnswer(builtInCard("resident"), *undecodable));
    const ProcessResult decoded = runTool({"decode", path("card.rec"), "--simulator-photos"});
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

TEST_F(ReadOut, CardJsonNamesTheFilesBesideIt)
{
    read("resident");
    const QJsonObject json = parsedObject(readFile(out() + "/card.json"));
    EXPECT_EQ(json["photo"].toObject()["file"].toString(), "photo.bmp");
    EXPECT_EQ(json["fingerprints"].toObject()["file"].toString(), "fingerprints.dat");
    EXPECT_EQ(json["frontPicture"].toObject()["file"].toString(), "front.jpg");
    EXPECT_EQ(json["backPicture"].toObject()["file"].toString(), "back.jpg");
    EXPECT_EQ(json["idNumber"].toString(), builtInCard("resident").idNumber);
}

TEST_F(ReadOut, PrintedJsonNamesTheFilesWithTheirFolder)
{
    const QJsonObject json = parsedObject(read("resident", {"--json"}).standardOutput);
    EXPECT_EQ(json["photo"].toObject()["file"].toString(), out() + "/photo.bmp");
    EXPECT_EQ(json["backPicture"].toObject()["file"].toString(), out() + "/back.jpg");
}

TEST_F(ReadOut, TableListsTheFiles)
{
    const std::string table = read("resident").output();
    EXPECT_THAT(table, HasSubstr((out() + "/card.json\n").toStdString()));
    EXPECT_THAT(table, HasSubstr((out() + "/fingerprints.dat\n").toStdString()));
    EXPECT_THAT(table, HasSubstr((out() + "/front.jpg\n").toStdString()));
    EXPECT_THAT(table, HasSubstr((out() + "/back.jpg\n").toStdString()));
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

TEST_F(ReadOut, ForceReplacesTheCardAndLeavesNothingOfTheOldOne)
{
    read("resident");
    const ProcessResult run = read("hmt-photo-32-bits", {"--force"}); // not kept as photo.bmp
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(names(), ElementsAre("back.jpg", "card.json", "front.jpg"));
    EXPECT_EQ(parsedObject(readFile(out() + "/card.json"))["kind"].toString(), "hmt");
}

TEST_F(ReadOut, ForceWithoutAnOldCardWritesAsWell)
{
    EXPECT_EQ(read("resident", {"--force"}).exitStatus, 0);
    EXPECT_THAT(names(),
                ElementsAre("back.jpg", "card.json", "fingerprints.dat", "front.jpg", "photo.bmp"));
}

TEST_F(ReadOut, OtherFilesOfTheFolderStay)
{
    ASSERT_TRUE(QDir().mkdir(out()));
    writeFile(out() + "/notes.txt", "mine");
    EXPECT_EQ(read("resident").exitStatus, 0);
    EXPECT_EQ(readFile(out() + "/notes.txt"), "mine");
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

TEST_F(ReadOut, FileInPlaceOfTheFolderIsReportedBeforeReading)
{
    writeFile(out(), "in the way");
    const ProcessResult run = read("resident");
    expectEnd(run, 7, "is not a folder");
    EXPECT_THAT(run.output(), IsEmpty());
}

TEST_F(ReadOut, DiskThatFillsUpHalfWayLeavesNothing)
{
    const FileSizeLimit limit(20000); // card.json fits, the photo does not
    const ProcessResult run = read("resident");
    EXPECT_TRUE(run.finished);
    expectEnd(run, 7, "photo.bmp could not be written");
    EXPECT_FALSE(QDir(out()).exists());
}

TEST_F(ReadOut, DiskThatFillsUpHalfWayLeavesTheOldCard)
{
    read("hmt-hong-kong");
    const auto before = folderState(out());
    const FileSizeLimit limit(20000);
    EXPECT_EQ(read("resident", {"--force"}).exitStatus, 7);
    EXPECT_EQ(folderState(out()), before);
}

} // namespace
