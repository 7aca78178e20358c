#pragma once

// Exports a simulated device over USB/IP to its clients: sockets and timers around
// `UsbipConnection`. Needs a running Qt event loop.

#include <cstdint>
#include <functional>
#include <list>
#include <memory>

#include <QElapsedTimer>
#include <QHostAddress>
#include <QString>
#include <QTcpServer>
#include <QTimer>

#include "simulator/usbip/usbip_connection.h"

namespace simulator
{

class UsbipServer
{
public:
    /** Connections at a time. One more takes the place of the oldest that has not imported. */
    static constexpr std::size_t MOST_CONNECTIONS = 8;
    /** Who has asked for nothing so long after connecting is sent away. */
    static constexpr int PATIENCE_MS = 10000;

    /** Takes what happens, in one line for people. */
    using Report = std::function<void(const QString &line)>;

    /** `device` must outlive the server. */
    UsbipServer(UsbDevice &device, Report report);
    ~UsbipServer();
    UsbipServer(const UsbipServer &) = delete;
    UsbipServer &operator=(const UsbipServer &) = delete;

    /** Begins to listen; a port of 0 means any free one. Returns why not, empty when it does. */
    QString listen(const QHostAddress &address, std::uint16_t port);

    [[nodiscard]] QHostAddress address() const { return m_listener.serverAddress(); }
    [[nodiscard]] std::uint16_t port() const { return m_listener.serverPort(); }

    /** Whether a client has imported the device. */
    [[nodiscard]] bool isAttached() const { return m_export.isImported; }

    /** To be called after the device was plugged in or unplugged from this side. */
    void deviceChanged();

private:
    class Peer;

    void welcomeNext();
    bool makeRoom();
    void dropClosedHolder();
    void sweep();

    UsbipExport m_export;
    Report m_report;
    QElapsedTimer m_clock;
    std::list<std::unique_ptr<Peer>> m_peers; ///< in the order in which they came
    QTimer m_sweep;                           ///< soon after a connection has gone
    QTcpServer m_listener;
};

} // namespace simulator
