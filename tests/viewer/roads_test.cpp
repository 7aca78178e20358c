// Which way the window reads: what answers is the simulator, or a stand-in for the maker's library
// that the loader finds.

#include <gmock/gmock.h>

#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/viewer/viewer_test.h"

using namespace viewer_test;
using testing::HasSubstr;

namespace
{

class Roads : public ViewerTest
{
protected:
    void readThroughMakersLibrary()
    {
        chooseRoad("Through the reader maker's library");
        read();
    }

    void readSimulator(const QString &card)
    {
        chooseRoad("From the simulator");
        readNext(card);
    }
};

TEST(CommandLine, EveryOption_IsTakenOverAndNoOther)
{
    const auto parsed = [](const QStringList &arguments) {
        return *viewer::parseCommandLine("idcard-viewer", arguments).options;
    };
    const viewer::ViewerOptions none = parsed({});
    EXPECT_TRUE(none.card.isEmpty() && none.faults.isEmpty() && !none.device &&
                !none.simulatorPhotos && !none.isAutomatic && !none.isCovered);
    const viewer::ViewerOptions simulated =
        parsed({"--simulate", "hmt-macao", "--fault", "no-card=2", "--auto"});
    EXPECT_EQ(simulated.card.toStdString(), "hmt-macao");
    EXPECT_EQ(simulated.faults.toStdString(), "no-card=2");
    EXPECT_TRUE(simulated.isAutomatic && !simulated.isCovered && !simulated.device);
    const viewer::ViewerOptions usb = parsed({"--usb", "1209:00aB", "--cover"});
    ASSERT_TRUE(usb.device);
    EXPECT_EQ(toText(*usb.device).toStdString(), "1209:00ab");
    EXPECT_TRUE(usb.isCovered && !usb.isAutomatic && !usb.simulatorPhotos);
    EXPECT_TRUE(parsed({"--usb", "1209:0001", "--simulator-photos"}).simulatorPhotos);
}

TEST_F(Roads, MachineThatIsNotConfigured_IsReadThroughTheMakersLibrary)
{
    open();
    read();
    EXPECT_EQ(field("Name").toStdString(), "first");
}

TEST_F(Roads, MachineThatIsConfigured_IsReadAsItsFileSays)
{
    writeFile(path("idcard-reader.conf"), "road = usb\n");
    open();
    read();
    expectState(Kind::FAILED);
    EXPECT_THAT(details(), HasSubstr("USB_READER_NOT_FOUND"));
    readThroughMakersLibrary();
    EXPECT_EQ(field("Name").toStdString(), "first");
}

TEST_F(Roads, FromTheSimulatorToTheMakersLibraryAndBack_EachAnswersInItsTurn)
{
    open();
    for (const char *card : {"resident", "hmt-macao"}) {
        readSimulator(card);
        EXPECT_EQ(field("Name"), builtInCard(card).name);
        readThroughMakersLibrary();
        EXPECT_EQ(field("Name").toStdString(), "first");
    }
    EXPECT_EQ(model("history")->rowCount(), 4);
}

TEST_F(Roads, CardOfTheSimulator_IsOffWhenTheRoadComesBack)
{
    open();
    readSimulator("resident");
    chooseRoad("Through the reader maker's library");
    chooseRoad("From the simulator");
    read();
    EXPECT_EQ(headline(), "No card was found on the reader.");
}

TEST_F(Roads, RoadChangedWhileItReads_DropsWhatStillComes)
{
    openWithCard("resident", "delay-ms=1500");
    click("read");
    QTest::qWait(200);
    chooseRoad("Through the reader maker's library");
    EXPECT_NE(state().kind, Kind::READING);
    EXPECT_TRUE(find("read")->isEnabled());
    read();
    QTest::qWait(1500);
    EXPECT_EQ(model("history")->rowCount(), 1);
    EXPECT_EQ(field("Name").toStdString(), "first");
}

TEST_F(Roads, ReadThroughTheMakersLibraryByItself_IsReadOnceWhileTheCardLiesThere)
{
    open();
    check("automatic", true);
    EXPECT_TRUE(waitForCards(1));
    QTest::qWait(2500); // many looks
    EXPECT_EQ(model("history")->rowCount(), 1);
    EXPECT_NE(text("name"), QString());
    click("read");
    EXPECT_TRUE(waitForCards(2));
    QTest::qWait(2500);
    EXPECT_EQ(model("history")->rowCount(), 2);
    EXPECT_TRUE(find("save")->isEnabled()) << "the card has not been taken off";
}

TEST_F(Roads, PhotoWithoutADecoder_IsReportedBesideTheCard)
{
    open();
    read(); // its stand-in decodes nothing
    expectState(Kind::ATTENTION, "The photo of the card could not be decoded.");
    EXPECT_EQ(field("Name").toStdString(), "first");
    EXPECT_THAT(find("photo")->accessibleDescription().toStdString(), HasSubstr("compressed"));
}

TEST_F(Roads, SimulatorThatIsMissing_IsReportedWithTheFilesThatWereLookedFor)
{
    qputenv("IDCARD_SIMULATOR_LIBRARY", "/nowhere/simulator.so");
    openWithCard("resident");
    read();
    expectState(Kind::FAILED);
    EXPECT_THAT(line() + details(), HasSubstr("/nowhere/simulator.so"));
    qunsetenv("IDCARD_SIMULATOR_LIBRARY");
}

} // namespace
