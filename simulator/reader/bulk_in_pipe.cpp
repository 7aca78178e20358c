// Cuts an answer into the transfers that the host asks for.

#include "simulator/reader/bulk_in_pipe.h"

#include <algorithm>

namespace simulator
{

void BulkInPipe::put(const QByteArray &answer)
{
    m_answer = answer;
    m_taken = 0;
    m_waiting = true;
}

UsbTransfer BulkInPipe::take(int capacity)
{
    UsbTransfer transfer;
    if (!m_waiting) {
        transfer.status = UsbStatus::PENDING;
        return transfer;
    }
    const int room = std::max(capacity, 0);
    const QByteArray rest = m_answer.mid(m_taken);
    transfer.data = rest.left(room);
    transfer.count = transfer.data.size();

    // Only full packets fill the room exactly, and then the host stops without the one that ends
    // the answer.
    const bool stopsAtFullPacket = room > 0 && room % BULK_PACKET_SIZE == 0 && rest.size() >= room;
    if (stopsAtFullPacket) {
        m_taken += transfer.count;
        return transfer;
    }
    if (rest.size() > room)
        transfer.status = UsbStatus::TOO_LONG;
    clear();
    return transfer;
}

} // namespace simulator
