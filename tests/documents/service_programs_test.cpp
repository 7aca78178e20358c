// The programs of docs/service.md, as they stand there.

#include <csignal>

#include <gmock/gmock.h>

#include "tests/service/service_process.h"
#include "tests/support/files.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace
{

constexpr const char *NUMBER = "990000199003074284";

QString programFile(const char *name)
{
    return QStringLiteral(IDCARD_PROGRAMS_DIR "/") + QLatin1String(name);
}

class ServicePrograms : public ServiceTest
{
protected:
    /** Runs a program, for which the bus of the test is that of the system. */
    ProcessResult runOnBus(const QString &program, const QStringList &arguments = {})
    {
        return runProcess(program, arguments, onBus());
    }
    ProcessInput onBus() const
    {
        ProcessInput input;
        input.environment = {{"DBUS_SYSTEM_BUS_ADDRESS", m_bus.address()}};
        return input;
    }
    ProcessResult runShell(const char *name) { return runOnBus("/bin/sh", {programFile(name)}); }
    ProcessResult runJava(const char *name)
    {
        return runOnBus(IDCARD_JAVA, {"-cp", "/usr/share/java/dbus.jar", programFile(name)});
    }
    ProcessResult runPython(const char *name)
    {
        return runOnBus("/usr/bin/python3", {"-B", programFile(name)});
    }
};

} // namespace

TEST_F(ServicePrograms, Busctl_ReadsTheNumber)
{
    serveCard();
    const ProcessResult run = runShell("read-number-with-busctl.sh");
    expectEnd(run, 0);
    EXPECT_EQ(run.output(), std::string(NUMBER) + '\n');
}

TEST_F(ServicePrograms, Gdbus_ReadsTheCardWithItsPhoto)
{
    serveCard();
    const ProcessResult run = runShell("read-card-with-gdbus.sh");
    expectEnd(run, 0);
    EXPECT_THAT(run.output(), HasSubstr(NUMBER));
    EXPECT_THAT(run.output(), HasSubstr("\"data\": \"Qk"));
}

TEST_F(ServicePrograms, Python_ReadsTheCard)
{
    serveCard();
    const ProcessResult run = runPython("read_card_over_dbus.py");
    expectEnd(run, 0);
    EXPECT_EQ(run.output(), "林晓雨, " + std::string(NUMBER) + '\n');
}

TEST_F(ServicePrograms, PythonWithoutACard_SaysWhy)
{
    serveCard({"--fault", "no-card"});
    const ProcessResult run = runPython("read_card_over_dbus.py");
    expectEnd(run, 1, "No card was found on the reader.\n");
    EXPECT_THAT(run.error(), StartsWith(IDCARD_SERVICE_DOMAIN ".Error.NoCard\n"));
}

TEST_F(ServicePrograms, C_ReadsTheCard)
{
    serveCard();
    const ProcessResult run = runOnBus(programFile("read_card_over_dbus"));
    expectEnd(run, 0);
    EXPECT_THAT(run.output(), HasSubstr(NUMBER));
}

TEST_F(ServicePrograms, CWithoutACard_SaysWhy)
{
    serveCard({"--fault", "no-card"});
    const ProcessResult run = runOnBus(programFile("read_card_over_dbus"));
    expectEnd(run, 1, IDCARD_SERVICE_DOMAIN ".Error.NoCard\nNo card was found on the reader.\n");
    EXPECT_THAT(run.output(), IsEmpty());
}

TEST_F(ServicePrograms, Java_ReadsTheCard)
{
    serveCard();
    const ProcessResult run = runJava("ReadCardOverDbus.java");
    expectEnd(run, 0);
    EXPECT_THAT(run.output(), HasSubstr(NUMBER));
}

TEST_F(ServicePrograms, JavaWithoutACard_SaysWhy)
{
    serveCard({"--fault", "no-card"});
    const ProcessResult run = runJava("ReadCardOverDbus.java");
    expectEnd(run, 1, IDCARD_SERVICE_DOMAIN ".Error.NoCard\nNo card was found on the reader.\n");
    EXPECT_THAT(run.output(), IsEmpty());
}

TEST_F(ServicePrograms, PythonThatWatches_PrintsEachCardUntilTheEnd)
{
    serveCard();
    const ProcessResult run = runPython("watch_cards_over_dbus.py");
    expectEnd(run, 0);
    EXPECT_EQ(run.output(), std::string(NUMBER) + '\n');
}

TEST_F(ServicePrograms, PythonThatWatches_EndsWithTheService)
{
    for (const int signal : {SIGTERM, SIGKILL}) {
        m_service.reset();
        serveCard({"--fault", "delay-ms=60000"});
        RunningProcess watching("/usr/bin/python3", {"-B", programFile("watch_cards_over_dbus.py")},
                                onBus());
        ASSERT_TRUE(becomes("watching"));
        m_service->signal(signal);
        EXPECT_TRUE(watching.endsWithin(20000)) << signal;
        expectEnd(watching.result(), 0);
    }
}

TEST(ServicePage, RulesForAKiosk_AreTheInstalledOnes)
{
    for (const char *page : {"docs/service.md", "docs/service.zh-CN.md"}) {
        const std::string text = sourceText(QLatin1String(page)).toStdString();
        EXPECT_THAT(text, HasSubstr("```js\n" + readFile(IDCARD_KIOSK_RULE ".rules").toStdString() +
                                    "```\n"));
        EXPECT_THAT(text, HasSubstr("```ini\n" + readFile(IDCARD_KIOSK_RULE ".pkla").toStdString() +
                                    "```\n"));
    }
}
