// The states of the simulated reader on USB, its answers in them, and its faults.

#include "simulator/reader/virtual_reader.h"

#include <utility>

#include "reader/reader_frames.h"
#include "simulator/card/raw_record.h"
#include "simulator/card/reader_frame.h"
#include "simulator/reader/reader_descriptors.h"

namespace simulator
{

namespace
{

template <std::size_t size>
QByteArray bytesOf(const std::array<unsigned char, size> &frame)
{
    return {reinterpret_cast<const char *>(frame.data()), static_cast<int>(size)};
}

std::optional<UsbExchange> exchangeOf(const QByteArray &command)
{
    if (command == bytesOf(reader_frames::LOOKUP_COMMAND))
        return UsbExchange::LOOKUP;
    if (command == bytesOf(reader_frames::SELECT_COMMAND))
        return UsbExchange::SELECT;
    if (command == bytesOf(reader_frames::READ_COMMAND))
        return UsbExchange::READ;
    return std::nullopt;
}

// A refusal that is as long as the answer of success would be, for a host tells the two apart by
// their content only when they are.
QByteArray refusal(UsbRefusal reason, int frameSize = reader_frames::STATUS_ONLY_ANSWER_SIZE)
{
    constexpr int STATUS_END = 2;
    QByteArray payload(frameSize - reader_frames::HEAD_SIZE - reader_frames::CHECKSUM_SIZE, '\0');
    payload[STATUS_END] = static_cast<char>(reason);
    return answerFrame(payload);
}

// The answer as the faults let it come.
QByteArray distorted(QByteArray answer, const ExchangeFaults &faults)
{
    if (faults.answerReplaced)
        answer = *faults.answerReplaced;
    if (faults.answerCorrupted && *faults.answerCorrupted < answer.size()) {
        const int offset = *faults.answerCorrupted;
        answer[offset] = static_cast<char>(~answer.at(offset));
    }
    return answer.left(faults.answerCut.value_or(answer.size()));
}

int commandNumber(UsbExchange exchange)
{
    return 2 * static_cast<int>(exchange) + 1;
}

int answerNumber(UsbExchange exchange)
{
    return commandNumber(exchange) + 1;
}

} // namespace

VirtualReader::VirtualReader(CardSlot slot, UsbIds ids) : m_slot(std::move(slot)), m_ids(ids) {}

void VirtualReader::unplug()
{
    m_pluggedIn = false;
    forget();
}

void VirtualReader::plugIn()
{
    m_pluggedIn = true;
    forget();
}

void VirtualReader::forget()
{
    m_found.reset();
    m_selected.reset();
    m_answered.reset();
    m_answers.clear();
    m_loop.clear();
}

QByteArray VirtualReader::descriptors() const
{
    return readerDescriptors(m_ids);
}

bool VirtualReader::isPluggedIn() const
{
    return m_pluggedIn && !m_slot.faults().unplugged;
}

bool VirtualReader::failsToOpen() const
{
    return m_slot.faults().openFails.has_value();
}

bool VirtualReader::deniesAccess() const
{
    return m_slot.faults().permissionDenied.has_value();
}

bool VirtualReader::isClaimedElsewhere() const
{
    return m_slot.faults().claimedElsewhere.has_value();
}

bool VirtualReader::refusesReset() const
{
    return m_slot.faults().resetRefused.has_value();
}

void VirtualReader::reset()
{
    if (!refusesReset())
        forget();
}

UsbTransfer VirtualReader::write(std::uint8_t endpoint, const QByteArray &bytes)
{
    if (!isPluggedIn())
        return taken(UsbStatus::UNPLUGGED, 0);
    if (bytes.size() > LARGEST_FRAME)
        return taken(UsbStatus::STALLED, 0);
    switch (endpoint) {
    case COMMAND_ENDPOINT:
        return writeCommand(bytes);
    case LOOP_OUT_ENDPOINT:
        m_loop.put(bytes);
        return taken(UsbStatus::DONE, bytes.size());
    default:
        return taken(UsbStatus::STALLED, 0);
    }
}

UsbTransfer VirtualReader::writeCommand(const QByteArray &bytes)
{
    if (const std::optional<UsbExchange> exchange = exchangeOf(bytes))
        return writeExchange(*exchange, bytes);
    if (bytes.isEmpty())
        return taken(UsbStatus::DONE, 0);
    m_answered.reset();
    if (isBareHead(bytes)) {
        m_answers.put(bytes);
    } else {
        m_answers.put(refusal(isCommandFrame(bytes) ? UsbRefusal::UNKNOWN_COMMAND
                                                    : UsbRefusal::MALFORMED_COMMAND));
    }
    return taken(UsbStatus::DONE, bytes.size());
}

UsbTransfer VirtualReader::writeExchange(UsbExchange exchange, const QByteArray &bytes)
{
    const Faults faults = m_slot.faults();
    if (faults.unpluggedBefore == commandNumber(exchange)) {
        unplug();
        return taken(UsbStatus::UNPLUGGED, 0);
    }
    const ExchangeFaults &ofExchange = faults.of(exchange);
    if (ofExchange.commandMissing)
        return taken(UsbStatus::PENDING, 0);
    UsbTransfer transfer = taken(UsbStatus::DONE, bytes.size());
    if (faults.unpluggedDuring == commandNumber(exchange)) {
        unplug();
        transfer = taken(UsbStatus::UNPLUGGED, bytes.size() / 2);
    } else if (ofExchange.commandStalled) {
        transfer = taken(UsbStatus::STALLED, 0);
    } else if (ofExchange.commandBroken) {
        transfer = taken(UsbStatus::BROKEN, 0);
    } else if (ofExchange.commandCut) {
        // The reader waits for the rest in vain.
        m_answered.reset();
        m_answers.clear();
        transfer.count = *ofExchange.commandCut;
    } else {
        m_answers.put(distorted(answerTo(exchange), ofExchange));
        m_answered = exchange;
    }
    transfer.delayMs = ofExchange.commandDelayed.value_or(0);
    return transfer;
}

UsbTransfer VirtualReader::read(std::uint8_t endpoint, int capacity)
{
    if (!isPluggedIn())
        return ended(UsbStatus::UNPLUGGED);
    switch (endpoint) {
    case ANSWER_ENDPOINT:
        return m_answered ? readAnswerOf(*m_answered, capacity) : m_answers.take(capacity);
    case LOOP_IN_ENDPOINT:
        return m_loop.take(capacity);
    default:
        return ended(UsbStatus::STALLED);
    }
}

UsbTransfer VirtualReader::readAnswerOf(UsbExchange exchange, int capacity)
{
    const Faults faults = m_slot.faults();
    const ExchangeFaults &ofExchange = faults.of(exchange);
    if (faults.unpluggedBefore == answerNumber(exchange)) {
        unplug();
        return ended(UsbStatus::UNPLUGGED);
    }
    if (ofExchange.answerMissing)
        return ended(UsbStatus::PENDING);
    m_answered.reset();
    UsbTransfer transfer = m_answers.take(capacity);
    if (faults.unpluggedDuring == answerNumber(exchange)) {
        unplug();
        transfer = ended(UsbStatus::UNPLUGGED, transfer.data.left(transfer.count / 2));
    } else if (ofExchange.answerStalled || ofExchange.answerBroken) {
        m_answers.clear();
        transfer = ended(ofExchange.answerStalled ? UsbStatus::STALLED : UsbStatus::BROKEN);
    } else if (ofExchange.answerTooLong) {
        m_answers.clear();
        transfer.status = UsbStatus::TOO_LONG;
    }
    transfer.delayMs = ofExchange.answerDelayed.value_or(0);
    if (exchange == UsbExchange::READ)
        transfer.delayMs += faults.delayMs.value_or(0);
    return transfer;
}

QByteArray VirtualReader::answerTo(UsbExchange exchange)
{
    switch (exchange) {
    case UsbExchange::LOOKUP:
        break;
    case UsbExchange::SELECT:
        return answerSelect();
    case UsbExchange::READ:
        return answerRead();
    }
    return answerLookup();
}

bool VirtualReader::isOnReader(const std::optional<unsigned int> &placement) const
{
    return m_slot.card() != nullptr && placement == m_slot.placement();
}

QByteArray VirtualReader::answerLookup()
{
    QByteArray success = bytesOf(reader_frames::LOOKUP_ANSWER);
    m_found.reset();
    m_selected.reset();
    if (!m_slot.findCard())
        return refusal(UsbRefusal::NO_CARD, success.size());
    m_found = m_slot.placement();
    return success;
}

QByteArray VirtualReader::answerSelect()
{
    QByteArray success = bytesOf(reader_frames::SELECT_ANSWER);
    m_selected.reset();
    if (!m_found)
        return refusal(UsbRefusal::OUT_OF_ORDER, success.size());
    if (!isOnReader(m_found)) {
        m_found.reset();
        return refusal(UsbRefusal::NO_CARD, success.size());
    }
    m_selected = m_found;
    return success;
}

QByteArray VirtualReader::answerRead()
{
    if (!m_selected)
        return refusal(UsbRefusal::OUT_OF_ORDER);
    const Faults faults = m_slot.faults();
    if (faults.cardRemoved)
        m_slot.removeCard();
    if (!isOnReader(m_selected)) {
        m_found.reset();
        m_selected.reset();
        return refusal(UsbRefusal::NO_CARD);
    }
    if (m_slot.failsTransiently() || faults.readFails)
        return refusal(UsbRefusal::CARD_NOT_READ);
    return readAnswer(*m_slot.card(), faults);
}

} // namespace simulator
