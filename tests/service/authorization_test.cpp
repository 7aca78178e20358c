// Who may read on the bus of the system, where a stand-in for polkit decides.

#include <chrono>
#include <csignal>

#include <gmock/gmock.h>

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QFile>

#include "tests/service/service_process.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace
{

const QString POLKIT = "org.freedesktop.PolicyKit1";
const QString AUTHORITY = "/org/freedesktop/PolicyKit1/Authority";
const QString AUTHORITY_INTERFACE = "org.freedesktop.PolicyKit1.Authority";

constexpr const char *READ_CARD = IDCARD_SERVICE_DOMAIN ".read-card";
constexpr const char *READ_FINGERPRINTS = IDCARD_SERVICE_DOMAIN ".read-fingerprints";

/** Decides as a test says, and prints what it is asked. */
class PolkitStandIn
{
public:
    PolkitStandIn(const QString &bus, BusClient &client)
        : m_process("/usr/bin/python3",
                    {"-m", "dbusmock", "--system", POLKIT, AUTHORITY, AUTHORITY_INTERFACE},
                    environment(bus)),
          m_client(client)
    {
        EXPECT_TRUE(
            waitFor([&] { return client.bus().interface()->isServiceRegistered(POLKIT).value(); }));
    }

    /** Of these actions alone. */
    void allow(const QStringList &actions)
    {
        answer("(bba{ss})", "ret = (args[1] in '" + actions.join(' ') + "'.split(), False, {})");
    }

    /** `code`: Python that sets "ret". */
    void answer(const QString &signature, const QString &code)
    {
        ask("AddMethod",
            {AUTHORITY_INTERFACE, "CheckAuthorization", "(sa{sv})sa{ss}us", signature, code});
    }

    /** As when a rule, or which session is active at the machine, has changed. */
    void announceChange()
    {
        ask("EmitSignal", {AUTHORITY_INTERFACE, "Changed", "", QVariantList()});
    }

    void hang() { m_process.signal(SIGSTOP); }
    void goOn() { m_process.signal(SIGCONT); }

    /** The next question, as the stand-in prints it; empty when none comes. */
    std::string nextQuestion()
    {
        QByteArray line;
        do
            line = m_process.nextLine();
        while (!line.isEmpty() && !line.contains("CheckAuthorization"));
        return line.toStdString();
    }

private:
    static ProcessInput environment(const QString &bus)
    {
        ProcessInput input;
        input.environment = {{"DBUS_SYSTEM_BUS_ADDRESS", bus}, {"PYTHONUNBUFFERED", "1"}};
        return input;
    }

    void ask(const char *method, const QVariantList &arguments)
    {
        QDBusMessage call =
            QDBusMessage::createMethodCall(POLKIT, AUTHORITY, "org.freedesktop.DBus.Mock", method);
        call.setArguments(arguments);
        EXPECT_EQ(messageOf(m_client.bus().call(call)), "");
    }

    RunningProcess m_process;
    BusClient &m_client;
};

class ServiceAuthorization : public ServiceTest
{
protected:
    /** The tool notes that it is started, then reads a card of the simulator. */
    void SetUp() override { serveScript(QByteArray("touch started\n") + READ, {}); }

    static constexpr const char *READ =
        "exec " IDCARD_BUILD_BIN_DIR "/idcard-reader \"$@\" --simulate resident";

    bool isToolStarted() const { return QFile::exists(path("started")); }

    PolkitStandIn m_polkit{m_bus.address(), m_client};
};

class SlowReader : public ServiceAuthorization
{
protected:
    void SetUp() override { serveScript(QByteArray(READ) + " --fault delay-ms=60000", {}); }
};

/** A tool that goes on until it is ended. */
class AuthorizedWatching : public ServiceAuthorization
{
protected:
    void SetUp() override { serveScript("while :; do sleep 0.05; done", {}); }

    void startWatching(const QStringList &parts = {})
    {
        EXPECT_EQ(errorOf(m_client.ask("StartWatching", {parts})), "");
        EXPECT_EQ(m_client.state(), "watching");
    }
};

using ServiceWithoutPolkit = ServiceTest;

/** The error of a call that is refused for want of authorization, and at once. */
void expectRefused(const QDBusMessage &answer, const char *action)
{
    EXPECT_EQ(errorOf(answer), "NotAuthorized");
    EXPECT_THAT(messageOf(answer), HasSubstr(std::string("the action ") + action + " "));
}

} // namespace

TEST_F(ServiceAuthorization, Question_NamesTheProgramAndTheActionAlone)
{
    m_polkit.allow({});
    m_client.read();
    const std::string question = m_polkit.nextQuestion();
    EXPECT_THAT(question, HasSubstr("system-bus-name"));
    EXPECT_THAT(question, HasSubstr(m_client.name().toStdString()));
    EXPECT_THAT(question, HasSubstr(READ_CARD));
}

TEST_F(ServiceAuthorization, ProgramThatMayNotReadCards_IsRefusedAndNothingIsRead)
{
    m_polkit.allow({READ_FINGERPRINTS});
    expectRefused(m_client.read(), READ_CARD);
    expectRefused(m_client.read({"fingerprints"}), READ_CARD);
    expectRefused(m_client.ask("StartWatching", {QStringList()}), READ_CARD);
    EXPECT_FALSE(isToolStarted());
    EXPECT_EQ(m_client.state(), "idle");
}

TEST_F(ServiceAuthorization, ProgramThatMayNotReadFingerprints_GetsTheCardWithoutThem)
{
    m_polkit.allow({READ_CARD});
    expectRefused(m_client.read({"photo", "fingerprints"}), READ_FINGERPRINTS);
    expectRefused(m_client.ask("StartWatching", {QStringList("fingerprints")}), READ_FINGERPRINTS);
    EXPECT_FALSE(isToolStarted());
    textOf(m_client.read({"photo"}));
}

TEST_F(ServiceAuthorization, ProgramThatMayReadFingerprints_GetsThem)
{
    m_polkit.allow({READ_CARD, READ_FINGERPRINTS});
    EXPECT_THAT(textOf(m_client.read({"fingerprints"})),
                testing::ContainsRegex("\"fingerprints\": [{]\n *\"count\": 2,\n *\"data\": \""));
}

TEST_F(ServiceAuthorization, AnswerThatIsNone_IsARefusal)
{
    for (const char *signature : {"b", "(b)"}) {
        m_polkit.answer(QLatin1String(signature),
                        signature[0] == 'b' ? "ret = True" : "ret = (True,)");
        expectRefused(m_client.read(), READ_CARD);
    }
    m_polkit.answer("b", "raise dbus.exceptions.DBusException('no such user', name='a.b')");
    const QDBusMessage answer = m_client.read();
    expectRefused(answer, READ_CARD);
    EXPECT_THAT(messageOf(answer), HasSubstr("(no such user)"));
}

TEST_F(ServiceAuthorization, WhatNeedsNoAuthorization_AsksNobody)
{
    m_polkit.hang();
    EXPECT_EQ(m_client.state(), "idle");
    EXPECT_EQ(errorOf(m_client.ask("Cancel")), "");
    EXPECT_EQ(errorOf(m_client.ask("StopWatching")), "");
    EXPECT_EQ(errorOf(m_client.ask("DescribeError", {"USB_READER_NO_DATA", "en"})), "");
    EXPECT_EQ(errorOf(m_client.read({"everything"})), "InvalidArgument");
    m_polkit.goOn();
}

TEST_F(ServiceAuthorization, LateDecision_KeepsNobodyElseWaiting)
{
    m_polkit.allow({READ_CARD});
    m_polkit.hang();
    const QDBusPendingCall reading = m_client.beginRead();
    BusClient other(m_bus.address());
    EXPECT_EQ(other.state(), "idle");
    EXPECT_EQ(errorOf(other.ask("Cancel")), "");
    EXPECT_FALSE(reading.isFinished());
    m_polkit.goOn();
    EXPECT_EQ(errorAtTheEnd(reading), "");
}

TEST_F(ServiceAuthorization, NoDecision_IsARefusalAfterTwentySeconds)
{
    m_polkit.allow({READ_CARD});
    m_polkit.hang();
    const auto begin = std::chrono::steady_clock::now();
    expectRefused(m_client.read(), READ_CARD);
    const auto duration = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(duration, std::chrono::seconds(19));
    EXPECT_LT(duration, std::chrono::seconds(25));
    m_polkit.goOn();
    textOf(m_client.read());
}

TEST_F(ServiceAuthorization, CancelBeforeTheDecision_CancelsTheCall)
{
    m_polkit.allow({READ_CARD});
    m_polkit.hang();
    const QDBusPendingCall reading = m_client.beginRead();
    const QDBusPendingCall watching = m_client.begin("StartWatching", {QStringList()});
    EXPECT_EQ(errorOf(m_client.ask("Cancel")), "");
    EXPECT_EQ(errorAtTheEnd(reading), "Cancelled");
    EXPECT_EQ(errorAtTheEnd(watching), "Cancelled");
    m_polkit.goOn();
    textOf(m_client.read());
}

TEST_F(ServiceAuthorization, EndOfTheServiceBeforeTheDecision_CancelsTheCall)
{
    m_polkit.hang();
    const QDBusPendingCall reading = m_client.beginRead();
    EXPECT_EQ(m_client.state(), "idle"); // the call has come
    m_service->signal(SIGTERM);
    EXPECT_EQ(errorAtTheEnd(reading), "Cancelled");
    expectEnd(m_service->result(), 0);
    m_polkit.goOn();
}

TEST_F(ServiceAuthorization, CancelByAnotherBeforeTheDecision_DoesNothing)
{
    m_polkit.allow({READ_CARD});
    m_polkit.hang();
    const QDBusPendingCall reading = m_client.beginRead();
    BusClient other(m_bus.address());
    EXPECT_EQ(errorOf(other.ask("Cancel")), "");
    m_polkit.goOn();
    EXPECT_EQ(errorAtTheEnd(reading), "");
}

TEST_F(AuthorizedWatching, ProgramThatMayNoLonger_IsStopped)
{
    m_polkit.allow({READ_CARD});
    startWatching();
    m_polkit.allow({});
    m_polkit.announceChange();
    EXPECT_TRUE(becomes("idle"));
    expectRefused(m_client.ask("StartWatching", {QStringList()}), READ_CARD);
}

TEST_F(AuthorizedWatching, ProgramThatStillMay_GoesOn)
{
    m_polkit.allow({READ_CARD});
    startWatching();
    m_polkit.nextQuestion();
    m_polkit.announceChange();
    EXPECT_THAT(m_polkit.nextQuestion(), HasSubstr(m_client.name().toStdString()));
    EXPECT_EQ(m_client.state(), "watching");
    EXPECT_FALSE(waitFor([this] { return m_client.state() != "watching"; }, 1000));
}

TEST_F(AuthorizedWatching, LaterQuestion_ComesWithoutADialog)
{
    m_polkit.answer("(bba{ss})", "ret = (args[3] == 1, True, {})"); // if it may ask the user
    startWatching();
    m_polkit.announceChange();
    EXPECT_TRUE(becomes("idle"));
}

// The password that was given for the prints counts some minutes for the next program.
TEST_F(AuthorizedWatching, EndOfTheTimeForFingerprints_EndsNoWatch)
{
    m_polkit.allow({READ_CARD, READ_FINGERPRINTS});
    startWatching({"fingerprints"});
    m_polkit.allow({READ_CARD});
    m_polkit.announceChange();
    EXPECT_FALSE(waitFor([this] { return m_client.state() != "watching"; }, 1000));
}

TEST_F(SlowReader, TwoProgramsThatMayRead_AreNotServedAtOnce)
{
    m_polkit.allow({READ_CARD});
    m_polkit.hang();
    const QDBusPendingCall first = m_client.beginRead();
    BusClient other(m_bus.address());
    EXPECT_EQ(other.state(), "idle"); // the first call has come
    const QDBusPendingCall second = other.beginRead();
    m_polkit.goOn();
    EXPECT_EQ(errorAtTheEnd(second), "Busy");
    EXPECT_FALSE(first.isFinished());
}

TEST_F(SlowReader, ProgramThatLeavesBeforeTheDecision_KeepsNothingFromTheNext)
{
    m_polkit.allow({READ_CARD});
    m_polkit.hang();
    BusClient hasty(m_bus.address());
    hasty.beginRead();
    EXPECT_EQ(m_client.state(), "idle");
    hasty.leave();
    m_polkit.goOn();
    // Sooner than a reading of its would end by itself.
    EXPECT_TRUE(waitFor([&] { return errorOf(m_client.read({}, 1000)) == "TimedOut"; }, 15000));
}

TEST_F(SlowReader, BusyReader_IsSaidBeforeAnyoneIsAsked)
{
    m_polkit.allow({READ_CARD});
    const QDBusPendingCall reading = beginReading();
    m_polkit.hang();
    BusClient other(m_bus.address());
    EXPECT_EQ(errorOf(other.read()), "Busy");
    m_polkit.goOn();
}

TEST_F(ServiceWithoutPolkit, Programs_AreRefusedAtOnce)
{
    serveScript("exit", {});
    const auto begin = std::chrono::steady_clock::now();
    expectRefused(m_client.read(), READ_CARD);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}
