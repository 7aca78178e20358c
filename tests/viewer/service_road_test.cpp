// Cards that the window has read by the D-Bus service, on a bus of the test's own.

#include <csignal>

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <QTest>

#include "apps/card/card_output.h"
#include "apps/viewer/card_desk.h"
#include "tests/service/bus_client.h"
#include "tests/service/private_bus.h"

namespace
{

const QString NAME = IDCARD_SERVICE_NAME;

class ServiceRoad : public testing::Test
{
protected:
    ServiceRoad()
    {
        app::RoadChoice choice;
        choice.road = app::ReaderRoad::SERVICE;
        m_desk.setRoad(choice);
        QObject::connect(&m_desk, &app::CardDesk::cardRead, &m_desk,
                         [this](const app::CardPointer &card, const app::Problem &problem) {
                             m_card = card;
                             m_problem = problem;
                         });
        QObject::connect(&m_desk, &app::CardDesk::failed, &m_desk,
                         [this](const app::Problem &problem) { m_problem = problem; });
    }

    ~ServiceRoad() override
    {
        m_service.reset();
        EXPECT_TRUE(QTest::qWaitFor([] { return !isServed(); }));
    }

    static bool isServed()
    {
        return QDBusConnection::systemBus().interface()->isServiceRegistered(NAME);
    }

    void serve(const QStringList &arguments = {})
    {
        const ProcessInput input{
            {{"DBUS_SESSION_BUS_ADDRESS", busInPlaceOfTheSystems().address()}}};
        m_service = std::make_unique<RunningProcess>(
            "idcard-readerd", QStringList{"--session", "--simulate", "resident"} + arguments,
            input);
        ASSERT_TRUE(QTest::qWaitFor(isServed));
    }

    /** Reads, and waits for what comes of it. */
    void read()
    {
        m_card.reset();
        m_problem = {};
        m_desk.read();
        EXPECT_TRUE(QTest::qWaitFor([this] { return !m_desk.isReading(); }, 20000));
    }

    QString name() const { return m_card ? app::holderName(*m_card) : QString(); }

    std::unique_ptr<RunningProcess> m_service;
    BusClient m_otherProgram{busInPlaceOfTheSystems().address()};
    app::CardDesk m_desk;
    app::CardPointer m_card;
    app::Problem m_problem;
};

TEST_F(ServiceRoad, Card_IsReadWithPhotoAndPicturesAndWithoutFingerprints)
{
    serve();
    read();
    ASSERT_NE(m_card, nullptr) << m_problem.headline.toStdString();
    EXPECT_EQ(name(), "林晓雨");
    EXPECT_FALSE(m_card->photo().isNull());
    EXPECT_FALSE(m_card->picture(app::CardSide::FRONT).isNull());
    EXPECT_FALSE(m_card->picture(app::CardSide::BACK).isNull());
    EXPECT_TRUE(m_card->fingerprints().isNull());
    EXPECT_EQ(m_problem.headline, QString());
}

TEST_F(ServiceRoad, Failure_HasTheServicesWordsInTheLanguageThatIsChosen)
{
    serve({"--fault", "no-card"});
    m_desk.setLanguage("zh_CN");
    read();
    EXPECT_EQ(m_card, nullptr);
    EXPECT_EQ(m_problem.name, IDCARD_SERVICE_DOMAIN ".Error.NoCard");
    EXPECT_TRUE(m_problem.headline.contains(QChar(0x8BC1))) << m_problem.headline.toStdString();
    EXPECT_NE(m_problem.remedy, QString());
}

TEST_F(ServiceRoad, ReadingThatIsCancelled_LeavesTheReaderToTheNextOne)
{
    serve({"--fault", "delay-ms=60000"});
    QSignalSpy cancelled(&m_desk, &app::CardDesk::cancelled);
    m_desk.read();
    QTest::qWait(300);
    m_desk.cancel();
    EXPECT_EQ(cancelled.count(), 1);
    m_desk.read(); // is refused as long as the reader is taken
    QTest::qWait(4000);
    EXPECT_TRUE(m_desk.isReading());
    EXPECT_EQ(m_problem.headline, QString());
    m_desk.cancel();
}

TEST_F(ServiceRoad, EachNewCard_IsReadAsTheServiceReportsIt)
{
    serve();
    QSignalSpy removed(&m_desk, &app::CardDesk::cardRemoved);
    m_desk.setAutomatic(true);
    EXPECT_TRUE(QTest::qWaitFor([this] { return name() == "林晓雨"; }, 20000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return removed.count() == 1; }));
}

TEST_F(ServiceRoad, ServiceThatDiesWhileItWatches_IsWatchedAgain)
{
    serve({"--fault", "delay-ms=60000"});
    m_desk.setAutomatic(true);
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_otherProgram.state() == "watching"; }));
    QTest::qWait(200); // the window knows it, too
    m_service->signal(SIGKILL);
    ASSERT_TRUE(QTest::qWaitFor([] { return !isServed(); }));
    serve();
    EXPECT_TRUE(QTest::qWaitFor([this] { return name() == "林晓雨"; }, 20000));
}

/** Says that a watch has ended when it is asked for the next one, as one that is busy may. */
class BusyService : public QDBusVirtualObject
{
public:
    BusyService() : m_bus(QDBusConnection::connectToBus(busInPlaceOfTheSystems().address(), "busy"))
    {
        EXPECT_TRUE(m_bus.registerVirtualObject(IDCARD_SERVICE_PATH, this));
        EXPECT_TRUE(m_bus.registerService(NAME));
    }
    ~BusyService() override { QDBusConnection::disconnectFromBus("busy"); }
    BusyService(const BusyService &) = delete;
    BusyService &operator=(const BusyService &) = delete;

    int watches() const { return m_watches; }

    void sayItIsIdle()
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            IDCARD_SERVICE_PATH, "org.freedesktop.DBus.Properties", "PropertiesChanged");
        signal << NAME << QVariantMap{{"State", "idle"}} << QStringList();
        m_bus.send(signal);
    }

    QString introspect(const QString & /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage &call, const QDBusConnection & /*bus*/) override
    {
        if (call.member() == "StartWatching" && ++m_watches > 1)
            sayItIsIdle();
        m_bus.send(call.createReply());
        return true;
    }

private:
    QDBusConnection m_bus;
    int m_watches = 0;
};

TEST_F(ServiceRoad, WatchThatBeginsWhileTheOneBeforeEnds_DoesNotTakeThatEndForItsOwn)
{
    BusyService service;
    m_desk.setAutomatic(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return service.watches() == 1; }));
    m_desk.setAutomatic(false);
    m_desk.setAutomatic(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return service.watches() == 2; }));
    QTest::qWait(1000);
    EXPECT_EQ(m_problem.headline, "");
    service.sayItIsIdle();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !m_problem.headline.isEmpty(); })) << "its own end";
    m_desk.setAutomatic(false);
}

TEST_F(ServiceRoad, ServiceThatAnotherProgramUses_IsReportedAsBusy)
{
    serve({"--fault", "delay-ms=60000"});
    m_otherProgram.beginRead();
    QTest::qWait(500);
    read();
    EXPECT_EQ(m_problem.name, IDCARD_SERVICE_DOMAIN ".Error.Busy");
}

TEST_F(ServiceRoad, ServiceThatIsNotThere_IsReported)
{
    read();
    EXPECT_EQ(m_card, nullptr);
    EXPECT_EQ(m_problem.headline, "The service that reads cards did not answer.");
    EXPECT_NE(m_problem.cause, QString());
}

TEST_F(ServiceRoad, ServiceThatDiesWhileItReads_IsReportedAndTheNextOneServes)
{
    serve({"--fault", "delay-ms=60000"});
    m_desk.read();
    QTest::qWait(300);
    m_service.reset();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !m_desk.isReading(); }));
    EXPECT_NE(m_problem.headline, QString());
    ASSERT_TRUE(QTest::qWaitFor([] { return !isServed(); }));
    serve();
    read();
    EXPECT_EQ(name(), "林晓雨");
}

} // namespace
