// --timeout: a reading that does not end is given up.

#include <csignal>

#include <gmock/gmock.h>

#include <QDir>
#include <QElapsedTimer>

#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/usb/reader_on_bus.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

const QStringList NEVER_ENDING{"read", "--simulate", "resident", "--fault",
                               "transient-failures=1000000"};

class ReadTimeout : public FolderTest
{
};

TEST_F(ReadTimeout, EndsAReadingThatNeverEndsWithItsOwnStatusAndNoFile)
{
    ProcessInput input;
    input.workingDirectory = path("work");
    ASSERT_TRUE(QDir().mkdir(input.workingDirectory));
    QElapsedTimer time;
    time.start();
    const ProcessResult run =
        runTool(NEVER_ENDING + QStringList{"--timeout", "1", "--json", "--out", "card"}, input);
    EXPECT_TRUE(run.finished);
    EXPECT_GE(time.elapsed(), 1000);
    EXPECT_EQ(run.exitStatus, 11);
    EXPECT_THAT(run.error(),
                AllOf(HasSubstr("idcard-reader: Reading the card did not end in time.\n"),
                      HasSubstr("Cause: "), HasSubstr("1 s"), HasSubstr("What to do: ")));
    const QJsonObject object = parsedObject(run.standardOutput);
    EXPECT_EQ(object.keys(), QStringList{"error"});
    const QJsonObject error = object["error"].toObject();
    EXPECT_EQ(error["name"], "TOOL_READ_TIMED_OUT");
    EXPECT_EQ(error["code"], QJsonValue(QJsonValue::Null));
    EXPECT_EQ(error["exitStatus"], 11);
    EXPECT_THAT(namesIn(input.workingDirectory), IsEmpty());
}

TEST_F(ReadTimeout, LeavesAReadingAloneThatEndsInTime)
{
    const ProcessResult run =
        runTool({"read", "--simulate", "resident", "--timeout", "30", "--json"});
    expectEnd(run, 0);
    EXPECT_EQ(run.standardOutput,
              runTool({"read", "--simulate", "resident", "--json"}).standardOutput);
}

TEST_F(ReadTimeout, DoesNotCountTheWaitForACard)
{
    const ProcessResult run = runTool({"read", "--simulate", "resident", "--wait", "30",
                                       "--timeout", "4", "--fault", "no-card=20"});
    expectEnd(run, 0);
}

TEST_F(ReadTimeout, InterruptedReadingIsLeftAsWithoutItAndAnObjectForPrograms)
{
    RunningTool tool(NEVER_ENDING + QStringList{"--timeout", "50", "--json", "--verbose"});
    EXPECT_TRUE(tool.waitForError("card reading fail!"));
    const ProcessResult run = tool.endedBy(SIGINT);
    expectEnd(run, 5, "was broken off");
    EXPECT_EQ(errorNameIn(run.standardOutput), "TOOL_READ_BROKEN_OFF");
}

/** While it lives, these signals are blocked, also in programs that are started. */
class BlockedSignals
{
public:
    BlockedSignals(std::initializer_list<int> numbers)
    {
        sigset_t blocked;
        sigemptyset(&blocked);
        for (const int number : numbers)
            sigaddset(&blocked, number);
        pthread_sigmask(SIG_BLOCK, &blocked, &m_before);
    }
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    BlockedSignals(const BlockedSignals &) = delete;
    BlockedSignals &operator=(const BlockedSignals &) = delete;

private:
    sigset_t m_before{};
};

TEST_F(ReadTimeout, IsKeptWhereItsHostBlocksTheSignals)
{
    const BlockedSignals blocked{SIGALRM, SIGTERM, SIGINT, SIGHUP};
    EXPECT_EQ(runTool(NEVER_ENDING + QStringList{"--timeout", "1"}).exitStatus, 11);
    RunningTool tool(NEVER_ENDING + QStringList{"--verbose"});
    EXPECT_TRUE(tool.waitForError("card reading fail!"));
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 5) << run.error();
}

class UsbTimeout : public FolderTest, public usb_test::ReaderOnBus
{
};

TEST_F(UsbTimeout, EndsAReadingThatTakesTooLong)
{
    plugIn("resident", "delay-ms=4000");
    QElapsedTimer time;
    time.start();
    const ProcessResult run = runTool({"usb", "--device", "1209:0001", "--timeout", "1", "--json",
                                       "--raw", path("card.rec"), "--out", out()},
                                      {bus().childEnvironment()});
    EXPECT_EQ(run.exitStatus, 11);
    EXPECT_LT(time.elapsed(), 4000);
    EXPECT_EQ(errorNameIn(run.standardOutput), "TOOL_READ_TIMED_OUT");
    EXPECT_FALSE(QFile::exists(path("card.rec")));
    EXPECT_FALSE(QFile::exists(out()));
}

TEST_F(UsbTimeout, EndsAPhotoDecoderThatHangs)
{
    plugIn("resident");
    const InstalledReader decoder(QStringLiteral("libidcard_broken_reader.so"));
    ProcessInput input{bus().childEnvironment()};
    input.environment.insert(decoder.variables(QString()));
    for (const QStringList &command : {QStringList{"usb"}, QStringList{"watch", "--road", "usb"}})
        EXPECT_EQ(runTool(command + QStringList{"--device", "1209:0001", "--timeout", "1"}, input)
                      .exitStatus,
                  11);
}

} // namespace
