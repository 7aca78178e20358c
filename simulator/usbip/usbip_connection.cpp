// Carries requests out on the device and keeps the transfers that take their time.

#include "simulator/usbip/usbip_connection.h"

#include <algorithm>
#include <set>

#include "simulator/reader/usb_standard.h"
#include "simulator/translated_texts.h"

namespace simulator
{

namespace
{

SIMULATOR_TEXTS(Usbip)

// Linux error numbers, which the protocol carries on every machine.
constexpr int STATUS_BROKEN_PIPE = -32;      // EPIPE: the endpoint stalls
constexpr int STATUS_PROTOCOL_ERROR = -71;   // EPROTO
constexpr int STATUS_OVERFLOW = -75;         // EOVERFLOW
constexpr int STATUS_UNLINKED = -104;        // ECONNRESET
constexpr int STATUS_SHUT_DOWN = -108;       // ESHUTDOWN
constexpr int STATUS_REMOTE_IO_ERROR = -121; // EREMOTEIO: less came than was asked for

int statusNumber(const UsbTransfer &outcome)
{
    switch (outcome.status) {
    case UsbStatus::DONE:
        return 0;
    case UsbStatus::STALLED:
        return STATUS_BROKEN_PIPE;
    case UsbStatus::BROKEN:
        return STATUS_PROTOCOL_ERROR;
    case UsbStatus::TOO_LONG:
        return STATUS_OVERFLOW;
    case UsbStatus::UNPLUGGED:
    case UsbStatus::PENDING: // never ends, see `start`
        break;
    }
    return STATUS_SHUT_DOWN;
}

} // namespace

UsbipConnection::UsbipConnection(UsbipExport &exported)
    : m_export(exported), m_control(exported.device)
{
}

UsbipConnection::~UsbipConnection()
{
    end({});
}

bool UsbipConnection::wantsBytes() const
{
    return !m_isOver && m_toSend.size() < MOST_BYTES_TO_SEND;
}

void UsbipConnection::receive(const QByteArray &bytes, std::int64_t now)
{
    if (m_isOver)
        return;
    if (!wantsBytes()) {
        end(tr("it sends on without reading what it is sent"));
        return;
    }
    m_reader.append(bytes);
    advance(now);
}

void UsbipConnection::advance(std::int64_t now)
{
    endDueTransfers(now);
    endIfUnplugged();
    serveRequests(now);
}

std::optional<std::int64_t> UsbipConnection::nextTime() const
{
    const auto next = nextToEnd();
    return next == m_transfers.end() ? std::nullopt : next->end;
}

QByteArray UsbipConnection::takeBytesToSend()
{
    QByteArray bytes;
    bytes.swap(m_toSend);
    return bytes;
}

void UsbipConnection::serveRequests(std::int64_t now)
{
    while (wantsBytes()) {
        const std::optional<UsbipRequest> request = m_reader.next();
        if (!request)
            break;
        std::visit([&](const auto &known) { serve(known, now); }, *request);
        endDueTransfers(now);
        endIfUnplugged();
    }
    if (!m_isOver && !m_reader.problem().isEmpty())
        end(m_reader.problem());
}

void UsbipConnection::serve(const UsbipListRequest & /*request*/, std::int64_t /*now*/)
{
    const UsbDevice &device = m_export.device;
    m_toSend += usbipListReply(device.isPluggedIn()
                                   ? std::make_optional(describeDevice(device.descriptors()))
                                   : std::nullopt);
    end({});
}

void UsbipConnection::serve(const UsbipImportRequest &request, std::int64_t /*now*/)
{
    UsbDevice &device = m_export.device;
    UsbipStatus status = UsbipStatus::DONE;
    if (request.busId != USBIP_BUS_ID || !device.isPluggedIn())
        status = UsbipStatus::NO_SUCH_DEVICE;
    else if (m_export.isImported)
        status = UsbipStatus::IN_USE;
    if (status != UsbipStatus::DONE) {
        m_toSend += usbipImportReply(status, std::nullopt);
        end({});
        return;
    }
    m_toSend += usbipImportReply(status, describeDevice(device.descriptors()));
    m_export.isImported = true;
    m_hasDevice = true;
    device.reset();
    m_reader.startTransfers();
}

void UsbipConnection::serve(const UsbipSubmit &submit, std::int64_t now)
{
    const auto sameNumber = [&](const Transfer &transfer) {
        return transfer.submit.number == submit.number;
    };
    if (std::any_of(m_transfers.begin(), m_transfers.end(), sameNumber)) {
        end(tr("it gives the number %1 to two transfers at a time").arg(submit.number));
        return;
    }
    if ((submit.endpoint & ~USB_ENDPOINT_IN) == 0) {
        answerControl(submit);
        return;
    }
    if (m_transfers.size() == MOST_PENDING_TRANSFERS) {
        end(tr("more than %1 of its transfers wait at a time").arg(MOST_PENDING_TRANSFERS));
        return;
    }
    Transfer transfer;
    transfer.submit = submit;
    m_transfers.push_back(transfer);
    startTransfers(now);
}

void UsbipConnection::serve(const UsbipUnlink &unlink, std::int64_t now)
{
    const auto found =
        std::find_if(m_transfers.begin(), m_transfers.end(), [&](const Transfer &transfer) {
            return transfer.submit.number == unlink.submitNumber;
        });
    if (found == m_transfers.end()) {
        m_toSend += usbipUnlinkReply(unlink.number, 0);
        return;
    }
    m_transfers.erase(found);
    m_toSend += usbipUnlinkReply(unlink.number, STATUS_UNLINKED);
    startTransfers(now);
}

void UsbipConnection::answerControl(const UsbipSubmit &submit)
{
    // The data's direction is given in two places; without data, the one in the request counts
    // alone.
    const UsbSetup &setup = submit.setup;
    const bool isContradictory = setup.length != 0 && setup.isIn() != submit.isIn();
    const bool hasRoom = setup.length <= submit.length;
    if (!m_export.device.isPluggedIn())
        reply(submit, ended(UsbStatus::UNPLUGGED));
    else if (isContradictory || !hasRoom)
        reply(submit, ended(UsbStatus::STALLED));
    else
        reply(submit, m_control.answer(setup));
}

void UsbipConnection::startTransfers(std::int64_t now)
{
    std::set<std::uint8_t> busyEndpoints;
    for (Transfer &transfer : m_transfers) {
        const bool isFirst = busyEndpoints.insert(transfer.submit.endpoint).second;
        if (isFirst && !transfer.isStarted)
            start(&transfer, now);
    }
}

void UsbipConnection::start(Transfer *transfer, std::int64_t now)
{
    UsbDevice &device = m_export.device;
    const UsbipSubmit &submit = transfer->submit;
    transfer->isStarted = true;
    if (!device.isPluggedIn())
        transfer->outcome = ended(UsbStatus::UNPLUGGED);
    else if (submit.isIn())
        transfer->outcome = device.read(submit.endpoint, submit.length);
    else
        transfer->outcome = device.write(submit.endpoint, submit.data);
    transfer->end.reset();
    if (transfer->outcome.status != UsbStatus::PENDING)
        transfer->end = now + std::max(0, transfer->outcome.delayMs);
}

// A read that found nothing to take may find something after a write.
void UsbipConnection::restartWaitingReads()
{
    for (Transfer &transfer : m_transfers) {
        if (transfer.submit.isIn() && transfer.isStarted && !transfer.end)
            transfer.isStarted = false;
    }
}

UsbipConnection::Transfers::const_iterator UsbipConnection::nextToEnd() const
{
    auto next = m_transfers.end();
    for (auto it = m_transfers.begin(); it != m_transfers.end(); ++it) {
        if (it->end && (next == m_transfers.end() || *it->end < *next->end))
            next = it;
    }
    return next;
}

void UsbipConnection::endDueTransfers(std::int64_t now)
{
    for (auto next = nextToEnd(); next != m_transfers.end() && *next->end <= now;
         next = nextToEnd()) {
        Transfers ended;
        ended.splice(ended.begin(), m_transfers, next);
        const Transfer &transfer = ended.front();
        reply(transfer.submit, transfer.outcome);
        if (!transfer.submit.isIn() && transfer.outcome.status == UsbStatus::DONE)
            restartWaitingReads();
        startTransfers(now);
    }
}

void UsbipConnection::reply(const UsbipSubmit &submit, const UsbTransfer &outcome)
{
    int status = statusNumber(outcome);
    if (!submit.isIn()) {
        const int count = std::clamp(outcome.count, 0, submit.length);
        m_toSend += usbipSubmitReply(submit.number, status, count, {});
        return;
    }
    // A client that is sent more than it asked for gives the device up.
    const QByteArray data = outcome.data.left(submit.length);
    if (status == 0 && submit.isShortRefused && data.size() < submit.length)
        status = STATUS_REMOTE_IO_ERROR;
    m_toSend += usbipSubmitReply(submit.number, status, data.size(), data);
}

void UsbipConnection::endIfUnplugged()
{
    if (m_isOver || !m_hasDevice || m_export.device.isPluggedIn())
        return;
    // The transfer during which it goes ends first.
    const bool isGoing =
        std::any_of(m_transfers.begin(), m_transfers.end(), [](const Transfer &transfer) {
            return transfer.isStarted && transfer.outcome.status == UsbStatus::UNPLUGGED;
        });
    if (!isGoing)
        end(tr("the reader was unplugged"));
}

void UsbipConnection::end(const QString &problem)
{
    m_isOver = true;
    m_problem = problem;
    m_transfers.clear();
    if (m_hasDevice)
        m_export.isImported = false;
    m_hasDevice = false;
}

} // namespace simulator
