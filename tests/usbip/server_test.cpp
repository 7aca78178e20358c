// The server with real sockets on the loopback address.

#include <functional>
#include <memory>

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTcpSocket>

#include "simulator/usbip/usbip_server.h"
#include "tests/usbip/client_messages.h"
#include "tests/usbip/recording_device.h"

using simulator::UsbipServer;
using simulator::UsbStatus;
using testing::HasSubstr;

namespace
{

constexpr int PATIENCE_MS = 20000;
constexpr bool IS_SERVER_BUSY = true;

/** Runs the event loop until `isTrue`, or until nobody has patience any more. */
bool eventually(const std::function<bool()> &isTrue)
{
    QElapsedTimer time;
    time.start();
    while (!isTrue() && time.elapsed() < PATIENCE_MS)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 10);
    return isTrue();
}

class Client
{
public:
    /** Runs the event loop, in which the server works, unless `isServerBusy`. */
    explicit Client(const UsbipServer &server, bool isServerBusy = false)
    {
        m_socket.connectToHost(server.address(), server.port());
        EXPECT_TRUE(isServerBusy ? m_socket.waitForConnected(PATIENCE_MS)
                                 : eventually([this] { return isConnected(); }));
    }

    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    void send(const QByteArray &bytes) { m_socket.write(bytes); }
    void leave() { m_socket.abort(); }

    /** Sends without letting the server work. */
    void sendNow(const QByteArray &bytes)
    {
        send(bytes);
        EXPECT_TRUE(m_socket.waitForBytesWritten(PATIENCE_MS));
    }

    /** The next `size` bytes, fewer when they do not come. */
    QByteArray receive(int size)
    {
        eventually([&] { return m_socket.bytesAvailable() >= size || !isConnected(); });
        return m_socket.read(size);
    }

    bool isClosedByServer()
    {
        return eventually([this] { return !isConnected(); });
    }

    void import()
    {
        send(importRequest());
        ASSERT_EQ(receive(IMPORT_REPLY_SIZE).size(), IMPORT_REPLY_SIZE);
    }

private:
    QTcpSocket m_socket;
};

class Server : public testing::Test
{
protected:
    Server() { EXPECT_EQ(server.listen(QHostAddress(QHostAddress::LocalHost), 0), QString()); }

    bool isReported(const char *part)
    {
        return eventually([&] { return reports.join('\n').contains(QLatin1String(part)); });
    }

    int argumentCount = 1;
    char name[5] = "test";
    char *arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    QStringList reports;
    RecordingDevice device;
    UsbipServer server{device, [this](const QString &line) { reports << line; }};
};

TEST_F(Server, ListsTheReaderAndClosesTheConnection)
{
    Client client(server);
    client.send(listRequest());
    EXPECT_EQ(client.receive(LIST_REPLY_SIZE).size(), LIST_REPLY_SIZE);
    EXPECT_TRUE(client.isClosedByServer());
}

TEST_F(Server, ReportsAttachingAndDetaching)
{
    Client client(server);
    client.import();
    EXPECT_TRUE(server.isAttached());
    EXPECT_TRUE(isReported("has attached the reader"));
    device.reads = {ended(UsbStatus::DONE, "x")};
    client.send(bulkRead(1, 64));
    client.receive(48 + 1);
    client.leave();
    EXPECT_TRUE(isReported("has detached the reader"));
    EXPECT_TRUE(eventually([this] { return !server.isAttached(); }));
    EXPECT_EQ(reports.size(), 2) << reports.join('\n').toStdString();
}

TEST_F(Server, CanBeAttachedAgainAfterDetaching)
{
    Client(server).import();
    EXPECT_TRUE(eventually([this] { return !server.isAttached(); }));
    Client again(server);
    again.import();
    EXPECT_TRUE(server.isAttached());
}

TEST_F(Server, ReaderOfAClientThatHasClosed_IsFreeBeforeTheEventLoopSaysSo)
{
    auto last = std::make_unique<Client>(server);
    last->import();
    for (int round = 0; round < 100; ++round) {
        SCOPED_TRACE(round);
        auto next = std::make_unique<Client>(server);
        // Nothing is served meanwhile: the server finds all of this at once.
        if (round % 2 == 1)
            last->sendNow(bulkRead(1, 64)); // and has bytes before the end still to read
        last.reset();
        next->sendNow(importRequest());
        ASSERT_EQ(next->receive(IMPORT_REPLY_SIZE).left(8), hex("01 11 00 03 00 00 00 00"));
        last = std::move(next);
    }
    EXPECT_TRUE(server.isAttached());
}

TEST_F(Server, ClientThatConnectsWhenTheLastHasClosed_GetsTheReaderAtOnce)
{
    auto last = std::make_unique<Client>(server);
    last->import();
    for (int round = 0; round < 100; ++round) {
        SCOPED_TRACE(round);
        last.reset();
        auto next = std::make_unique<Client>(server, IS_SERVER_BUSY);
        next->sendNow(importRequest());
        ASSERT_EQ(next->receive(IMPORT_REPLY_SIZE).left(8), hex("01 11 00 03 00 00 00 00"));
        last = std::move(next);
    }
    EXPECT_EQ(reports.filter("detached").size(), 100) << reports.join('\n').toStdString();
}

TEST_F(Server, DelayedTransfersEndInTimeAndOthersGoOnMeanwhile)
{
    Client client(server);
    client.import();
    device.reads = {ended(UsbStatus::DONE, "late", 150)};
    device.writes = {taken(UsbStatus::DONE, 1)};
    QElapsedTimer time;
    time.start();
    client.send(bulkRead(1, 64) + bulkWrite(2, "x"));
    EXPECT_EQ(client.receive(48).mid(4, 4), hex("00 00 00 02"));
    EXPECT_EQ(client.receive(48 + 4).mid(48), "late");
    EXPECT_GE(time.elapsed(), 149); // either clock may cut off a part of a millisecond
}

TEST_F(Server, UnplugClosesTheConnectionThatHasTheReaderNotAnEarlierOne)
{
    const Client silent(server);
    Client client(server);
    client.import();
    device.pluggedIn = false;
    server.deviceChanged();
    EXPECT_TRUE(client.isClosedByServer());
    EXPECT_FALSE(server.isAttached());
    EXPECT_TRUE(isReported("unplugged"));
    QCoreApplication::processEvents();
    EXPECT_EQ(reports.size(), 2) << reports.join('\n').toStdString();
}

TEST_F(Server, TransferThatUnplugsTheReaderIsAnsweredBeforeTheConnectionCloses)
{
    Client client(server);
    client.import();
    device.reads = {ended(UsbStatus::UNPLUGGED, {}, 20)};
    client.send(bulkRead(1, 64));
    ASSERT_TRUE(eventually([this] { return device.calls.size() > 1; }));
    device.pluggedIn = false;
    server.deviceChanged();
    const auto sent = replies(client.receive(48));
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].status, -108);
    EXPECT_TRUE(client.isClosedByServer());
}

TEST_F(Server, SaysWhyItClosesAConnection)
{
    Client client(server);
    client.send("GET / HTTP/1.1\r\n\r\n");
    EXPECT_TRUE(client.isClosedByServer());
    EXPECT_TRUE(isReported("version 0x4745"));
}

TEST_F(Server, ServesOthersBesideConnectionsThatSayNothing)
{
    std::vector<std::unique_ptr<Client>> silent;
    for (std::size_t i = 0; i < 3 * UsbipServer::MOST_CONNECTIONS; ++i) {
        silent.push_back(std::make_unique<Client>(server));
        silent.back()->send(hex("01 11 80"));
    }
    QElapsedTimer time;
    time.start();
    Client client(server);
    client.import();
    EXPECT_TRUE(eventually([&] {
        const auto open = std::count_if(silent.begin(), silent.end(),
                                        [](const auto &peer) { return peer->isConnected(); });
        return open < static_cast<int>(UsbipServer::MOST_CONNECTIONS);
    }));
    EXPECT_LT(time.elapsed(), UsbipServer::PATIENCE_MS / 2) << "they went for want of patience";
}

TEST_F(Server, SendsAwayWhoAsksForNothingAndKeepsWhoHasTheReaderAmongManyOthers)
{
    Client attached(server);
    attached.import();
    std::vector<std::unique_ptr<Client>> silent;
    for (std::size_t i = 0; i < 3 * UsbipServer::MOST_CONNECTIONS; ++i)
        silent.push_back(std::make_unique<Client>(server));
    silent.back()->send(hex("01 11 80"));
    EXPECT_TRUE(silent.back()->isClosedByServer());
    device.reads = {ended(UsbStatus::DONE, "here")};
    attached.send(bulkRead(1, 64));
    EXPECT_EQ(attached.receive(48 + 4).mid(48), "here");
}

TEST_F(Server, ManyLongReadsArriveWhole)
{
    Client client(server);
    client.import();
    constexpr int COUNT = 40;
    const QByteArray data(65536, 'd');
    device.reads.assign(COUNT, ended(UsbStatus::DONE, data));
    for (unsigned int number = 0; number < COUNT; ++number)
        client.send(bulkRead(number, 65536));
    for (int i = 0; i < COUNT; ++i)
        ASSERT_EQ(client.receive(48 + data.size()).mid(48), data) << i;
}

TEST_F(Server, SaysWhyItCannotListen)
{
    UsbipServer second(device, [](const QString &) {});
    EXPECT_THAT(second.listen(server.address(), server.port()).toStdString(), HasSubstr("in use"));
}

} // namespace
