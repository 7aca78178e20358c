// Changing the road while the window is open: what answers is the simulator, a stand-in for the
// maker's library that the loader finds, or a stand-in that fails.

#include <gmock/gmock.h>

#include <QDir>

#include <dlfcn.h>

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
        choose("road", "The maker's library");
        read();
    }

    void readSimulator(const QString &card)
    {
        choose("road", "Simulator");
        choose("card", card);
        click("putCard");
        read();
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

TEST_F(Roads, MakersLibraryFromTheBeginning_IsRead)
{
    open();
    read();
    EXPECT_EQ(field("Name").toStdString(), "first");
}

TEST_F(Roads, FromTheSimulatorToTheMakersLibraryAndBack_EachAnswersInItsTurn)
{
    if (!UNLOADS_LIBRARIES)
        GTEST_SKIP() << "a library that the sanitizers watch stays in the process";
    open();
    for (const char *card : {"resident", "hmt-macao"}) {
        readSimulator(card);
        EXPECT_EQ(field("Name"), builtInCard(card).name);
        readThroughMakersLibrary();
        EXPECT_EQ(field("Name").toStdString(), "first");
    }
    EXPECT_EQ(model("history")->rowCount(), 4);
}

TEST_F(Roads, LeavingTheSimulator_TakesItOutOfTheProcess)
{
    if (!UNLOADS_LIBRARIES)
        GTEST_SKIP() << "a library that the sanitizers watch stays in the process";
    const QByteArray simulator = IDCARD_BUILD_LIB_DIR "/libidcard_simulator.so";
    const auto isLoaded = [&] {
        void *const held = dlopen(simulator.constData(), RTLD_LAZY | RTLD_NOLOAD);
        if (held != nullptr)
            dlclose(held);
        return held != nullptr;
    };
    open();
    readSimulator("resident");
    EXPECT_TRUE(isLoaded());
    choose("road", "The maker's library");
    EXPECT_FALSE(isLoaded());
}

TEST_F(Roads, SimulatorThatIsHeldInTheProcess_IsReportedAndDoesNotAnswerForTheReader)
{
    if (!UNLOADS_LIBRARIES)
        GTEST_SKIP() << "a library that the sanitizers watch stays in the process";
    open();
    readSimulator("resident");
    void *const held =
        dlopen(IDCARD_BUILD_LIB_DIR "/libidcard_simulator.so", RTLD_LAZY | RTLD_NOLOAD);
    choose("road", "The maker's library");
    EXPECT_THAT(details(), HasSubstr("cannot be taken out of this program"));
    read();
    EXPECT_THAT(details(), HasSubstr("cannot be taken out of this program"));
    EXPECT_EQ(model("history")->rowCount(), 1);
    dlclose(held);
    read();
    EXPECT_EQ(field("Name").toStdString(), "first");
}

TEST_F(Roads, CardOfTheSimulator_IsOffWhenTheRoadComesBack)
{
    open();
    readSimulator("resident");
    choose("road", "The maker's library");
    choose("road", "Simulator");
    read();
    EXPECT_EQ(headline(), "No card was found on the reader.");
}

TEST_F(Roads, MakersLibraryThatFailsInTheMiddle_IsReportedWithCauseAndRemedy)
{
    if (!UNLOADS_LIBRARIES)
        GTEST_SKIP() << "a library that the sanitizers watch stays in the process";
    void *const throwing =
        dlopen(IDCARD_BUILD_LIB_DIR "/libidcard_throwing_reader.so", RTLD_NOW | RTLD_GLOBAL);
    ASSERT_NE(throwing, nullptr) << dlerror();
    open();
    read();
    dlclose(throwing);
    const app::ResultEntry *const entry = app::findResult(-23, false);
    EXPECT_EQ(headline(), entry->summary);
    EXPECT_THAT(details(), testing::AllOf(HasSubstr(entry->cause), HasSubstr(entry->remedy)));
}

TEST_F(Roads, SimulatorThatIsMissing_IsReportedWithTheFilesThatWereLookedFor)
{
    qputenv("IDCARD_SIMULATOR_LIBRARY", "/nowhere/simulator.so");
    open();
    choose("road", "Simulator");
    EXPECT_EQ(headline(), "The simulator cannot be used as it was asked to.");
    EXPECT_THAT(details(), HasSubstr("/nowhere/simulator.so"));
    qunsetenv("IDCARD_SIMULATOR_LIBRARY");
}

} // namespace
