// What clients of the USB/IP server send: two connections, one after the other, to one reader.

#include "fuzz/fuzz_target.h"

#include <algorithm>

#include <QByteArray>

#include "simulator/card/card_library.h"
#include "simulator/reader/virtual_reader.h"
#include "simulator/usbip/usbip_connection.h"

namespace
{

using simulator::UsbipConnection;
using simulator::UsbipExport;

/** Bits of the first byte of an input. */
enum Mode : std::uint8_t {
    HAS_CARD = 0x01,
    IS_IMPORTED = 0x02, ///< the input begins after a client's request for the device
    TAKES_REPLIES = 0x04,
    IS_CUT = 0x08, ///< bytes come in parts, as the high bits say
};
constexpr int PART_SHIFT = 4;

/** Most that may wait to be sent: what is let in, and the answers of all that was waiting. */
constexpr int MOST_TO_SEND = UsbipConnection::MOST_BYTES_TO_SEND +
                             static_cast<int>(UsbipConnection::MOST_PENDING_TRANSFERS + 2) *
                                 (simulator::USBIP_LONGEST_TRANSFER + 48);
constexpr std::int64_t STEP_MS = 100;

const QByteArray IMPORT_REQUEST =
    QByteArray::fromHex("0111800300000000312d31") + QByteArray(29, '\0');

simulator::CardSlot slotWithCard()
{
    simulator::CardSlot slot;
    QString problem;
    demand(
        slot.putCard(QStringLiteral("resident-no-fingerprint"), simulator::PutAs::PLAIN, &problem));
    return slot;
}

void converse(UsbipExport *exported, const QByteArray &bytes, std::uint8_t mode)
{
    UsbipConnection connection(*exported);
    std::int64_t now = 0;
    const int part = (mode & IS_CUT) != 0 ? 1 + (mode >> PART_SHIFT) * 8 : bytes.size();
    for (int position = 0; position < bytes.size() && !connection.isOver(); position += part) {
        if (connection.wantsBytes())
            connection.receive(bytes.mid(position, part), now);
        const auto next = connection.nextTime();
        now = std::max(now, next.value_or(now)) + STEP_MS;
        connection.advance(now);
        if ((mode & TAKES_REPLIES) != 0)
            demand(connection.takeBytesToSend().size() <= MOST_TO_SEND);
    }
    demand(connection.takeBytesToSend().size() <= MOST_TO_SEND);
    demand(connection.isOver() || connection.problem().isEmpty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const simulator::CardSlot withCard = slotWithCard();
    if (size == 0)
        return 0;
    const std::uint8_t mode = data[0];
    simulator::VirtualReader reader((mode & HAS_CARD) != 0 ? withCard : simulator::CardSlot());
    UsbipExport exported(reader);
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), static_cast<int>(size - 1));
    converse(&exported, (mode & IS_IMPORTED) != 0 ? IMPORT_REQUEST + bytes : bytes, mode);
    demand(!exported.isImported);
    converse(&exported, IMPORT_REQUEST, 0);
    return 0;
}
