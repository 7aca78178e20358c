// What is installed beside the service: the bus's policy, polkit's actions and systemd's unit.

#include <map>

#include <gmock/gmock.h>

#include <QRegularExpression>
#include <QXmlStreamReader>

#include "tests/service/service_process.h"
#include "tests/support/files.h"

using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;

namespace
{

QString installed(const QString &name)
{
    return QString::fromUtf8(readFile(IDCARD_SERVICE_FILES "/" + name));
}

class BusOfTheSystem : public ServiceTest
{
protected:
    BusOfTheSystem() : ServiceTest(systemPolicy()) {}
};

using OpenBus = ServiceTest;

/** Prints all that a program gets which asks the bus for everything. */
class Eavesdropper : public RunningProcess
{
public:
    explicit Eavesdropper(const QString &bus)
        : RunningProcess("/usr/bin/python3", {"-u", "-c", PROGRAM, bus})
    {
        EXPECT_EQ(nextLine(), "listening");
    }

private:
    static constexpr const char *PROGRAM = R"(
import sys
import dbus.bus
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

bus = dbus.bus.BusConnection(sys.argv[1], mainloop=DBusGMainLoop())
bus.add_message_filter(lambda _, message: print(message.get_args_list()))
for rule in ("eavesdrop='true'", "type='signal'", "type='method_call'", "type='method_return'"):
    bus.add_match_string(rule)
bus.get_name_owner("org.freedesktop.DBus")
print("listening")
GLib.timeout_add(3000, lambda: print("enough"))
GLib.MainLoop().run()
)";
};

std::string heardBy(Eavesdropper &eavesdropper)
{
    std::string heard;
    for (QByteArray line = eavesdropper.nextLine(); line != "enough" && !line.isEmpty();
         line = eavesdropper.nextLine())
        heard += line.toStdString() + '\n';
    return heard;
}

constexpr const char *MARK = "990000199003074284";

struct Action {
    std::map<std::string, std::string> defaults;
    std::map<std::string, int> texts; ///< by language
    std::string owner;
};

std::map<std::string, Action> actionsIn(const QString &text)
{
    std::map<std::string, Action> actions;
    std::string id;
    QXmlStreamReader xml(text);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const std::string name = xml.name().toString().toStdString();
        const auto value = [&xml](const char *attribute) {
            return xml.attributes().value(QLatin1String(attribute)).toString().toStdString();
        };
        if (name == "action")
            id = value("id");
        else if (name == "description" || name == "message")
            ++actions[id].texts[value("xml:lang")];
        else if (name == "annotate" && value("key") == "org.freedesktop.policykit.owner")
            actions[id].owner = xml.readElementText().toStdString();
        else if (name.rfind("allow_", 0) == 0)
            actions[id].defaults[name] = xml.readElementText().toStdString();
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return actions;
}

} // namespace

TEST_F(BusOfTheSystem, ProgramThatListens_HearsNothingOfTheCard)
{
    serveCard();
    Eavesdropper eavesdropper(m_bus.address());
    textOf(m_client.read({"fingerprints"}));
    m_client.ask("StartWatching", {QStringList()});
    EXPECT_TRUE(becomes("idle"));
    const std::string heard = heardBy(eavesdropper);
    EXPECT_THAT(heard, HasSubstr("watching")); // of State
    EXPECT_THAT(heard, Not(HasSubstr(MARK)));
    EXPECT_THAT(heard, Not(HasSubstr("dbus.Byte"))); // nor what the service sends to itself
}

TEST_F(OpenBus, ProgramThatListens_WouldHearTheCard)
{
    serveCard();
    Eavesdropper eavesdropper(m_bus.address());
    textOf(m_client.read());
    const std::string heard = heardBy(eavesdropper);
    EXPECT_THAT(heard, HasSubstr(MARK));
    EXPECT_THAT(heard, HasSubstr("dbus.Byte"));
}

TEST(ServiceActions, Cards_AreForTheActiveSessionAndFingerprintsForAdministrators)
{
    const auto actions = actionsIn(installed(IDCARD_SERVICE_DOMAIN ".policy"));
    ASSERT_EQ(actions.size(), 2U);
    const auto expectDefaults = [&](const char *id, const char *active) {
        EXPECT_THAT(actions.at(id).defaults,
                    ElementsAre(Pair("allow_active", active), Pair("allow_any", "no"),
                                Pair("allow_inactive", "no")));
        EXPECT_THAT(actions.at(id).texts, ElementsAre(Pair("", 2), Pair("zh_CN", 2)));
        // polkit answers questions about others to root and to this user alone.
        EXPECT_EQ(actions.at(id).owner, "unix-user:idcard-readerd");
    };
    expectDefaults(IDCARD_SERVICE_DOMAIN ".read-card", "yes");
    expectDefaults(IDCARD_SERVICE_DOMAIN ".read-fingerprints", "auth_admin_keep");
}

TEST(ServiceUnit, Exposure_IsLow)
{
    constexpr double HIGHEST = 1.0;
    const ProcessResult run =
        runProcess(IDCARD_SYSTEMD_ANALYZE, {"security", "--offline=true", "--no-pager",
                                            IDCARD_SERVICE_FILES "/idcard-readerd.service"});
    if (run.error().find("unrecognized option") != std::string::npos) {
        GTEST_SKIP() << "Left out: this systemd-analyze cannot judge a unit that does not run";
    }
    const QRegularExpression level("exposure level for .*: ([0-9.]+) ");
    const QRegularExpressionMatch found = level.match(QString::fromUtf8(run.standardOutput));
    ASSERT_TRUE(found.hasMatch()) << run.output() << run.error();
    EXPECT_LE(found.captured(1).toDouble(), HIGHEST) << run.output();
}

TEST(ServiceFiles, Activation_LeadsToTheUnitOfTheName)
{
    const std::string activation = installed(IDCARD_SERVICE_NAME ".service").toStdString();
    EXPECT_THAT(activation, HasSubstr("\nName=" IDCARD_SERVICE_NAME "\n"));
    EXPECT_THAT(activation, HasSubstr("\nSystemdService=idcard-readerd.service\n"));
    const std::string unit = installed("idcard-readerd.service").toStdString();
    EXPECT_THAT(unit, HasSubstr("\nBusName=" IDCARD_SERVICE_NAME "\n"));
    for (const std::string &file : {activation, unit})
        EXPECT_THAT(file, ContainsRegex("\nUser=idcard-readerd\n"));
    EXPECT_THAT(installed("idcard-readerd.conf").toStdString(), HasSubstr("\nu idcard-readerd "));
}
