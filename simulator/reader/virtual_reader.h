#pragma once

// The reader as a USB device: the protocol's exchanges, answered from a card slot.

#include <optional>

#include "simulator/reader/bulk_in_pipe.h"
#include "simulator/reader/card_slot.h"
#include "simulator/reader/usb_device.h"

namespace simulator
{

/**
 * Last byte of the status 00 00 xx with which the simulated reader refuses. The values are its own;
 * simulator/README.md says when each comes.
 */
enum class UsbRefusal : unsigned char {
    NO_CARD = 0x80,
    UNKNOWN_COMMAND = 0xE1,
    OUT_OF_ORDER = 0xE3,
    CARD_NOT_READ = 0xE4,
};

/**
 * A vendor-specific high-speed device with one interface. A card is looked up (found), selected and
 * read; each step needs the one before and the same card still on the reader. Looking up starts
 * over; a selected card can be read any number of times.
 *
 * An answer waits until it is fetched or the next command is taken. Pipes 0x06 and 0x85 are a
 * loop-back: what was written last to the former is read once from the latter. So is the bare head
 * of a frame, 7 bytes, written to 0x02: it comes back on 0x81.
 *
 * The environment is not looked at: call `slot().followEnvironment()` for that.
 */
class VirtualReader : public UsbDevice
{
public:
    static constexpr std::uint8_t COMMAND_ENDPOINT = 0x02;
    static constexpr std::uint8_t ANSWER_ENDPOINT = 0x81;
    static constexpr std::uint8_t LOOP_OUT_ENDPOINT = 0x06;
    static constexpr std::uint8_t LOOP_IN_ENDPOINT = 0x85;

    explicit VirtualReader(CardSlot slot = {}, UsbIds ids = DEFAULT_READER_IDS);

    /** The card and the faults; changes count from the next transfer on. */
    [[nodiscard]] CardSlot &slot() { return m_slot; }

    /** Takes the reader off the bus, and with it what it was about to do. */
    void unplug();

    /** Plugs it in, as new; in vain while the fault `unplugged` is set. */
    void plugIn();

    [[nodiscard]] QByteArray descriptors() const override;
    [[nodiscard]] bool isPluggedIn() const override;
    [[nodiscard]] bool failsToOpen() const override;
    [[nodiscard]] bool deniesAccess() const override;
    [[nodiscard]] bool isClaimedElsewhere() const override;
    [[nodiscard]] bool refusesReset() const override;

    /** Forgets answers, the found and the selected card. Does nothing when the reset is refused. */
    void reset() override;

    /** Stalls on an endpoint that there is not, and on more bytes than a frame can have. */
    UsbTransfer write(std::uint8_t endpoint, const QByteArray &bytes) override;

    /** Stalls on an endpoint that there is not. */
    UsbTransfer read(std::uint8_t endpoint, int capacity) override;

private:
    void forget();
    UsbTransfer writeCommand(const QByteArray &bytes);
    UsbTransfer writeExchange(UsbExchange exchange, const QByteArray &bytes);
    UsbTransfer readAnswerOf(UsbExchange exchange, int capacity);
    [[nodiscard]] QByteArray answerTo(UsbExchange exchange);
    [[nodiscard]] QByteArray answerLookup();
    [[nodiscard]] QByteArray answerSelect();
    [[nodiscard]] QByteArray answerRead();
    [[nodiscard]] bool isOnReader(const std::optional<unsigned int> &placement) const;

    CardSlot m_slot;
    UsbIds m_ids;
    bool m_pluggedIn = true;
    std::optional<unsigned int> m_found;    ///< the placement that a lookup has seen
    std::optional<unsigned int> m_selected; ///< the placement that a select has accepted
    std::optional<UsbExchange> m_answered;  ///< the exchange whose answer waits, none of it fetched
    BulkInPipe m_answers;
    BulkInPipe m_loop;
};

} // namespace simulator
