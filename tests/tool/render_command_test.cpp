// "idcard-reader render": the pictures of described cards.

#include <gmock/gmock.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

#include "simulator/card/card_library.h"
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

class Render : public FolderTest
{
protected:
    ProcessResult render(const QString &card, const QStringList &more = {}) const
    {
        return runTool(QStringList{"render", card, "--out", out()} + more);
    }

    /** The description of a built-in card with one value changed, as a file. */
    QString changedCard(const QString &name, const QString &key, const QJsonValue &value) const
    {
        QJsonObject description = parsedObject(
            readFile(QStringLiteral(IDCARD_SOURCE_DIR "/simulator/cards/%1.json").arg(name)));
        description.insert(key, value);
        QString file = path("card.json");
        writeFile(file, QJsonDocument(description).toJson());
        return file;
    }

    std::vector<std::string> names() const { return namesIn(out()); }
};

TEST_F(Render, EveryBuiltInCardGivesItsPictures)
{
    for (const QString &name : simulator::builtInCardNames()) {
        SCOPED_TRACE(name.toStdString());
        const QString kind = simulator::cardKindName(builtInCard(name).kind);
        const ProcessResult run = render(name, {"--force"});
        EXPECT_EQ(run.exitStatus, 0) << run.error();
        expectCardPicture(out() + "/front.jpg", kind);
        if (name == QLatin1String("hmt-unknown-region")) {
            EXPECT_THAT(names(), ElementsAre("front.jpg"));
            continue;
        }
        EXPECT_THAT(run.error(), IsEmpty());
        EXPECT_THAT(names(), ElementsAre("back.jpg", "front.jpg"));
        expectCardPicture(out() + "/back.jpg", kind);
    }
}

TEST_F(Render, PicturesAreThoseOfAReading)
{
    for (const char *card :
         {"resident", "hmt-hong-kong", "hmt-taiwan", "foreign-2017", "foreign-new"}) {
        SCOPED_TRACE(card);
        runTool({"read", "--simulate", card, "--out", path("read"), "--force"});
        EXPECT_EQ(render(card, {"--force"}).exitStatus, 0);
        for (const char *name : {"/front.jpg", "/back.jpg"})
            EXPECT_EQ(readFile(out() + name), readFile(path("read") + name)) << name;
    }
}

TEST_F(Render, DescriptionFileIsPaintedWithWhatItSays)
{
    const QString file = changedCard("resident", "name", QString::fromUtf8("王二"));
    EXPECT_EQ(render(file).exitStatus, 0);
    const QByteArray front = readFile(out() + "/front.jpg");
    EXPECT_EQ(render("resident", {"--force"}).exitStatus, 0);
    EXPECT_NE(front, readFile(out() + "/front.jpg"));
}

TEST_F(Render, PortraitIsPaintedWhenThePhotoIsDescribedAsCompressed)
{
    const auto front = [this](const char *delivery) {
        const QJsonObject photo{{"delivery", delivery}, {"seed", 3}};
        EXPECT_EQ(render(changedCard("resident", "photo", photo), {"--force"}).exitStatus, 0);
        return readFile(out() + "/front.jpg");
    };
    EXPECT_EQ(front("compressed"), front("bmp"));
}

TEST_F(Render, FaultsOfTheDescriptionAndOfTheEnvironmentDoNotCount)
{
    const QString file =
        changedCard("resident", "faults", QJsonArray{"no-card", "read-fails=7", "unknown-kind"});
    const ProcessResult run =
        runTool({"render", file, "--out", out()}, {{{"IDCARD_SIMULATOR_FAULTS", "open-fails=3"}}});
    EXPECT_EQ(run.exitStatus, 0) << run.error();
    EXPECT_THAT(names(), ElementsAre("back.jpg", "front.jpg"));
}

TEST_F(Render, TableNamesKindAndFiles)
{
    const ProcessResult run = render("foreign-new");
    EXPECT_EQ(run.output(), "Kind      Foreigner's permanent residence card, new edition\n"
                            "Saved as  " +
                                out().toStdString() + "/front.jpg\n          " +
                                out().toStdString() + "/back.jpg\n");
}

TEST_F(Render, JsonNamesKindAndFilesAndNothingElse)
{
    const QJsonObject json = parsedObject(render("hmt-taiwan", {"--json"}).standardOutput);
    EXPECT_EQ(json,
              (QJsonObject{
                  {"kind", "hmt"},
                  {"cardKind", 3},
                  {"frontPicture", QJsonObject{{"format", "jpeg"}, {"file", out() + "/front.jpg"}}},
                  {"backPicture", QJsonObject{{"format", "jpeg"}, {"file", out() + "/back.jpg"}}},
              }));
}

TEST_F(Render, PermitOfAnUnknownRegionIsReportedAndHasNoBack)
{
    const ProcessResult run = render("hmt-unknown-region");
    expectEnd(run, 0, "back.jpg is not written.");
    EXPECT_THAT(run.output(),
                HasSubstr("\nBack picture  none: the permit's number begins with none of 81, 82, "
                          "83\n"));
    EXPECT_THAT(names(), ElementsAre("front.jpg"));

    const QJsonObject json =
        parsedObject(render("hmt-unknown-region", {"--json", "--force"}).standardOutput);
    EXPECT_EQ(json["backPicture"].toObject(),
              (QJsonObject{{"format", "none"}, {"file", QJsonValue()}}));
}

TEST_F(Render, ExistingPicturesAreNotOverwritten)
{
    render("resident");
    const auto before = folderState(out());
    const ProcessResult run = render("hmt-taiwan");
    EXPECT_EQ(run.exitStatus, 7);
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_THAT(run.error(),
                AllOf(HasSubstr("already holds front.jpg, back.jpg"), HasSubstr("--force")));
    EXPECT_EQ(folderState(out()), before);
}

TEST_F(Render, ForceReplacesThePicturesAndLeavesOtherFiles)
{
    render("hmt-taiwan");
    writeFile(out() + "/card.json", "mine");
    EXPECT_EQ(render("hmt-unknown-region", {"--force"}).exitStatus, 0);
    EXPECT_THAT(names(), ElementsAre("card.json", "front.jpg"));
    EXPECT_EQ(readFile(out() + "/card.json"), "mine");
}

TEST_F(Render, DescriptionThatCannotBeUsedIsReportedWithFileKeyAndReason)
{
    const QString file = changedCard("resident", "birthDate", QStringLiteral("19900230"));
    const ProcessResult run = render(file);
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_THAT(run.error(), AllOf(HasSubstr(file.toStdString()), HasSubstr("birthDate"),
                                   HasSubstr("19900230")));
    EXPECT_FALSE(QDir(out()).exists());
}

TEST_F(Render, CardThatIsNotThereIsReported)
{
    expectEnd(render(path("no-such-card.json")), 2,
              "no-such-card.json: is neither a built-in card nor a file");
    EXPECT_FALSE(QDir(out()).exists());
}

TEST_F(Render, FolderIsNoDescription)
{
    expectEnd(render(path("")), 2, "is not a regular file");
}

TEST_F(Render, SimulatorThatIsNotThereIsReported)
{
    expectEnd(runTool({"render", "resident", "--out", out()},
                      {{{"IDCARD_SIMULATOR_LIBRARY", "/nonexistent/simulator.so"}}}),
              1, "/nonexistent/simulator.so");
}

TEST_F(Render, DiskThatFillsUpLeavesNothing)
{
    const FileSizeLimit limit(5000);
    const ProcessResult run = render("resident");
    expectEnd(run, 7, "front.jpg could not be written");
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_FALSE(QDir(out()).exists());
}

TEST_F(Render, VerboseShowsTheStepsWithoutTheCard)
{
    const ProcessResult run = render("resident", {"--verbose"});
    EXPECT_THAT(run.error(),
                AllOf(HasSubstr("libidcard_simulator.so"), HasSubstr("Saved the pictures in")));
    expectNothingOf(builtInCard("resident"), run.standardError);
}

} // namespace
