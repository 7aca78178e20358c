// When the window, unless a user says otherwise, reads by the D-Bus service: a reader on an
// emulated bus, and a message bus of the test's own.

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>

#include <unistd.h>

#include "apps/card/card_output.h"
#include "apps/viewer/card_desk.h"
#include "apps/viewer/service_run.h"
#include "tests/service/bus_client.h"
#include "tests/service/private_bus.h"
#include "tests/usb/reader_on_bus.h"

namespace
{

const QString NAME = IDCARD_SERVICE_NAME;

QDBusConnection systemBus()
{
    busInPlaceOfTheSystems();
    return QDBusConnection::systemBus();
}

/** Nothing is denied to root; what a program may do goes by its real user. */
class NotRoot
{
public:
    NotRoot() : m_user(::getuid())
    {
        constexpr uid_t NOBODY = 65534;
        if (m_user == 0) {
            EXPECT_EQ(::setreuid(NOBODY, static_cast<uid_t>(-1)), 0);
        }
    }
    ~NotRoot() { EXPECT_EQ(::setreuid(m_user, static_cast<uid_t>(-1)), 0); }
    NotRoot(const NotRoot &) = delete;
    NotRoot &operator=(const NotRoot &) = delete;

private:
    uid_t m_user;
};

class ServiceNeed : public testing::Test, public usb_test::ReaderOnBus
{
protected:
    ~ServiceNeed() override
    {
        systemBus().unregisterService(NAME);
        expectAllGivenBack();
    }

    /** Its name is enough to be found. */
    static void serve() { ASSERT_TRUE(systemBus().registerService(NAME)); }

    static bool isServiceNeeded()
    {
        const NotRoot user;
        return viewer::isServiceNeeded();
    }
};

TEST_F(ServiceNeed, ReaderThatTheUserMayNotOpen_NeedsTheService)
{
    plugIn("resident", "permission-denied");
    serve();
    EXPECT_TRUE(isServiceNeeded());
}

TEST_F(ServiceNeed, ServiceThatIsNotInstalled_IsNotTaken)
{
    plugIn("resident", "permission-denied");
    EXPECT_FALSE(isServiceNeeded());
}

TEST_F(ServiceNeed, ReaderThatTheUserMayOpen_NeedsNoService)
{
    plugIn("resident");
    serve();
    EXPECT_FALSE(isServiceNeeded());
}

TEST_F(ServiceNeed, NoReader_NeedsNoService)
{
    serve();
    EXPECT_FALSE(isServiceNeeded());
}

TEST_F(ServiceNeed, ReaderThatTheUserMayNotOpenBesideAMemoryStick_NeedsTheService)
{
    bus().add(otherDevice());
    bindDriver(otherDevice(), "usb-storage");
    plugIn("resident", "permission-denied");
    serve();
    EXPECT_TRUE(isServiceNeeded());
}

TEST_F(ServiceNeed, MemoryStickThatTheUserMayNotOpen_NeedsNoService)
{
    plugIn({}, "permission-denied");
    bindDriver(reader(), "usb-storage");
    serve();
    EXPECT_FALSE(isServiceNeeded());
}

TEST_F(ServiceNeed, WindowThatNeedsTheService_ReadsByIt)
{
    plugIn("resident", "permission-denied");
    ProcessInput input;
    input.environment = {{"DBUS_SESSION_BUS_ADDRESS", busInPlaceOfTheSystems().address()}};
    const RunningProcess service("idcard-readerd", {"--session", "--simulate", "foreign-new"},
                                 input);
    ASSERT_TRUE(waitFor([] { return systemBus().interface()->isServiceRegistered(NAME).value(); }));
    app::CardDesk desk;
    app::CardPointer card;
    QObject::connect(&desk, &app::CardDesk::cardRead, &desk,
                     [&](const app::CardPointer &read) { card = read; });
    {
        const NotRoot user;
        desk.read();
    }
    EXPECT_TRUE(waitFor([&] { return !desk.isReading(); }, 20000));
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(app::holderName(*card), "TANAKA, HARUTO");
}

} // namespace
