#pragma once

// The messages of the USB/IP protocol, version 1.1.1, as the Linux kernel documents them: bytes of
// one connection in, requests out, and replies as bytes. All numbers are big-endian. Nothing that
// the other side says is believed before it is checked.

#include <array>
#include <cstdint>
#include <optional>
#include <variant>

#include <QByteArray>
#include <QString>

#include "simulator/usbip/usb_control.h"
#include "simulator/usbip/usb_descriptors.h"

namespace simulator
{

/** Under which an exported device goes. There is one, so its names are fixed. */
constexpr const char *USBIP_BUS_ID = "1-1";
constexpr std::uint32_t USBIP_BUS_NUMBER = 1;
constexpr std::uint32_t USBIP_DEVICE_NUMBER = 2;
/** How the transfers of an imported device name it. */
constexpr std::uint32_t USBIP_DEVICE_ID = USBIP_BUS_NUMBER << 16 | USBIP_DEVICE_NUMBER;

constexpr std::uint16_t USBIP_DEFAULT_PORT = 3240;

/** The most bytes of one transfer; one that asks for more ends the connection. */
constexpr int USBIP_LONGEST_TRANSFER = 64 * 1024;

/** What became of a request to list or import devices. */
enum class UsbipStatus : std::uint32_t {
    DONE = 0,
    IN_USE = 1, ///< somebody else has imported the device
    NO_SUCH_DEVICE = 4,
};

struct UsbipListRequest {
};

struct UsbipImportRequest {
    QByteArray busId;
};

/** One transfer of the imported device. */
struct UsbipSubmit {
    std::uint32_t number = 0;
    std::uint8_t endpoint = 0; ///< address; the top bit is set for IN
    bool isShortRefused = false;
    int length = 0; ///< bytes to move at most
    UsbSetup setup; ///< of endpoint 0
    QByteArray data;

    [[nodiscard]] bool isIn() const;
};

/** Takes a transfer back. */
struct UsbipUnlink {
    std::uint32_t number = 0;
    std::uint32_t submitNumber = 0;
};

using UsbipRequest = std::variant<UsbipListRequest, UsbipImportRequest, UsbipSubmit, UsbipUnlink>;

/** Takes the bytes of one connection apart. */
class UsbipRequestReader
{
public:
    void append(const QByteArray &bytes);

    /** From here on the bytes are transfers: the device has been imported. */
    void startTransfers() { m_areTransfers = true; }

    /** The next request; nothing when it is not all there, or when there is a problem. */
    std::optional<UsbipRequest> next();

    /** What makes the bytes unreadable, for ever; empty while they are in order. */
    [[nodiscard]] const QString &problem() const { return m_problem; }

    [[nodiscard]] int bytesBuffered() const { return m_bytes.size() - m_position; }

private:
    std::optional<UsbipRequest> nextOperation();
    std::optional<UsbipRequest> nextTransfer();
    std::optional<UsbipRequest> nextSubmit(UsbipSubmit submit, std::uint32_t direction);
    [[nodiscard]] std::uint16_t word(int offset) const;
    [[nodiscard]] std::uint32_t number(int offset) const;
    QByteArray take(int size);
    std::nullopt_t fail(const QString &problem);

    QByteArray m_bytes;
    int m_position = 0; ///< up to here they are taken
    bool m_areTransfers = false;
    QString m_problem;
};

/** Lists the device, or none. */
QByteArray usbipListReply(const std::optional<UsbDescription> &device);

/** Hands the device over, or, without one, refuses to. */
QByteArray usbipImportReply(UsbipStatus status, const std::optional<UsbDescription> &device);

/** Ends a transfer: 0 or a negative error number, and how many bytes moved. `data` is of a read. */
QByteArray usbipSubmitReply(std::uint32_t number, int status, int count, const QByteArray &data);

/** Answers an unlink: what the transfer ended with by it, or 0 when it had ended before. */
QByteArray usbipUnlinkReply(std::uint32_t number, int status);

} // namespace simulator
