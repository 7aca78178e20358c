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

/** Most bytes that a frame's length field can count, the field and all before it included. */
constexpr int LARGEST_FRAME = reader_frames::HEAD_SIZE + 0xFFFF;

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

// Whether `bytes` are preamble and length of a frame and nothing else.
bool isBareHead(const QByteArray &bytes)
{
    return bytes.size() == reader_frames::HEAD_SIZE &&
           bytes.startsWith(bytesOf(reader_frames::PREAMBLE));
}

// A refusal that is as long as the answer of success would be, because a host distinguishes the two
// by their content only when they are.
QByteArray refusal(UsbRefusal reason, int frameSize = reader_frames::STATUS_ONLY_ANSWER_SIZE)
{
    constexpr int STATUS_END = 2;
    QByteArray payload(frameSize - reader_frames::HEAD_SIZE - reader_frames::CHECKSUM_SIZE, '\0');
    payload[STATUS_END] = static_cast<char>(reason);
    return answerFrame(payload);
}

// The answer as the faults let it come.
QByteArray distorted(QByteArray answer, const Faults &faults, UsbExchange exchange)
{
    if (faults.has(FaultKind::ANSWER_REPLACED, exchange))
        answer = faults.bytes(FaultKind::ANSWER_REPLACED, exchange);
    const auto offset = faults.number(FaultKind::ANSWER_CORRUPTED, exchange);
    if (offset && *offset < answer.size())
        answer[*offset] = static_cast<char>(~answer.at(*offset));
    return answer.left(faults.number(FaultKind::ANSWER_CUT, exchange).value_or(answer.size()));
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
    return m_pluggedIn && !m_slot.faults().has(FaultKind::UNPLUGGED);
}

bool VirtualReader::failsToOpen() const
{
    return m_slot.faults().has(FaultKind::OPEN_FAILS);
}

bool VirtualReader::deniesAccess() const
{
    return m_slot.faults().has(FaultKind::PERMISSION_DENIED);
}

bool VirtualReader::isClaimedElsewhere() const
{
    return m_slot.faults().has(FaultKind::CLAIMED_ELSEWHERE);
}

bool VirtualReader::refusesReset() const
{
    return m_slot.faults().has(FaultKind::RESET_REFUSED);
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
    m_answers.put(isBareHead(bytes) ? bytes : refusal(UsbRefusal::UNKNOWN_COMMAND));
    return taken(UsbStatus::DONE, bytes.size());
}

UsbTransfer VirtualReader::writeExchange(UsbExchange exchange, const QByteArray &bytes)
{
    const Faults faults = m_slot.faults();
    if (faults.number(FaultKind::UNPLUGGED_BEFORE) == commandNumber(exchange)) {
        unplug();
        return taken(UsbStatus::UNPLUGGED, 0);
    }
    if (faults.has(FaultKind::COMMAND_MISSING, exchange))
        return taken(UsbStatus::PENDING, 0);
    UsbTransfer transfer = taken(UsbStatus::DONE, bytes.size());
    if (faults.number(FaultKind::UNPLUGGED_DURING) == commandNumber(exchange)) {
        unplug();
        transfer = taken(UsbStatus::UNPLUGGED, bytes.size() / 2);
    } else if (faults.has(FaultKind::COMMAND_STALLED, exchange)) {
        transfer = taken(UsbStatus::STALLED, 0);
    } else if (faults.has(FaultKind::COMMAND_BROKEN, exchange)) {
        transfer = taken(UsbStatus::BROKEN, 0);
    } else if (const auto cut = faults.number(FaultKind::COMMAND_CUT, exchange)) {
        // The reader waits for the rest in vain.
        m_answered.reset();
        m_answers.clear();
        transfer.count = *cut;
    } else {
        m_answers.put(distorted(answerTo(exchange), faults, exchange));
        m_answered = exchange;
    }
    transfer.delayMs = faults.number(FaultKind::COMMAND_DELAYED, exchange).value_or(0);
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
    if (faults.number(FaultKind::UNPLUGGED_BEFORE) == answerNumber(exchange)) {
        unplug();
        return ended(UsbStatus::UNPLUGGED);
    }
    if (faults.has(FaultKind::ANSWER_MISSING, exchange))
        return ended(UsbStatus::PENDING);
    m_answered.reset();
    UsbTransfer transfer = m_answers.take(capacity);
    if (faults.number(FaultKind::UNPLUGGED_DURING) == answerNumber(exchange)) {
        unplug();
        transfer = ended(UsbStatus::UNPLUGGED, transfer.data.left(transfer.count / 2));
    } else if (faults.has(FaultKind::ANSWER_STALLED, exchange)) {
        m_answers.clear();
        transfer = ended(UsbStatus::STALLED);
    } else if (faults.has(FaultKind::ANSWER_BROKEN, exchange)) {
        m_answers.clear();
        transfer = ended(UsbStatus::BROKEN);
    } else if (faults.has(FaultKind::ANSWER_TOO_LONG, exchange)) {
        m_answers.clear();
        transfer.status = UsbStatus::TOO_LONG;
    }
    transfer.delayMs = faults.number(FaultKind::ANSWER_DELAYED, exchange).value_or(0);
    if (exchange == UsbExchange::READ)
        transfer.delayMs += faults.number(FaultKind::DELAY_MS).value_or(0);
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
    if (faults.has(FaultKind::CARD_REMOVED))
        m_slot.removeCard();
    if (!isOnReader(m_selected)) {
        m_found.reset();
        m_selected.reset();
        return refusal(UsbRefusal::NO_CARD);
    }
    if (m_slot.failsTransiently() || faults.has(FaultKind::READ_FAILS))
        return refusal(UsbRefusal::CARD_NOT_READ);
    return readAnswer(*m_slot.card(), faults);
}

} // namespace simulator
