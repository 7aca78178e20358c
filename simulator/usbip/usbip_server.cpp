// Sockets and timers; `UsbipConnection` interprets the bytes.

#include "simulator/usbip/usbip_server.h"

#include <algorithm>

#include <poll.h>

#include <QTcpSocket>

#include "common/texts.h"
#include "simulator/translated_texts.h"

namespace simulator
{

namespace
{

SIMULATOR_TEXTS(Usbip)

constexpr int CHUNK_SIZE = 16 * 1024;
constexpr int SOCKET_BUFFER_SIZE = 64 * 1024;
constexpr int LEAVE_TIME_MS = 2000; ///< for a client to take the last bytes

} // namespace

/** A connection with its socket. It marks itself as gone and is then swept away. */
class UsbipServer::Peer
{
public:
    Peer(UsbipServer &server, QTcpSocket *socket)
        : m_server(server), m_socket(socket), m_connection(server.m_export),
          m_name(tr("%1 port %2").arg(socket->peerAddress().toString()).arg(socket->peerPort()))
    {
        m_socket->setParent(nullptr);
        m_socket->setReadBufferSize(SOCKET_BUFFER_SIZE);
        m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        m_socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
        m_patience.setSingleShot(true);
        m_work.setSingleShot(true);
        m_work.setTimerType(Qt::PreciseTimer);
        QObject::connect(m_socket.get(), &QTcpSocket::readyRead, &m_work, [this] { work(); });
        QObject::connect(m_socket.get(), &QTcpSocket::bytesWritten, &m_work, [this] { work(); });
        QObject::connect(m_socket.get(), &QTcpSocket::disconnected, &m_work, [this] { leave(); });
        QObject::connect(&m_work, &QTimer::timeout, &m_work, [this] { work(); });
        QObject::connect(&m_patience, &QTimer::timeout, &m_work, [this] { dismiss(); });
        m_patience.start(PATIENCE_MS);
    }

    ~Peer()
    {
        m_socket->disconnect(); // from what would mark this as gone
        m_socket->abort();
    }

    Peer(const Peer &) = delete;
    Peer &operator=(const Peer &) = delete;

    [[nodiscard]] bool isGone() const { return m_isGone; }
    [[nodiscard]] bool hasDevice() const { return m_connection.hasDevice(); }

    /** Whether the client has closed, even while Qt has bytes before the end to read. */
    [[nodiscard]] bool hasClosed() const
    {
        pollfd socket{static_cast<int>(m_socket->socketDescriptor()), POLLRDHUP, 0};
        return poll(&socket, 1, 0) > 0;
    }

    /** Reads, answers and sends all that is possible now. */
    void work()
    {
        if (m_isGone)
            return;
        if (!m_connection.hasDevice())
            m_server.dropClosedHolder();
        m_connection.advance(m_server.m_clock.elapsed());
        while (m_connection.wantsBytes() && hasRoomToSend() && m_socket->bytesAvailable() > 0) {
            m_connection.receive(m_socket->read(CHUNK_SIZE), m_server.m_clock.elapsed());
            send();
        }
        send();
        tellAttachment();
        if (m_connection.isOver())
            finish();
        else
            awaitNextTime();
    }

    /** Leaves without another word. */
    void dismiss()
    {
        m_socket->abort();
        leave();
    }

private:
    [[nodiscard]] bool hasRoomToSend() const
    {
        return m_socket->bytesToWrite() < UsbipConnection::MOST_BYTES_TO_SEND;
    }

    // As long as the socket has enough to send, the connection keeps the rest and takes no more.
    void send()
    {
        while (hasRoomToSend()) {
            const QByteArray bytes = m_connection.takeBytesToSend();
            if (bytes.isEmpty())
                break;
            m_socket->write(bytes);
            m_connection.advance(m_server.m_clock.elapsed());
        }
    }

    void tellAttachment()
    {
        if (m_connection.hasDevice() && !m_wasAttached) {
            m_wasAttached = true;
            m_patience.stop();
            m_server.m_report(tr("%1 has attached the reader.").arg(m_name));
        }
    }

    void finish()
    {
        if (!m_isLeaving) {
            m_isLeaving = true;
            if (!m_connection.problem().isEmpty()) {
                m_server.m_report(filledIn(tr("The connection of %1 is closed: %2."), m_name,
                                           m_connection.problem()));
            }
            m_patience.start(LEAVE_TIME_MS);
        }
        // Once all is sent; what the connection still keeps follows when there is room for it.
        if (hasRoomToSend())
            m_socket->disconnectFromHost();
    }

    void leave()
    {
        if (m_isGone)
            return;
        m_isGone = true;
        if (m_connection.hasDevice())
            m_server.m_report(tr("%1 has detached the reader.").arg(m_name));
        // This may be called by the socket or a timer of this very object.
        m_server.m_sweep.start();
    }

    void awaitNextTime()
    {
        const std::optional<std::int64_t> next = m_connection.nextTime();
        if (!next) {
            m_work.stop();
            return;
        }
        const std::int64_t left = *next - m_server.m_clock.elapsed();
        m_work.start(static_cast<int>(std::max<std::int64_t>(0, left)));
    }

    UsbipServer &m_server;
    std::unique_ptr<QTcpSocket> m_socket;
    UsbipConnection m_connection;
    QString m_name;
    QTimer m_patience; ///< until it has asked for something, or taken its last bytes
    QTimer m_work;
    bool m_wasAttached = false;
    bool m_isLeaving = false;
    bool m_isGone = false;
};

UsbipServer::UsbipServer(UsbDevice &device, Report report)
    : m_export(device), m_report(std::move(report))
{
    m_clock.start();
    m_sweep.setSingleShot(true);
    m_sweep.setInterval(0);
    QObject::connect(&m_sweep, &QTimer::timeout, &m_sweep, [this] { sweep(); });
    QObject::connect(&m_listener, &QTcpServer::newConnection, &m_listener,
                     [this] { welcomeNext(); });
}

UsbipServer::~UsbipServer() = default;

QString UsbipServer::listen(const QHostAddress &address, std::uint16_t port)
{
    return m_listener.listen(address, port) ? QString() : m_listener.errorString();
}

void UsbipServer::deviceChanged()
{
    for (const auto &peer : m_peers)
        peer->work();
}

void UsbipServer::welcomeNext()
{
    while (QTcpSocket *socket = m_listener.nextPendingConnection()) {
        if (!makeRoom()) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        m_peers.push_back(std::make_unique<Peer>(*this, socket));
        m_peers.back()->work();
    }
}

// A client that connects and sends nothing does not keep others out.
bool UsbipServer::makeRoom()
{
    sweep();
    if (m_peers.size() < MOST_CONNECTIONS)
        return true;
    const auto oldest = std::find_if(m_peers.begin(), m_peers.end(),
                                     [](const auto &peer) { return !peer->hasDevice(); });
    if (oldest == m_peers.end())
        return false;
    (*oldest)->dismiss();
    sweep();
    return true;
}

// A client that has closed does not keep the next one from the reader, whichever of the two Qt
// happens to look at first.
void UsbipServer::dropClosedHolder()
{
    for (const auto &peer : m_peers) {
        if (peer->hasDevice() && peer->hasClosed())
            peer->dismiss();
    }
    sweep();
}

void UsbipServer::sweep()
{
    m_peers.remove_if([](const auto &peer) { return peer->isGone(); });
}

} // namespace simulator
