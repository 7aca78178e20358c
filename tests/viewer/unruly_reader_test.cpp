// A maker's library that crashes, hangs, ends the program or meddles with it costs one read. What
// answers is a stand-in for it, which the loader finds.

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QFile>
#include <QLocale>
#include <QProcess>

#include <fcntl.h>
#include <locale.h>
#include <unistd.h>

#include "tests/support/files.h"
#include "tests/viewer/viewer_test.h"

using namespace viewer_test;
using testing::AllOf;
using testing::HasSubstr;

namespace
{

class UnrulyReader : public ViewerTest
{
protected:
    void SetUp() override
    {
        ViewerTest::SetUp();
        rememberRoad(app::ReaderRoad::LIBRARY);
    }

    void TearDown() override
    {
        ViewerTest::TearDown();
        qunsetenv("IDCARD_UNRULY");
    }

    static void behave(const char *behaviour) { qputenv("IDCARD_UNRULY", behaviour); }

    /** As if nothing had been. */
    void expectNextReadWorks()
    {
        const int before = model("history")->rowCount();
        behave("");
        read();
        EXPECT_EQ(text("name"), "unruly");
        EXPECT_EQ(model("history")->rowCount(), before + 1);
    }
};

struct Outcome {
    const char *behaviour;
    const char *cause;
};

class EndedRead : public UnrulyReader, public testing::WithParamInterface<Outcome>
{
};

TEST_P(EndedRead, IsReportedWithWhatToDoAndTheNextWorks)
{
    open();
    behave(GetParam().behaviour);
    read();
    expectState(Kind::FAILED, "Reading ended without a result.", "Read the card once more.");
    EXPECT_THAT(details(), HasSubstr(GetParam().cause));
    EXPECT_EQ(model("history")->rowCount(), 0);
    EXPECT_TRUE(find("diagnose")->isVisible());
    expectNextReadWorks();
}

TEST_F(UnrulyReader, LibraryThatEndsTheReadingAsIfAllWereWell_IsAFailureAndTheNextWorks)
{
    open();
    behave("exit-0");
    read();
    expectState(Kind::FAILED, "The reading in progress was broken off.",
                "If the reader does not answer any more, unplug it and plug it in again.");
    EXPECT_EQ(model("history")->rowCount(), 0);
    expectNextReadWorks();
}

INSTANTIATE_TEST_SUITE_P(Ends, EndedRead,
                         testing::Values(Outcome{"segmentation-fault",
                                                 "It was ended by signal 11."},
                                         Outcome{"abort", "It was ended by signal 6."},
                                         Outcome{"_exit-3", "It ended with status 3."}));

class EndlessRead : public UnrulyReader, public testing::WithParamInterface<const char *>
{
protected:
    void begin()
    {
        open();
        behave(GetParam());
        click("read");
        EXPECT_TRUE(waitFor([] { return !children().empty(); }));
        QTest::qWait(300);
    }
};

TEST_P(EndlessRead, IsCancelledAndTheNextWorks)
{
    begin();
    expectState(Kind::READING, "Reading…");
    click("cancel");
    expectState(Kind::WAITING, "Reading was given up.");
    EXPECT_TRUE(waitFor([] { return children().empty(); }, 4000));
    expectNextReadWorks();
}

TEST_P(EndlessRead, EndsWithTheWindow)
{
    begin();
    QElapsedTimer time;
    time.start();
    close();
    EXPECT_THAT(children(), testing::IsEmpty());
    EXPECT_LT(time.elapsed(), 4000);
}

TEST_P(EndlessRead, ThatWasCancelled_DoesNotHoldUpTheNextForLong)
{
    begin();
    click("cancel");
    behave("");
    QElapsedTimer time;
    time.start();
    read();
    EXPECT_EQ(text("name"), "unruly");
    EXPECT_LT(time.elapsed(), 5000);
}

INSTANTIATE_TEST_SUITE_P(Loops, EndlessRead,
                         testing::Values("loop", "loop-against-signals", "print-without-end"));

class MeddlingRead : public UnrulyReader, public testing::WithParamInterface<const char *>
{
};

TEST_P(MeddlingRead, GivesTheCardOrIsReportedOrCancelledAndTheNextWorks)
{
    open();
    const std::string locale = setlocale(LC_ALL, nullptr);
    const int file = ::open(path("mine").toUtf8().constData(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    behave(GetParam());
    click("read");
    if (!waitFor([this] { return state().kind != Kind::READING; }, 6000))
        click("cancel"); // a program without its descriptors may wait for ever
    const bool isRead = model("history")->rowCount() == 1;
    EXPECT_EQ(text("name"), isRead ? "unruly" : "");
    EXPECT_TRUE(isRead || state().kind == Kind::FAILED || state().kind == Kind::WAITING);
    EXPECT_STREQ(setlocale(LC_ALL, nullptr), locale.c_str());
    EXPECT_EQ(readFile(path("mine")), "") << "a file of the window's";
    ::close(file);
    expectNextReadWorks();
}

INSTANTIATE_TEST_SUITE_P(Kinds, MeddlingRead,
                         testing::Values("print", "write-everywhere", "close-everything",
                                         "change-locale"));

TEST_F(UnrulyReader, LibraryThatOnlyPrints_GivesTheCard)
{
    open();
    for (const char *const behaviour : {"print", "change-locale"}) {
        behave(behaviour);
        read();
        EXPECT_EQ(text("name"), "unruly") << behaviour;
    }
    EXPECT_EQ(model("history")->rowCount(), 2);
}

TEST_F(UnrulyReader, CrashWhileItReadsByItself_IsReportedOnceAndReadingGoesOn)
{
    behave("segmentation-fault");
    open();
    check("automatic", true);
    EXPECT_TRUE(waitForState(Kind::FAILED));
    expectState(Kind::FAILED, "Reading ended without a result.");
    trigger("Clear the history");
    expectState(Kind::WAITING);
    QTest::qWait(3000); // it has crashed once more
    expectState(Kind::WAITING);
    behave("");
    EXPECT_TRUE(waitForCards(1));
    EXPECT_EQ(text("name"), "unruly");
}

/** The window's own program, in a folder where the one that reads is not. */
using LonelyWindow = ViewerTest;

TEST_F(LonelyWindow, DISABLED_Read)
{
    open();
    read();
    expectState(Kind::FAILED, "Reading ended without a result.");
    EXPECT_THAT(details(), AllOf(HasSubstr("idcard-reader could not be started"),
                                 HasSubstr("No such file or directory")));
    read();
    expectState(Kind::FAILED, "Reading ended without a result.");
    check("automatic", true);
    QTest::qWait(500);
    expectState(Kind::FAILED, "Reading ended without a result.");
    check("automatic", false);
    click("diagnose");
    QCoreApplication::processEvents();
}

TEST_F(LonelyWindow, WithoutTheProgramThatReads_SaysThatItCouldNotBeStarted)
{
    if (QFile::exists(IDCARD_INSTALL_BINDIR "/idcard-reader"))
        GTEST_SKIP() << "it is installed on this machine";
    ASSERT_TRUE(QFile::copy(QCoreApplication::applicationFilePath(), path("window")));
    const ProcessResult run =
        runProcess(path("window"), {"--gtest_also_run_disabled_tests",
                                    "--gtest_filter=LonelyWindow.DISABLED_Read"});
    EXPECT_EQ(run.exitStatus, 0) << run.output() << run.error();
    EXPECT_THAT(run.output(), HasSubstr("[  PASSED  ] 1 test."));
}

} // namespace
