// What a USB/IP client may send: the bytes of one connection to a simulated reader with a card.

#include "fuzz/fuzz_target.h"

#include "simulator/usbip_connection.h"
#include "simulator/virtual_reader.h"

namespace
{

using simulator::UsbipConnection;

/** Most that may wait to be sent: what is let in, and the answers of all that was waiting. */
constexpr int MOST_TO_SEND = UsbipConnection::MOST_BYTES_TO_SEND +
                             static_cast<int>(UsbipConnection::MOST_PENDING_TRANSFERS + 2) *
                                 (simulator::USBIP_LONGEST_TRANSFER + 48);

simulator::VirtualReader readerWithCard()
{
    simulator::CardSlot slot;
    QString problem;
    demand(slot.putCard(QStringLiteral("resident"), simulator::PutAs::Described, &problem));
    return simulator::VirtualReader(slot);
}

} // namespace

// The first byte tells in pieces of what size the others come.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    static simulator::VirtualReader reader = readerWithCard();
    reader.plugIn();
    simulator::UsbipExport exported(reader);
    {
        UsbipConnection connection(exported);
        const QByteArray bytes(reinterpret_cast<const char *>(data) + 1,
                               static_cast<int>(size) - 1);
        const int piece = data[0] + 1;
        std::int64_t now = 0;
        for (int offset = 0; offset < bytes.size() && connection.wantsBytes(); offset += piece) {
            connection.receive(bytes.mid(offset, piece), ++now);
            demand(connection.hasDevice() == exported.isImported);
            if (offset % 2 == 0) // otherwise the client is in no hurry to read
                demand(connection.takeBytesToSend().size() <= MOST_TO_SEND);
            connection.advance(now);
        }
        demand(connection.takeBytesToSend().size() <= MOST_TO_SEND);
        demand(!connection.isOver() || !connection.hasDevice());
    }
    demand(!exported.isImported);
    return 0;
}
