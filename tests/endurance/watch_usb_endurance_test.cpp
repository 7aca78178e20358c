// The reader on USB that goes and comes.

#include "tests/endurance/watched_events.h"
#include "tests/usb/reader_on_bus.h"

using namespace endurance;

TEST(WatchEndurance, ReaderOnUsbThatGoesAndComes_IsReportedEveryTimeAndItsCardOnce)
{
    usb_test::ReaderOnBus usb;
    usb.plugIn("resident");
    WatchedEvents watch({"--road", "usb", "--simulator-photos"}, {usb.bus().childEnvironment()});
    watch.expect("reader-added");
    const QJsonObject card = watch.expect("card-read")["card"].toObject();
    EXPECT_EQ(card["name"].toString(), builtInCard("resident").name);
    ProcessFigures early;
    for (int i = 0; i < times() && !testing::Test::HasFailure(); ++i) {
        usb.changeBeneath(watch.process(), [&] { usb.reader().unplug(); });
        watch.expect("reader-removed");
        usb.changeBeneath(watch.process(), [&] { usb.reader().plugIn(); });
        watch.expect("reader-added");
        if (i == times() / 10)
            early = watch.figures();
    }
    expectNoGrowth(early, watch.figures());
    usb.takeOff();
    watch.expect("card-removed");
    const ProcessResult run = watch.ended();
    EXPECT_EQ(run.exitStatus, 0) << run.error();
    EXPECT_EQ(run.output(), "");
    EXPECT_EQ(run.standardError.count("Watching goes on"), times());
    usb.expectAllGivenBack();
}
