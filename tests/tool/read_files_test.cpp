// "idcard-reader read --out": the files it writes, and when it writes none.

#include <gmock/gmock.h>

#include <QDir>
#include <QJsonDocument>

#include "tests/tool/file_size_limit.h"
#include "tests/tool/folder_state.h"
#include "tests/tool/tool_runner.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr int PHOTO_SIZE = 38862;

class ReadOut : public testing::Test
{
protected:
    QString path(const QString &name) const { return m_base.filePath(name); }
    QString out() const { return path("card"); }

    ProcessResult read(const QString &card, const QStringList &more = {}) const
    {
        return runTool(QStringList{"read", "--simulate", card, "--out", out()} + more);
    }

    std::vector<std::string> names() const
    {
        std::vector<std::string> result;
        for (const auto &entry : folderState(out()))
            result.push_back(entry.first);
        return result;
    }

private:
    QTemporaryDir m_base;
};

TEST_F(ReadOut, CardWithEverythingGivesThreePrivateFiles)
{
    const ProcessResult run = read("resident");
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.standardError.toStdString(), IsEmpty());
    EXPECT_THAT(names(), ElementsAre("card.json", "fingerprints.dat", "photo.bmp"));
    EXPECT_EQ(modeOf(out()), 0700);
    for (const char *name : {"/card.json", "/fingerprints.dat", "/photo.bmp"})
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
    EXPECT_THAT(names(), ElementsAre("card.json"));
}

TEST_F(ReadOut, OtherKindsGiveCardAndPhoto)
{
    read("foreign-new");
    EXPECT_THAT(names(), ElementsAre("card.json", "photo.bmp"));
}

TEST_F(ReadOut, CompressedPhotoIsToldAndNotWrittenAsAPicture)
{
    const ProcessResult run = read("resident-compressed-photo");
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.standardError.toStdString(),
                AllOf(HasSubstr("compressed"), HasSubstr("photo.bmp is not written")));
    EXPECT_THAT(names(), ElementsAre("card.json", "fingerprints.dat"));
}

TEST_F(ReadOut, CardJsonNamesTheFilesBesideIt)
{
    read("resident");
    const QJsonObject json = parsedObject(readFile(out() + "/card.json"));
    EXPECT_EQ(json["photo"].toObject()["file"].toString(), "photo.bmp");
    EXPECT_EQ(json["fingerprints"].toObject()["file"].toString(), "fingerprints.dat");
    EXPECT_EQ(json["idNumber"].toString(), builtInCard("resident").idNumber);
}

TEST_F(ReadOut, PrintedJsonNamesTheFilesWithTheirFolder)
{
    const QJsonObject json = parsedObject(read("resident", {"--json"}).standardOutput);
    EXPECT_EQ(json["photo"].toObject()["file"].toString(), out() + "/photo.bmp");
}

TEST_F(ReadOut, TableListsTheFiles)
{
    const std::string table = read("resident").standardOutput.toStdString();
    EXPECT_THAT(table, HasSubstr((out() + "/card.json\n").toStdString()));
    EXPECT_THAT(table, HasSubstr((out() + "/fingerprints.dat\n").toStdString()));
}

TEST_F(ReadOut, ExistingCardIsNotOverwrittenAndNothingIsPrinted)
{
    read("resident");
    const auto before = folderState(out());
    const ProcessResult run = read("hmt-hong-kong");
    EXPECT_EQ(run.exitStatus, 7);
    EXPECT_THAT(run.standardOutput.toStdString(), IsEmpty());
    EXPECT_THAT(run.standardError.toStdString(),
                AllOf(HasSubstr("already holds card.json, photo.bmp, fingerprints.dat"),
                      HasSubstr("--force")));
    EXPECT_EQ(folderState(out()), before);
}

TEST_F(ReadOut, ForceReplacesTheCardAndLeavesNothingOfTheOldOne)
{
    read("resident");
    const ProcessResult run = read("hmt-macao", {"--force"}); // delivers its photo compressed
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(names(), ElementsAre("card.json"));
    EXPECT_EQ(parsedObject(readFile(out() + "/card.json"))["kind"].toString(), "hmt");
}

TEST_F(ReadOut, ForceWithoutAnOldCardWritesAsWell)
{
    EXPECT_EQ(read("resident", {"--force"}).exitStatus, 0);
    EXPECT_THAT(names(), ElementsAre("card.json", "fingerprints.dat", "photo.bmp"));
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

TEST_F(ReadOut, FolderThatCannotBeMadeIsToldAndTheCardIsStillPrinted)
{
    writeFile(path("file"), "in the way");
    const ProcessResult run =
        runTool({"read", "--json", "--simulate", "resident", "--out", path("file") + "/card"});
    EXPECT_EQ(run.exitStatus, 7);
    EXPECT_THAT(run.standardError.toStdString(), HasSubstr("could not be made"));
    const QJsonObject json = parsedObject(run.standardOutput);
    EXPECT_EQ(json["idNumber"].toString(), builtInCard("resident").idNumber);
    EXPECT_TRUE(json["photo"].toObject()["file"].isNull());
}

TEST_F(ReadOut, FileInPlaceOfTheFolderIsToldBeforeReading)
{
    writeFile(out(), "in the way");
    const ProcessResult run = read("resident");
    EXPECT_EQ(run.exitStatus, 7);
    EXPECT_THAT(run.standardError.toStdString(), HasSubstr("is not a folder"));
    EXPECT_THAT(run.standardOutput.toStdString(), IsEmpty());
}

TEST_F(ReadOut, DiskThatFillsUpHalfWayLeavesNothing)
{
    const FileSizeLimit limit(20000); // card.json fits, the photo does not
    const ProcessResult run = read("resident");
    EXPECT_TRUE(run.finished);
    EXPECT_EQ(run.exitStatus, 7);
    EXPECT_THAT(run.standardError.toStdString(), HasSubstr("photo.bmp could not be written"));
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
