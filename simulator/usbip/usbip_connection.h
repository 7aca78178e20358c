#pragma once

// One connection of a USB/IP client, without its socket: bytes in, bytes out, and a clock that the
// owner reads. Bounded for any input.

#include <cstdint>
#include <list>
#include <optional>

#include <QByteArray>
#include <QString>

#include "simulator/reader/usb_device.h"
#include "simulator/usbip/usb_control.h"
#include "simulator/usbip/usbip_protocol.h"

namespace simulator
{

/** The device that is to be had, by one connection at a time. */
struct UsbipExport {
    explicit UsbipExport(UsbDevice &exported) : device(exported) {}

    UsbDevice &device;
    bool isImported = false;
};

/** Times are milliseconds on any clock that never goes back. */
class UsbipConnection
{
public:
    /** Transfers that wait at a time; one more ends the connection. */
    static constexpr std::size_t MOST_PENDING_TRANSFERS = 64;
    /** No byte is taken while so many are to be sent; one that still comes ends it. */
    static constexpr int MOST_BYTES_TO_SEND = 256 * 1024;

    explicit UsbipConnection(UsbipExport &exported);
    ~UsbipConnection();
    UsbipConnection(const UsbipConnection &) = delete;
    UsbipConnection &operator=(const UsbipConnection &) = delete;

    /** Whether `receive` may be called. */
    [[nodiscard]] bool wantsBytes() const;

    void receive(const QByteArray &bytes, std::int64_t now);

    /** Does what is due, and looks whether the device is still there. */
    void advance(std::int64_t now);

    /** When `advance` is to be called next; nothing when it can wait for other events. */
    [[nodiscard]] std::optional<std::int64_t> nextTime() const;

    /** What is to be sent. It is forgotten here; call `advance` after it. */
    QByteArray takeBytesToSend();

    /** Whether the connection is to be closed once all is sent. */
    [[nodiscard]] bool isOver() const { return m_isOver; }

    /** Why it is over; empty when all was in order. */
    [[nodiscard]] const QString &problem() const { return m_problem; }

    /** Whether it has imported the device. */
    [[nodiscard]] bool hasDevice() const { return m_hasDevice; }

private:
    /** A transfer that has not ended. Those of one endpoint run one after the other. */
    struct Transfer {
        UsbipSubmit submit;
        bool isStarted = false;
        UsbTransfer outcome;
        std::optional<std::int64_t> end; ///< once it is started; nothing: never by itself
    };
    using Transfers = std::list<Transfer>;

    void serve(const UsbipListRequest &request, std::int64_t now);
    void serve(const UsbipImportRequest &request, std::int64_t now);
    void serve(const UsbipSubmit &submit, std::int64_t now);
    void serve(const UsbipUnlink &unlink, std::int64_t now);
    void serveRequests(std::int64_t now);
    void answerControl(const UsbipSubmit &submit);
    void startTransfers(std::int64_t now);
    void start(Transfer *transfer, std::int64_t now);
    void restartWaitingReads();
    [[nodiscard]] Transfers::const_iterator nextToEnd() const;
    void endDueTransfers(std::int64_t now);
    void reply(const UsbipSubmit &submit, const UsbTransfer &outcome);
    void endIfUnplugged();
    void end(const QString &problem);

    UsbipExport &m_export;
    UsbControlEndpoint m_control;
    UsbipRequestReader m_reader;
    Transfers m_transfers; ///< in the order in which they came
    QByteArray m_toSend;
    bool m_hasDevice = false;
    bool m_isOver = false;
    QString m_problem;
};

} // namespace simulator
