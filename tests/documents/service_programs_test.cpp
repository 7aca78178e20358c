// The programs of docs/service.md, as they stand there.

#include <csignal>

#include <gmock/gmock.h>

#include "tests/service/service_process.h"
#include "tests/support/files.h"

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr const char *NUMBER = "990000199003074284";

QString programFile(const char *name)
{
    return IDCARD_PROGRAMS_DIR "/" + QLatin1String(name);
}

struct Language {
    const char *name;
    QStringList command;
    const char *printed; ///< a regular expression
};

void PrintTo(const Language &language, std::ostream *stream)
{
    *stream << language.name;
}

const Language PYTHON = {"Python",
                         {"/usr/bin/python3", "-B", programFile("read_card_over_dbus.py")},
                         "^林晓雨, 990000199003074284\n$"};
const Language C = {"C", {programFile("read_card_over_dbus")}, NUMBER};
const Language JAVA = {
    "Java",
    {IDCARD_JAVA, "-cp", "/usr/share/java/dbus.jar", programFile("ReadCardOverDbus.java")},
    NUMBER};

class ServicePrograms : public ServiceTest
{
protected:
    ProcessResult run(const QStringList &command) const
    {
        return runProcess(command.first(), command.mid(1), onBus());
    }
};

class ServiceLanguages : public ServicePrograms, public testing::WithParamInterface<Language>
{
};

} // namespace

TEST_F(ServicePrograms, Busctl_ReadsTheNumber)
{
    serveCard();
    const ProcessResult end = run({"/bin/sh", programFile("read-number-with-busctl.sh")});
    expectEnd(end, 0);
    EXPECT_EQ(end.output(), std::string(NUMBER) + '\n');
}

TEST_F(ServicePrograms, Gdbus_ReadsTheCardWithItsPhoto)
{
    serveCard();
    const ProcessResult end = run({"/bin/sh", programFile("read-card-with-gdbus.sh")});
    expectEnd(end, 0);
    EXPECT_THAT(end.output(), HasSubstr(NUMBER));
    EXPECT_THAT(end.output(), HasSubstr("\"data\": \"Qk"));
}

TEST_P(ServiceLanguages, Program_ReadsTheCard)
{
    serveCard();
    const ProcessResult end = run(GetParam().command);
    expectEnd(end, 0);
    EXPECT_THAT(end.output(), ContainsRegex(GetParam().printed));
}

TEST_P(ServiceLanguages, ProgramWithoutACard_SaysWhy)
{
    serveCard({"--fault", "no-card"});
    const ProcessResult end = run(GetParam().command);
    EXPECT_EQ(end.exitStatus, 1);
    EXPECT_THAT(end.error(),
                ContainsRegex("^" IDCARD_SERVICE_DOMAIN
                              ".Error.NoCard\n(GDBus[^ ]+ )?No card was found on the reader.\n"));
    EXPECT_THAT(end.output(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(All, ServiceLanguages, testing::Values(PYTHON, C, JAVA),
                         [](const auto &test) { return std::string(test.param.name); });

TEST_F(ServicePrograms, PythonThatWatches_PrintsEachCardUntilTheEnd)
{
    serveCard();
    const ProcessResult end =
        run({"/usr/bin/python3", "-B", programFile("watch_cards_over_dbus.py")});
    expectEnd(end, 0);
    EXPECT_EQ(end.output(), std::string(NUMBER) + '\n');
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
