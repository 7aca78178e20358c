#pragma once

// An IN endpoint of a high-speed device: what waits there, handed out packet by packet.

#include <QByteArray>

#include "simulator/reader/usb_device.h"

namespace simulator
{

/** Bytes of a full packet of a high-speed bulk endpoint. */
constexpr int BULK_PACKET_SIZE = 512;

/** Holds at most one answer. It ends with a packet that is not full, an empty one if need be. */
class BulkInPipe
{
public:
    /** Lays an answer ready, in place of one that waits. */
    void put(const QByteArray &answer);

    /** Forgets what waits. */
    void clear() { m_waiting = false; }

    /**
     * One transfer of at most `capacity` bytes: until a packet that is not full, or until the room
     * is used up. A packet for which there is not enough room ends it TooLong, and the answer is
     * lost.
     */
    UsbTransfer take(int capacity);

private:
    QByteArray m_answer;
    int m_taken = 0;
    bool m_waiting = false;
};

} // namespace simulator
