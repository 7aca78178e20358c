// The reader of the maker's library that goes and comes.

#include "tests/endurance/watched_events.h"

using namespace endurance;

TEST(WatchEndurance, ReaderOfTheLibraryThatGoesAndComes_IsReportedEveryTimeAndItsCardOnce)
{
    const InstalledReader installed;
    WatchedEvents watch({}, {installed.variables("resident", "open-fails-every=2")});
    watch.expect("reader-added");
    watch.expect("card-read");
    ProcessFigures early;
    for (int i = 0; i < times() && !testing::Test::HasFailure(); ++i) {
        watch.expect("reader-removed");
        watch.expect("reader-added");
        if (i == times() / 10)
            early = watch.figures();
    }
    expectNoGrowth(early, watch.figures());
    const ProcessResult run = watch.ended();
    EXPECT_EQ(run.exitStatus, 0) << run.error();
    EXPECT_EQ(run.standardOutput.count("card-read"), 0);
}
