#include "tests/usb/device_node.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <thread>

// ioctl.h first: the kernel's header needs its macros.
#include <sys/ioctl.h>

#include <linux/usbdevice_fs.h>

namespace usb_test
{

namespace
{

using simulator::UsbStatus;

/** As with the host controllers of today: a transfer of any size is one request. */
constexpr std::uint32_t CAPABILITIES = USBDEVFS_CAP_ZERO_PACKET | USBDEVFS_CAP_NO_PACKET_SIZE_LIM |
                                       USBDEVFS_CAP_BULK_SCATTER_GATHER |
                                       USBDEVFS_CAP_REAP_AFTER_DISCONNECT;

/** The node is always ready as far as poll(2) knows; who asks too early waits this long. */
constexpr std::chrono::milliseconds PAUSE{3};

/** The largest transfer that is taken; the kernel's own limit is of this order. */
constexpr int LARGEST_TRANSFER = 16 * 1024 * 1024;

template <typename T>
DataRef resolve(UMockdevIoctlData *data, std::size_t offset = 0, std::size_t size = sizeof(T))
{
    return DataRef(umockdev_ioctl_data_resolve(data, offset, size, nullptr));
}

template <typename T>
T &valueOf(const DataRef &data)
{
    return *reinterpret_cast<T *>(data->data);
}

/** How the kernel ends a transfer. */
int kernelStatus(UsbStatus status)
{
    switch (status) {
    case UsbStatus::DONE:
        return 0;
    case UsbStatus::STALLED:
        return -EPIPE;
    case UsbStatus::BROKEN:
        return -EPROTO;
    case UsbStatus::TOO_LONG:
        return -EOVERFLOW;
    case UsbStatus::UNPLUGGED:
        return -ESHUTDOWN;
    case UsbStatus::PENDING:
        break;
    }
    return -EINPROGRESS;
}

QString endpointName(unsigned char endpoint)
{
    return QString::number(endpoint, 16).rightJustified(2, QLatin1Char('0'));
}

} // namespace

DeviceNode::DeviceNode(simulator::UsbDevice &device, const NodeTraits &traits, std::mutex &mutex,
                       std::function<void()> changed)
    : m_device(device), m_traits(traits), m_mutex(mutex), m_changed(std::move(changed)),
      m_handler(umockdev_ioctl_base_new()), m_boundDriver(traits.driver)
{
    g_signal_connect(m_handler.get(), "client-connected", G_CALLBACK(onConnected), this);
    g_signal_connect(m_handler.get(), "handle-ioctl", G_CALLBACK(onIoctl), this);
}

DeviceNode::~DeviceNode()
{
    g_signal_handlers_disconnect_by_data(m_handler.get(), this);
}

Holdings DeviceNode::holdings() const
{
    Holdings holdings;
    holdings.timesOpened = m_timesClosed;
    for (const Opening &opening : m_openings) {
        if (!opening.used)
            continue;
        ++holdings.timesOpened;
        if (!isOpen(opening))
            continue; // the kernel takes back what a program still held when it closed the node
        ++holdings.openNodes;
        holdings.claimedInterfaces += opening.claimed ? 1 : 0;
        holdings.transfers += static_cast<int>(opening.transfers.size());
    }
    return holdings;
}

bool DeviceNode::isOpen(const Opening &opening) const
{
    return umockdev_ioctl_client_get_connected(opening.client.get()) != FALSE;
}

DeviceNode::Opening *DeviceNode::openingOf(UMockdevIoctlClient *client)
{
    const auto opening =
        std::find_if(m_openings.begin(), m_openings.end(),
                     [client](const Opening &known) { return known.client.get() == client; });
    return opening == m_openings.end() ? nullptr : &*opening;
}

void DeviceNode::forgetClosed()
{
    m_openings.remove_if([this](const Opening &opening) {
        if (isOpen(opening))
            return false;
        m_timesClosed += opening.used ? 1 : 0;
        return true;
    });
}

void DeviceNode::renew()
{
    m_boundDriver = m_traits.driver;
    m_calls.clear();
}

void DeviceNode::onConnected(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer self)
{
    auto *const node = static_cast<DeviceNode *>(self);
    const std::lock_guard<std::mutex> lock(node->m_mutex);
    node->forgetClosed();
    Opening opening;
    opening.client.reset(UMOCKDEV_IOCTL_CLIENT(g_object_ref(client)));
    node->m_openings.push_back(std::move(opening));
}

gboolean DeviceNode::onIoctl(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer self)
{
    auto *const node = static_cast<DeviceNode *>(self);
    const unsigned long request = umockdev_ioctl_client_get_request(client);
    Answer answer = failure(EBADF);
    bool waits = false;
    {
        const std::lock_guard<std::mutex> lock(node->m_mutex);
        Opening *const opening = node->openingOf(client);
        if (opening != nullptr)
            answer = node->answer(*opening, request, umockdev_ioctl_client_get_arg(client));
        node->m_changed();
        waits = answer.error == EAGAIN && opening != nullptr && !opening->transfers.empty();
    }
    if (waits)
        std::this_thread::sleep_for(PAUSE);
    umockdev_ioctl_client_complete(client, answer.result, answer.error);
    return TRUE;
}

DeviceNode::Answer DeviceNode::answer(Opening &opening, unsigned long request,
                                      UMockdevIoctlData *argument)
{
    if (!opening.used)
        m_calls << QStringLiteral("open");
    opening.used = true;
    // What was submitted can be had back after the device has gone.
    if (request == USBDEVFS_REAPURBNDELAY)
        return reap(opening, argument);
    if (request == USBDEVFS_DISCARDURB)
        return discard(opening, argument);
    if (!m_device.isPluggedIn()) {
        m_calls << QStringLiteral("refused, device gone");
        return failure(ENODEV);
    }
    return answerPresent(opening, request, argument);
}

DeviceNode::Answer DeviceNode::answerPresent(Opening &opening, unsigned long request,
                                             UMockdevIoctlData *argument)
{
    switch (request) {
    case USBDEVFS_GET_CAPABILITIES:
        m_calls << QStringLiteral("capabilities");
        valueOf<std::uint32_t>(resolve<std::uint32_t>(argument)) = CAPABILITIES;
        return success();
    case USBDEVFS_DISCONNECT_CLAIM:
        if (!m_traits.detachesAndClaims)
            return failure(ENOTTY);
        return claim(opening, argument, true);
    case USBDEVFS_CLAIMINTERFACE:
        return claim(opening, argument, false);
    case USBDEVFS_RELEASEINTERFACE:
        return release(opening);
    case USBDEVFS_RESET:
        return reset();
    case USBDEVFS_GETDRIVER:
        return getDriver(argument);
    case USBDEVFS_IOCTL:
        return driverRequest(argument);
    case USBDEVFS_SUBMITURB:
        return submit(opening, argument);
    default:
        return misuse(QStringLiteral("request 0x%1 is not known").arg(request, 0, 16), ENOTTY);
    }
}

DeviceNode::Answer DeviceNode::misuse(const QString &what, int error)
{
    m_misuses << what;
    return failure(error);
}

/** The interface number comes first in what both ways of claiming are given. */
DeviceNode::Answer DeviceNode::claim(Opening &opening, UMockdevIoctlData *argument, bool detaches)
{
    m_calls << QStringLiteral("claim");
    if (valueOf<unsigned int>(resolve<unsigned int>(argument)) != 0)
        return misuse(QStringLiteral("claim of an interface that the device has not"), EINVAL);
    const bool isHeld =
        std::any_of(m_openings.begin(), m_openings.end(), [this, &opening](const Opening &other) {
            return &other != &opening && other.claimed && isOpen(other);
        });
    if (m_device.isClaimedElsewhere() || isHeld || (!detaches && !m_boundDriver.isEmpty()))
        return failure(EBUSY);
    m_boundDriver.clear();
    opening.claimed = true;
    return success();
}

DeviceNode::Answer DeviceNode::release(Opening &opening)
{
    m_calls << QStringLiteral("release");
    if (!opening.claimed)
        return misuse(QStringLiteral("release of an interface that is not claimed"), EINVAL);
    opening.claimed = false;
    return success();
}

DeviceNode::Answer DeviceNode::reset()
{
    m_calls << QStringLiteral("reset");
    if (m_device.refusesReset())
        return failure(EIO);
    m_device.reset();
    return success();
}

DeviceNode::Answer DeviceNode::getDriver(UMockdevIoctlData *argument)
{
    m_calls << QStringLiteral("get driver");
    if (m_boundDriver.isEmpty())
        return failure(ENODATA);
    auto &answer = valueOf<usbdevfs_getdriver>(resolve<usbdevfs_getdriver>(argument));
    const QByteArray name = m_boundDriver.toUtf8().left(sizeof(answer.driver) - 1);
    std::copy(name.cbegin(), name.cend(), std::begin(answer.driver));
    answer.driver[name.size()] = '\0';
    return success();
}

/** Giving the interface back to its driver, and taking it away. */
DeviceNode::Answer DeviceNode::driverRequest(UMockdevIoctlData *argument)
{
    const auto &request = valueOf<usbdevfs_ioctl>(resolve<usbdevfs_ioctl>(argument));
    switch (static_cast<unsigned int>(request.ioctl_code)) {
    case USBDEVFS_DISCONNECT:
        m_calls << QStringLiteral("detach driver");
        if (m_boundDriver.isEmpty())
            return failure(ENODATA);
        m_boundDriver.clear();
        return success();
    case USBDEVFS_CONNECT:
        m_calls << QStringLiteral("attach driver");
        if (m_traits.driver.isEmpty())
            return failure(ENODATA);
        m_boundDriver = m_traits.driver;
        return success(1);
    default:
        return misuse(QStringLiteral("driver request 0x%1 is not known")
                          .arg(static_cast<unsigned int>(request.ioctl_code), 0, 16),
                      ENOTTY);
    }
}

DeviceNode::Answer DeviceNode::submit(Opening &opening, UMockdevIoctlData *argument)
{
    Transfer transfer;
    transfer.request = resolve<usbdevfs_urb>(argument);
    const auto &urb = valueOf<usbdevfs_urb>(transfer.request);
    transfer.isRead = (urb.endpoint & 0x80) != 0;
    m_calls << QStringLiteral("%1 %2 %3")
                   .arg(transfer.isRead ? QStringLiteral("in") : QStringLiteral("out"),
                        endpointName(urb.endpoint), QString::number(urb.buffer_length));
    if (urb.type != USBDEVFS_URB_TYPE_BULK)
        return misuse(QStringLiteral("transfer of type %1").arg(urb.type), EINVAL);
    if (urb.buffer_length < 0 || urb.buffer_length > LARGEST_TRANSFER)
        return misuse(QStringLiteral("transfer of %1 bytes").arg(urb.buffer_length), EINVAL);
    if (!opening.claimed)
        return misuse(QStringLiteral("transfer without a claim"), EINVAL);

    const int size = urb.buffer_length;
    if (size > 0)
        transfer.buffer = DataRef(
            umockdev_ioctl_data_resolve(transfer.request.get(), offsetof(usbdevfs_urb, buffer),
                                        static_cast<std::size_t>(size), nullptr));
    if (transfer.isRead) {
        transfer.outcome = m_device.read(urb.endpoint, size);
        transfer.outcome.count = transfer.outcome.data.size();
    } else {
        const auto *const bytes =
            size > 0 ? reinterpret_cast<const char *>(transfer.buffer->data) : nullptr;
        transfer.outcome = m_device.write(urb.endpoint, QByteArray(bytes, size));
    }
    if (transfer.outcome.count < 0 || transfer.outcome.count > size)
        return misuse(QStringLiteral("the device moves %1 of %2 bytes")
                          .arg(QString::number(transfer.outcome.count), QString::number(size)),
                      EIO);
    transfer.status = kernelStatus(transfer.outcome.status);
    transfer.ends = transfer.outcome.status != UsbStatus::PENDING;
    transfer.end = Clock::now() + std::chrono::milliseconds(transfer.outcome.delayMs);
    opening.transfers.push_back(std::move(transfer));
    return success();
}

void DeviceNode::Transfer::cut(int cutStatus)
{
    outcome = {};
    status = cutStatus;
    ends = true;
    end = Clock::now();
}

void DeviceNode::Transfer::lose()
{
    if (status != -ESHUTDOWN) // else it reports what was moved before
        cut(-ESHUTDOWN);
    end = Clock::now();
}

/** Hands back a transfer that has ended. */
DeviceNode::Answer DeviceNode::reap(Opening &opening, UMockdevIoctlData *argument)
{
    const bool isGone = !m_device.isPluggedIn();
    if (isGone)
        for (Transfer &transfer : opening.transfers)
            transfer.lose();
    const auto now = Clock::now();
    const auto transfer =
        std::find_if(opening.transfers.begin(), opening.transfers.end(),
                     [now](const Transfer &one) { return one.ends && one.end <= now; });
    if (transfer == opening.transfers.end())
        return failure(isGone ? ENODEV : EAGAIN);

    auto &urb = valueOf<usbdevfs_urb>(transfer->request);
    urb.status = transfer->status;
    urb.actual_length = transfer->outcome.count;
    if (transfer->isRead && transfer->outcome.count > 0)
        std::memcpy(transfer->buffer->data, transfer->outcome.data.constData(),
                    static_cast<std::size_t>(transfer->outcome.count));
    const DataRef handedBack = resolve<void *>(argument);
    umockdev_ioctl_data_set_ptr(handedBack.get(), 0, transfer->request.get());
    opening.transfers.erase(transfer);
    return success();
}

/** Ends a transfer, which is then handed back as any other. */
DeviceNode::Answer DeviceNode::discard(Opening &opening, UMockdevIoctlData *argument)
{
    m_calls << QStringLiteral("discard");
    unsigned long address = 0;
    std::memcpy(&address, argument->data, sizeof(address));
    const auto transfer = std::find_if(
        opening.transfers.begin(), opening.transfers.end(),
        [address](const Transfer &one) { return one.request->client_addr == address; });
    if (transfer == opening.transfers.end())
        return failure(EINVAL);
    transfer->cut(-ENOENT);
    return success();
}

} // namespace usb_test
