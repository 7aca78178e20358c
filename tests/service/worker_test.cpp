// A worker that does not do what idcard-reader does.

#include <chrono>
#include <csignal>

#include <gmock/gmock.h>

#include <QFile>

#include "tests/service/service_process.h"
#include "tests/support/files.h"
#include "tests/support/ignored_signal.h"

namespace
{

struct WorkerRow {
    const char *name;
    const char *script;
};

using ServiceWorker = ServiceTest;

class BrokenWorker : public ServiceTest, public testing::WithParamInterface<WorkerRow>
{
};

} // namespace

TEST_P(BrokenWorker, Reading_FailsInItsTimeAndTheNextOneIsServed)
{
    serveScript(QByteArray("test -e again && echo '{\"kind\": \"resident\"}' && exit\n"
                           "touch again\n") +
                GetParam().script);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(errorOf(m_client.read({}, 4000)), "WorkerFailed"); // time for the shell to start
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(15));
    EXPECT_EQ(textOf(m_client.read()), "{\"kind\": \"resident\"}\n");
}

INSTANTIATE_TEST_SUITE_P(
    All, BrokenWorker,
    testing::Values(
        WorkerRow{"Crashes", "kill -SEGV $$"},
        WorkerRow{"CrashesAfterTheCard", "echo '{\"kind\": \"hmt\"}'; kill -SEGV $$"},
        WorkerRow{"Loops", "trap '' TERM; while :; do :; done"},
        WorkerRow{"PrintsNothing", "exit 0"}, WorkerRow{"PrintsRubbish", "echo rubbish"},
        WorkerRow{"PrintsHalfACard", "echo '{\"kind\": \"resid'"},
        WorkerRow{"PrintsZeros", "printf '{\"kind\": \"a\\000b\"}'"},
        WorkerRow{"PrintsWhatIsNoText", "printf '{\"kind\": \"\\377\"}'"},
        WorkerRow{"PrintsAnUnknownError", "echo '{\"error\": {\"name\": \"X\"}}'"},
        WorkerRow{"PrintsAnArray", "echo '[]'"}, WorkerRow{"PrintsWithoutEnd", "exec yes"},
        WorkerRow{"ClosesItsDescriptors", "exec >&- 2>&- <&-; trap '' TERM; while :; do :; done"}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(ServiceWorker, MessagesWithoutEnd_AreDroppedUntilTimeIsOver)
{
    serveScript("exec yes >&2");
    EXPECT_EQ(errorOf(m_client.read({}, 1000)), "TimedOut");
    EXPECT_TRUE(becomes("idle"));
}

TEST_F(ServiceWorker, ProgramThatIsNotThere_IsAFailure)
{
    serveScript("exit");
    QFile::remove(path("idcard-reader"));
    EXPECT_EQ(errorOf(m_client.read()), "WorkerFailed");
    EXPECT_TRUE(becomes("idle"));
}

// Else the system would forget how it ended.
TEST_F(ServiceWorker, EndWhereTheServiceInheritsSigchldIgnored_IsNotIgnored)
{
    if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
        GTEST_SKIP() << "the signals seen would be those of the emulator";
    const auto handler = std::signal(SIGCHLD, SIG_IGN);
    serveCard();
    std::signal(SIGCHLD, handler);
    EXPECT_FALSE(isIgnored(SIGCHLD, m_service->id()));
}

TEST_F(ServiceWorker, Arguments_AreThoseOfTheCall)
{
    serveScript("echo \"$@\" >arguments; echo '{\"kind\": \"resident\"}'");
    textOf(m_client.read({"pictures", "photo"}, 1001));
    EXPECT_EQ(readFile(path("arguments")), "read --json --timeout 2 --inline pictures,photo\n");
}

TEST_F(ServiceWorker, EndOfTheService_EndsTheWorker)
{
    serveScript("echo $$ >id.new; mv id.new id; while :; do sleep 0.1; done");
    m_client.beginRead();
    ASSERT_TRUE(waitFor([this] { return QFile::exists(path("id")); }));
    const pid_t worker = readFile(path("id")).trimmed().toInt();
    ASSERT_TRUE(isRunning(worker));
    m_service.reset(); // by SIGKILL
    EXPECT_TRUE(waitFor([worker] { return !isRunning(worker); }));
}
