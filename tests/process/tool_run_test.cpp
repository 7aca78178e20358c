// Runs of idcard-reader as a child: however it and the libraries in it end, they end.

#include <memory>

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcessEnvironment>
#include <QTest>

#include "apps/process/tool_run.h"
#include "tests/tool/tool_runner.h"

using app::ToolRun;

namespace
{

constexpr int LIMIT_MS = 20000;
const QStringList READ = {"read", "--road", "library", "--json"};
const QStringList READ_FOR_EVER = {
    "read", "--simulate", "resident", "--fault", "transient-failures=1000000", "--json"};

class ToolRunTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
            GTEST_SKIP() << "Left out: a child is not started under the emulator";
    }

    /** Begins a run; the maker's library then does what it should not. */
    void begin(const QStringList &arguments, int timeoutMs = 0, const char *behaviour = "")
    {
        m_isEnded = false;
        m_run = std::make_unique<ToolRun>(m_take, [this](ToolRun::End end, const QByteArray &rest) {
            m_isEnded = true;
            m_end = end;
            m_output = rest;
        });
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LD_LIBRARY_PATH",
                           IDCARD_STAND_IN_DIR "/unruly:" IDCARD_STAND_IN_DIR "/first");
        environment.insert("IDCARD_UNRULY", behaviour);
        m_run->setProcessEnvironment(environment);
        m_time.start();
        m_run->run(arguments, timeoutMs);
    }

    bool waitForEnd()
    {
        return QTest::qWaitFor([this] { return m_isEnded; }, LIMIT_MS);
    }

    void expectEnd(ToolRun::End end)
    {
        EXPECT_TRUE(waitForEnd());
        EXPECT_EQ(int(m_end), int(end));
    }

    std::string how() const { return m_run->howItEnded().toStdString(); }

    int m_argumentCount = 1;
    char m_name[5] = "test";
    char *m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argumentCount, m_arguments};
    ToolRun::Take m_take;
    std::unique_ptr<ToolRun> m_run;
    bool m_isEnded = false;
    ToolRun::End m_end = ToolRun::End::DONE;
    QByteArray m_output;
    QElapsedTimer m_time;
};

TEST_F(ToolRunTest, CardThatIsRead_IsTheOutputAtTheEnd)
{
    begin(READ);
    expectEnd(ToolRun::End::DONE);
    EXPECT_EQ(parsedObject(m_output)["name"], "unruly");
    EXPECT_EQ(how(), "It ended with status 6.") << "its photo is not decoded";
}

TEST_F(ToolRunTest, StatusOfAFailure_IsSaid)
{
    begin({"read", "--no-such-option"});
    expectEnd(ToolRun::End::DONE);
    EXPECT_EQ(how(), "It ended with status 2.");
}

TEST_F(ToolRunTest, Output_IsGivenAsItComesToWhoTakesIt)
{
    QByteArray taken;
    m_take = [&taken](QByteArray *output) {
        taken += *output;
        output->clear();
    };
    begin({"cards"});
    expectEnd(ToolRun::End::DONE);
    EXPECT_EQ(taken, runTool({"cards"}).standardOutput);
    EXPECT_TRUE(m_output.isEmpty());
}

TEST_F(ToolRunTest, RunWithoutEnd_IsOverWhenItsTimeIs)
{
    begin(READ_FOR_EVER, 300);
    expectEnd(ToolRun::End::TIMED_OUT);
    EXPECT_GE(m_time.elapsed(), 300);
    EXPECT_LT(m_time.elapsed(), 300 + 3500);
}

TEST_F(ToolRunTest, RunWithoutEnd_IsOverOnceItIsStopped)
{
    begin(READ_FOR_EVER);
    QTest::qWait(200);
    m_time.restart();
    m_run->stop();
    EXPECT_FALSE(m_isEnded);
    expectEnd(ToolRun::End::STOPPED);
    EXPECT_LT(m_time.elapsed(), 3500);
}

TEST_F(ToolRunTest, RunThatIsStoppedBeforeItHasBegun_IsStopped)
{
    begin(READ_FOR_EVER);
    m_run->stop();
    expectEnd(ToolRun::End::STOPPED);
}

TEST_F(ToolRunTest, RunThatGoes_EndsTheTool)
{
    begin(READ_FOR_EVER);
    QTest::qWait(200);
    m_time.restart();
    m_run.reset();
    EXPECT_LT(m_time.elapsed(), 3500);
    EXPECT_FALSE(m_isEnded) << "nobody is there to take it";
}

/** How the maker's library ends the tool. */
struct Behaviour {
    const char *name;
    ToolRun::End end;
    const char *how;
};

class EndByALibrary : public ToolRunTest, public testing::WithParamInterface<Behaviour>
{
};

TEST_P(EndByALibrary, IsGivenWithoutOutput)
{
    begin(READ, 0, GetParam().name);
    expectEnd(GetParam().end);
    EXPECT_EQ(how(), GetParam().how);
    EXPECT_TRUE(m_output.isEmpty());
}

TEST_F(ToolRunTest, LibraryThatEndsTheToolAsIfAllWereWell_IsAFailureOfTheReading)
{
    begin(READ, 0, "exit-0");
    expectEnd(ToolRun::End::DONE);
    EXPECT_EQ(how(), "It ended with status 5.");
    EXPECT_EQ(errorNameIn(m_output), "TOOL_READ_BROKEN_OFF");
}

INSTANTIATE_TEST_SUITE_P(
    Behaviours, EndByALibrary,
    testing::Values(Behaviour{"segmentation-fault", ToolRun::End::FAILED,
                              "It was ended by signal 11."},
                    Behaviour{"abort", ToolRun::End::FAILED, "It was ended by signal 6."},
                    Behaviour{"_exit-3", ToolRun::End::DONE, "It ended with status 3."}));

class Loop : public ToolRunTest, public testing::WithParamInterface<const char *>
{
};

TEST_P(Loop, OfALibrary_IsEndedByForceInTime)
{
    begin(READ, 0, GetParam());
    QTest::qWait(500);
    EXPECT_FALSE(m_isEnded);
    m_time.restart();
    m_run->stop();
    expectEnd(ToolRun::End::STOPPED);
    EXPECT_LT(m_time.elapsed(), 4000);
}

INSTANTIATE_TEST_SUITE_P(Loops, Loop, testing::Values("loop", "loop-against-signals"));

TEST_F(ToolRunTest, OutputOfTheLibrary_IsNotThatOfTheTool)
{
    begin(READ, 0, "print");
    expectEnd(ToolRun::End::DONE);
    EXPECT_EQ(parsedObject(m_output)["name"], "unruly");
}

TEST_F(ToolRunTest, ToolThatPrintsWithoutEnd_IsEnded)
{
    begin(READ, 0, "print-without-end");
    QTest::qWait(1000);
    m_run->stop(); // where the tool keeps to itself what the library prints
    EXPECT_TRUE(waitForEnd());
    EXPECT_LT(m_output.size(), 8 * 1024 * 1024);
}

TEST_F(ToolRunTest, Tool_IsBesideThisProgramWhereABuildHasIt)
{
    EXPECT_EQ(app::toolPath().toStdString(), IDCARD_BUILD_BIN_DIR "/idcard-reader");
}

} // namespace
