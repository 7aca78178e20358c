// Card after card, for the program that watches and for nobody else.

#include <csignal>

#include <gmock/gmock.h>

#include <QDBusArgument>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include "tests/service/service_process.h"
#include "tests/support/files.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

class ServiceWatching : public ServiceTest
{
protected:
    ServiceWatching() { m_client.listen(); }

    void startWatching(const QStringList &parts = {})
    {
        const QDBusMessage answer = m_client.ask("StartWatching", {parts});
        ASSERT_EQ(answer.type(), QDBusMessage::ReplyMessage) << messageOf(answer);
    }

    /** The signals about reader and cards so far. */
    std::vector<std::string> names() const
    {
        std::vector<std::string> names;
        for (const QDBusMessage &signal : m_client.signalsOfService()) {
            if (signal.interface() == IDCARD_SERVICE_NAME)
                names.push_back(signal.member().toStdString());
        }
        return names;
    }

    /** The states that the service has announced so far. */
    std::vector<std::string> states() const
    {
        std::vector<std::string> states;
        for (const QDBusMessage &signal : m_client.signalsOfService()) {
            const auto changed = qdbus_cast<QVariantMap>(signal.arguments().value(1));
            if (changed.contains("State"))
                states.push_back(changed.value("State").toString().toStdString());
        }
        return states;
    }

    bool endsWith(const std::string &name)
    {
        return waitFor([&] { return !names().empty() && names().back() == name; });
    }

    /** The JSON of the last signal of this name. */
    QByteArray jsonOf(const char *name) const
    {
        QByteArray json;
        for (const QDBusMessage &signal : m_client.signalsOfService()) {
            if (signal.member() == QLatin1String(name))
                json = signal.arguments().value(0).toString().toUtf8();
        }
        return json;
    }
};

class BrokenWatching : public ServiceWatching, public testing::WithParamInterface<const char *>
{
};

/** Goes on until it is ended. */
constexpr const char *UNTIL_ENDED = "\nwhile :; do sleep 0.05; done";

} // namespace

TEST_F(ServiceWatching, CardOfTheSimulator_ComesAndGoes)
{
    serveCard();
    startWatching({"photo"});
    ASSERT_TRUE(endsWith("CardRemoved"));
    EXPECT_THAT(names(), ElementsAre("ReaderAdded", "CardRead", "CardRemoved"));
    const QJsonObject event = QJsonDocument::fromJson(jsonOf("CardRead")).object();
    const QJsonObject card = event.value("card").toObject();
    EXPECT_EQ(card.value("idNumber"), QJsonValue("990000199003074284"));
    EXPECT_FALSE(card.value("photo").toObject().value("data").toString().isEmpty());
    EXPECT_TRUE(becomes("idle")); // there is no other card
}

TEST_F(ServiceWatching, Lines_AreGivenByteForByteAsTheyCome)
{
    const QByteArray card = R"({"event": "card-read",  "x": "一\"2"})";
    serveScript("printf '%s' '" + card.left(12) + "'; sleep 0.1; printf '%s\\n%s' '" +
                card.mid(12) + R"(' '{"event": "reader-removed"}'; sleep 0.1; echo)" + UNTIL_ENDED);
    startWatching();
    ASSERT_TRUE(endsWith("ReaderRemoved"));
    EXPECT_THAT(names(), ElementsAre("CardRead", "ReaderRemoved"));
    EXPECT_EQ(jsonOf("CardRead").toStdString(), card.toStdString());
    EXPECT_EQ(m_client.state(), "watching");
}

TEST_F(ServiceWatching, Arguments_AreThoseOfTheCall)
{
    serveScript(QByteArray("echo \"$@\" >new; mv new arguments") + UNTIL_ENDED);
    startWatching({"photo", "fingerprints"});
    ASSERT_TRUE(waitFor([this] { return QFile::exists(path("arguments")); }));
    EXPECT_EQ(readFile(path("arguments")),
              "watch --events --json --timeout 20 --inline photo,fingerprints\n");
}

TEST_F(ServiceWatching, OtherProgramsOnTheBus_GetNothingOfTheCard)
{
    serveCard();
    BusClient other(m_bus.address());
    other.listen();
    startWatching();
    ASSERT_TRUE(endsWith("CardRemoved"));
    ASSERT_TRUE(becomes("idle"));
    ASSERT_TRUE(waitFor([&] { return other.signalsOfService().size() >= 2; }));
    for (const QDBusMessage &signal : other.signalsOfService())
        EXPECT_EQ(signal.member(), "PropertiesChanged");
}

TEST_F(ServiceWatching, Watching_KeepsOthersAndTheSameFromReading)
{
    serveScript(UNTIL_ENDED);
    startWatching();
    BusClient other(m_bus.address());
    EXPECT_EQ(errorOf(other.read()), "Busy");
    EXPECT_EQ(errorOf(other.ask("StartWatching", {QStringList()})), "Busy");
    EXPECT_EQ(errorOf(other.ask("StopWatching")), "Busy");
    EXPECT_EQ(errorOf(m_client.read()), "Busy");
    EXPECT_EQ(m_client.state(), "watching");
}

TEST_F(ServiceWatching, Stop_FreesTheReader)
{
    serveScript(UNTIL_ENDED);
    for (int i = 0; i < 3; ++i) {
        startWatching();
        EXPECT_EQ(errorOf(m_client.ask("StopWatching")), "");
        EXPECT_EQ(m_client.state(), "idle");
    }
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(ServiceWatching, ClientThatLeaves_FreesTheReader)
{
    serveScript(UNTIL_ENDED);
    BusClient other(m_bus.address());
    other.ask("StartWatching", {QStringList()});
    ASSERT_EQ(m_client.state(), "watching");
    other.leave();
    EXPECT_TRUE(becomes("idle"));
}

TEST_F(ServiceWatching, EndOfTheService_IsAnnouncedWhileItHasItsName)
{
    serveScript(UNTIL_ENDED);
    startWatching();
    m_service->signal(SIGTERM);
    EXPECT_TRUE(waitFor([this] { return states().size() == 2; }));
    EXPECT_THAT(states(), ElementsAre("watching", "idle"));
    expectEnd(m_service->result(), 0);
}

TEST_F(ServiceWatching, PartsThatThereAreNot_AreRefused)
{
    serveCard();
    EXPECT_EQ(errorOf(m_client.ask("StartWatching", {QStringList("all")})), "InvalidArgument");
    EXPECT_EQ(m_client.state(), "idle");
}

TEST_F(ServiceWatching, FailureBeforeTheBeginning_IsGivenAsItIs)
{
    serveCard({"--fault", "nonsense"});
    startWatching();
    ASSERT_TRUE(endsWith("ReadFailed"));
    EXPECT_THAT(jsonOf("ReadFailed").toStdString(), HasSubstr("TOOL_SIMULATION_REFUSED"));
    EXPECT_TRUE(becomes("idle"));
}

TEST_P(BrokenWatching, Watching_EndsWithTheFailure)
{
    serveScript(GetParam());
    startWatching();
    ASSERT_TRUE(endsWith("ReadFailed"));
    EXPECT_THAT(jsonOf("ReadFailed").toStdString(), HasSubstr("TOOL_PROGRAM_BROKEN"));
    EXPECT_TRUE(becomes("idle"));
}

INSTANTIATE_TEST_SUITE_P(All, BrokenWatching,
                         testing::Values("kill -SEGV $$", "echo rubbish; while :; do :; done",
                                         "echo '{\"event\": \"new\"}'; while :; do :; done",
                                         "printf '{\"event\": \"card-read\", \"x\": \"\\000\"}\\n'",
                                         "yes | tr -d '\\n'"));
