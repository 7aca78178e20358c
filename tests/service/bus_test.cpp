// The service as the bus sees it: its name, what it says of itself, its properties and its end.

#include <csignal>
#include <set>
#include <utility>

#include <gmock/gmock.h>

#include <QDBusArgument>
#include <QDBusVariant>
#include <QDir>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include "tests/service/service_process.h"
#include "tests/support/files.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

using Service = ServiceTest;

/** The interface without comments and the blanks between elements. */
std::string interfaceIn(QString text)
{
    text.remove(QRegularExpression("<!--.*?-->", QRegularExpression::DotMatchesEverythingOption));
    const QString begin = "<interface name=\"" IDCARD_SERVICE_NAME "\">";
    text = text.mid(text.indexOf(begin));
    text = text.left(text.indexOf("</interface>"));
    return text.simplified().toStdString();
}

/** Each method, signal and property with its types, and what is noted of it. */
std::set<std::string> membersIn(const QByteArray &text)
{
    std::set<std::string> members;
    std::string member;
    QXmlStreamReader xml(text);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString element = xml.name().toString();
        std::string words = element.toStdString();
        for (const QXmlStreamAttribute &attribute : xml.attributes())
            words += ' ' + attribute.value().toString().toStdString();
        if (element == "arg" || element == "annotation")
            member += ", " + words;
        else
            members.insert(std::exchange(member, words));
    }
    members.insert(member);
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return members;
}

} // namespace

TEST(ServiceInterface, MembersOfReleasedVersions_AreStillThere)
{
    const std::set<std::string> now = membersIn(readFile(IDCARD_SERVICE_INTERFACE));
    const QDir folder(IDCARD_SOURCE_DIR "/tests/service");
    const QStringList released = folder.entryList({"interface-*.xml"});
    EXPECT_FALSE(released.isEmpty());
    for (const QString &file : released) {
        for (const std::string &member : membersIn(readFile(folder.filePath(file))))
            EXPECT_EQ(now.count(member), 1U) << file.toStdString() << ": " << member;
    }
}

TEST_F(Service, Introspection_IsTheInstalledInterface)
{
    serveCard();
    const std::string installed =
        interfaceIn(QString::fromUtf8(readFile(IDCARD_SERVICE_INTERFACE)));
    EXPECT_THAT(installed, HasSubstr("<method name=\"ReadCard\">"));
    const QDBusMessage introspection =
        m_client.callInterface("org.freedesktop.DBus.Introspectable", "Introspect");
    EXPECT_EQ(interfaceIn(introspection.arguments().value(0).toString()), installed);
}

TEST_F(Service, Properties_AreTheVersionTheStateAndTheReader)
{
    serveCard();
    EXPECT_EQ("idcard-readerd " + m_client.property("Version").toString().toStdString() + "\n",
              runProcess("idcard-readerd", {"--version"}).output());
    EXPECT_EQ(m_client.state(), "idle");
    EXPECT_EQ(m_client.property("Reader"), QVariant("simulated"));
    EXPECT_FALSE(m_client.property("Card").isValid());
}

TEST_F(Service, Properties_CannotBeWritten)
{
    serveCard();
    const QDBusMessage answer = m_client.callInterface(
        "org.freedesktop.DBus.Properties", "Set",
        {IDCARD_SERVICE_NAME, "State", QVariant::fromValue(QDBusVariant("reading"))});
    EXPECT_EQ(errorOf(answer), "org.freedesktop.DBus.Error.PropertyReadOnly");
    EXPECT_EQ(m_client.state(), "idle");
}

TEST_F(Service, Reading_IsSeenInTheStateAndNothingOfTheCard)
{
    serveCard();
    BusClient other(m_bus.address());
    other.listen();
    textOf(m_client.read({"photo", "fingerprints"}));
    ASSERT_TRUE(waitFor([&] { return other.signalsOfService().size() == 2; }));
    std::vector<std::string> states;
    for (const QDBusMessage &signal : other.signalsOfService()) {
        EXPECT_EQ(signal.member(), "PropertiesChanged");
        const auto changed = qdbus_cast<QVariantMap>(signal.arguments().value(1));
        EXPECT_EQ(changed.keys(), QStringList("State"));
        states.push_back(changed.value("State").toString().toStdString());
    }
    EXPECT_THAT(states, ElementsAre("reading", "idle"));
}

TEST_F(Service, SecondServiceOnABus_SaysThatTheNameIsTaken)
{
    serveCard();
    expectEnd(runProcess("idcard-readerd", {"--session"}, onBus()), 1,
              "The name " IDCARD_SERVICE_NAME " cannot be had on the bus");
    EXPECT_EQ(m_client.state(), "idle");
}

TEST_F(Service, WithoutABus_SaysSo)
{
    const ProcessInput nowhere{{{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere"}}};
    expectEnd(runProcess("idcard-readerd", {"--session"}, nowhere), 1, "The bus cannot be reached");
}

TEST_F(Service, SignalToEnd_EndsIt)
{
    serveCard();
    m_service->signal(SIGTERM);
    expectEnd(m_service->result(), 0);
}

TEST_F(Service, SignalToEndDuringAReading_CancelsItAndEndsTheService)
{
    serveCard({"--fault", "delay-ms=60000"});
    const QDBusPendingCall reading = beginReading();
    m_service->signal(SIGTERM);
    EXPECT_EQ(errorAtTheEnd(reading), "Cancelled");
    expectEnd(m_service->result(), 0);
}

TEST_F(Service, EndOfTheBus_EndsTheService)
{
    serveCard();
    m_client.leave();
    m_bus.end();
    expectEnd(m_service->result(), 0);
}
