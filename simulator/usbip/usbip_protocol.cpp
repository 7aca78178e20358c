// Sizes, places and codes of the messages.

#include "simulator/usbip/usbip_protocol.h"

#include <QtEndian>

#include "common/texts.h"
#include "simulator/reader/usb_standard.h"
#include "simulator/translated_texts.h"

namespace simulator
{

namespace
{

SIMULATOR_TEXTS(Usbip)

constexpr std::uint16_t VERSION = 0x0111;

enum Operation : std::uint16_t {
    OP_REQ_IMPORT = 0x8003,
    OP_REP_IMPORT = 0x0003,
    OP_REQ_DEVLIST = 0x8005,
    OP_REP_DEVLIST = 0x0005,
};

enum TransferCommand : std::uint32_t {
    USBIP_CMD_SUBMIT = 1,
    USBIP_CMD_UNLINK = 2,
    USBIP_RET_SUBMIT = 3,
    USBIP_RET_UNLINK = 4,
};

constexpr std::uint32_t DIRECTION_OUT = 0;
constexpr std::uint32_t DIRECTION_IN = 1;

constexpr std::uint32_t SPEED_HIGH = 3;

constexpr int OPERATION_HEADER_SIZE = 8;
constexpr int BUS_ID_SIZE = 32;
constexpr int PATH_SIZE = 256;
constexpr const char *DEVICE_PATH = "/sys/devices/idcard-virtual-reader/usb1/1-1";

// Places in the header of a transfer, which is of one size for every command.
constexpr int TRANSFER_HEADER_SIZE = 48;
constexpr int AT_NUMBER = 4;
constexpr int AT_DEVICE = 8;
constexpr int AT_DIRECTION = 12;
constexpr int AT_ENDPOINT = 16;
constexpr int AT_FLAGS = 20;
constexpr int AT_UNLINKED_NUMBER = 20;
constexpr int AT_LENGTH = 24;
constexpr int AT_PACKETS = 32;
constexpr int AT_SETUP = 40;

constexpr std::uint32_t HIGHEST_ENDPOINT = 15;
constexpr std::uint32_t FLAG_SHORT_NOT_OK = 1;
constexpr std::uint32_t NOT_ISOCHRONOUS = 0xFFFFFFFF; ///< number of packets; older clients say 0

template <typename Number>
void appendNumber(QByteArray *bytes, Number number)
{
    std::array<char, sizeof(Number)> encoded = {};
    qToBigEndian(number, encoded.data());
    bytes->append(encoded.data(), static_cast<int>(encoded.size()));
}

void appendPadded(QByteArray *bytes, const char *text, int size)
{
    const QByteArray content(text);
    bytes->append(content);
    bytes->append(QByteArray(size - content.size(), '\0'));
}

QByteArray operationHeader(Operation operation, UsbipStatus status)
{
    QByteArray bytes;
    appendNumber(&bytes, VERSION);
    appendNumber(&bytes, static_cast<std::uint16_t>(operation));
    appendNumber(&bytes, static_cast<std::uint32_t>(status));
    return bytes;
}

void appendDevice(QByteArray *bytes, const UsbDescription &device)
{
    appendPadded(bytes, DEVICE_PATH, PATH_SIZE);
    appendPadded(bytes, USBIP_BUS_ID, BUS_ID_SIZE);
    appendNumber(bytes, USBIP_BUS_NUMBER);
    appendNumber(bytes, USBIP_DEVICE_NUMBER);
    appendNumber(bytes, SPEED_HIGH);
    appendNumber(bytes, device.vendor);
    appendNumber(bytes, device.product);
    appendNumber(bytes, device.release);
    bytes->append(device.device.mid(4, 3)); // class, subclass, protocol
    bytes->append(static_cast<char>(device.configurationValue));
    bytes->append(device.device.at(17)); // number of configurations
    bytes->append(static_cast<char>(device.interfaces.size()));
}

QByteArray transferHeader(TransferCommand command, std::uint32_t number)
{
    QByteArray bytes;
    appendNumber(&bytes, static_cast<std::uint32_t>(command));
    appendNumber(&bytes, number);
    bytes.append(QByteArray(AT_FLAGS - bytes.size(), '\0')); // device, direction, endpoint: unused
    return bytes;
}

QByteArray paddedTransfer(const QByteArray &header)
{
    return header + QByteArray(TRANSFER_HEADER_SIZE - header.size(), '\0');
}

QString hexadecimal(std::uint32_t number)
{
    return QStringLiteral("0x%1").arg(number, 0, 16);
}

} // namespace

bool UsbipSubmit::isIn() const
{
    return (endpoint & USB_ENDPOINT_IN) != 0;
}

void UsbipRequestReader::append(const QByteArray &bytes)
{
    m_bytes.remove(0, m_position);
    m_position = 0;
    m_bytes.append(bytes);
}

std::optional<UsbipRequest> UsbipRequestReader::next()
{
    if (!m_problem.isEmpty())
        return std::nullopt;
    return m_areTransfers ? nextTransfer() : nextOperation();
}

std::optional<UsbipRequest> UsbipRequestReader::nextOperation()
{
    if (bytesBuffered() < OPERATION_HEADER_SIZE)
        return std::nullopt;
    if (word(0) != VERSION) {
        return fail(filledIn(tr("it speaks version %1 of the protocol, not %2"),
                             hexadecimal(word(0)), hexadecimal(VERSION)));
    }
    switch (word(2)) {
    case OP_REQ_DEVLIST:
        take(OPERATION_HEADER_SIZE);
        return UsbipListRequest();
    case OP_REQ_IMPORT: {
        if (bytesBuffered() < OPERATION_HEADER_SIZE + BUS_ID_SIZE)
            return std::nullopt;
        take(OPERATION_HEADER_SIZE);
        const QByteArray busId = take(BUS_ID_SIZE);
        const int end = busId.indexOf('\0');
        if (end < 0)
            return fail(tr("the bus id of its import request has no end"));
        return UsbipImportRequest{busId.left(end)};
    }
    default:
        return fail(
            tr("it asks for the unknown operation %1, neither a list of devices nor an import")
                .arg(hexadecimal(word(2))));
    }
}

std::optional<UsbipRequest> UsbipRequestReader::nextTransfer()
{
    if (bytesBuffered() < TRANSFER_HEADER_SIZE)
        return std::nullopt;
    const std::uint32_t command = number(0);
    if (command != USBIP_CMD_SUBMIT && command != USBIP_CMD_UNLINK)
        return fail(tr("it sends the unknown command %1").arg(hexadecimal(command)));
    if (number(AT_DEVICE) != USBIP_DEVICE_ID) {
        return fail(filledIn(tr("it names the device %1, but has imported %2"),
                             hexadecimal(number(AT_DEVICE)), hexadecimal(USBIP_DEVICE_ID)));
    }
    if (command == USBIP_CMD_UNLINK) {
        const UsbipUnlink unlink{number(AT_NUMBER), number(AT_UNLINKED_NUMBER)};
        take(TRANSFER_HEADER_SIZE);
        return unlink;
    }
    const std::uint32_t direction = number(AT_DIRECTION);
    const std::uint32_t endpoint = number(AT_ENDPOINT);
    if (direction != DIRECTION_OUT && direction != DIRECTION_IN) {
        return fail(
            tr("it sends a transfer of direction %1, neither 0 (out) nor 1 (in)").arg(direction));
    }
    if (endpoint > HIGHEST_ENDPOINT) {
        return fail(tr("it sends a transfer to endpoint %1; the highest is %2")
                        .arg(endpoint)
                        .arg(HIGHEST_ENDPOINT));
    }
    UsbipSubmit submit;
    submit.number = number(AT_NUMBER);
    submit.endpoint = static_cast<std::uint8_t>(endpoint | (direction == DIRECTION_IN ? 0x80U : 0));
    return nextSubmit(submit, direction);
}

std::optional<UsbipRequest> UsbipRequestReader::nextSubmit(UsbipSubmit submit,
                                                           std::uint32_t direction)
{
    const std::uint32_t length = number(AT_LENGTH);
    if (length > USBIP_LONGEST_TRANSFER) {
        return fail(tr("it sends a transfer of %1 bytes; the most is %2")
                        .arg(length)
                        .arg(USBIP_LONGEST_TRANSFER));
    }
    const std::uint32_t packets = number(AT_PACKETS);
    if (packets != 0 && packets != NOT_ISOCHRONOUS) {
        return fail(
            tr("it sends an isochronous transfer of %1 packets; the device has no endpoint for one")
                .arg(packets));
    }
    submit.length = static_cast<int>(length);
    const int dataSize = direction == DIRECTION_OUT ? submit.length : 0;
    if (bytesBuffered() < TRANSFER_HEADER_SIZE + dataSize)
        return std::nullopt;
    submit.isShortRefused = (number(AT_FLAGS) & FLAG_SHORT_NOT_OK) != 0;
    std::array<std::uint8_t, UsbSetup::SIZE> setup = {};
    for (std::size_t i = 0; i < setup.size(); ++i) {
        setup[i] =
            static_cast<std::uint8_t>(m_bytes.at(m_position + AT_SETUP + static_cast<int>(i)));
    }
    submit.setup = UsbSetup(setup);
    take(TRANSFER_HEADER_SIZE);
    submit.data = take(dataSize);
    return submit;
}

std::uint16_t UsbipRequestReader::word(int offset) const
{
    return qFromBigEndian<std::uint16_t>(m_bytes.constData() + m_position + offset);
}

std::uint32_t UsbipRequestReader::number(int offset) const
{
    return qFromBigEndian<std::uint32_t>(m_bytes.constData() + m_position + offset);
}

QByteArray UsbipRequestReader::take(int size)
{
    QByteArray bytes = m_bytes.mid(m_position, size);
    m_position += size;
    return bytes;
}

std::nullopt_t UsbipRequestReader::fail(const QString &problem)
{
    m_problem = problem;
    m_bytes.clear();
    m_position = 0;
    return std::nullopt;
}

QByteArray usbipListReply(const std::optional<UsbDescription> &device)
{
    QByteArray bytes = operationHeader(OP_REP_DEVLIST, UsbipStatus::DONE);
    appendNumber(&bytes, std::uint32_t{device ? 1U : 0U});
    if (device) {
        appendDevice(&bytes, *device);
        for (const UsbInterfaceClass &interface : device->interfaces) {
            bytes.append(static_cast<char>(interface.classCode));
            bytes.append(static_cast<char>(interface.subclass));
            bytes.append(static_cast<char>(interface.protocol));
            bytes.append('\0');
        }
    }
    return bytes;
}

QByteArray usbipImportReply(UsbipStatus status, const std::optional<UsbDescription> &device)
{
    QByteArray bytes = operationHeader(OP_REP_IMPORT, status);
    if (device)
        appendDevice(&bytes, *device);
    return bytes;
}

QByteArray usbipSubmitReply(std::uint32_t number, int status, int count, const QByteArray &data)
{
    QByteArray header = transferHeader(USBIP_RET_SUBMIT, number);
    appendNumber(&header, static_cast<std::int32_t>(status));
    appendNumber(&header, static_cast<std::int32_t>(count));
    return paddedTransfer(header) + data;
}

QByteArray usbipUnlinkReply(std::uint32_t number, int status)
{
    QByteArray header = transferHeader(USBIP_RET_UNLINK, number);
    appendNumber(&header, static_cast<std::int32_t>(status));
    return paddedTransfer(header);
}

} // namespace simulator
