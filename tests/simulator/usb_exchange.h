#pragma once

// A simulated reader on USB with what lies on it, and the frames that the tests expect of it, made
// without the simulator's own code.

#include <QByteArray>
#include <QString>

#include "simulator/reader/virtual_reader.h"
#include "tests/usb/reader_frames.h"

namespace frames
{

QByteArray hex(const char *digits);

QByteArray notSelected(unsigned char status);
QByteArray statusOnly(unsigned char status); ///< 11 bytes

/** The frame around `payload`. */
QByteArray frame(const QByteArray &payload);

} // namespace frames

constexpr std::uint8_t OUT_ENDPOINT = 0x02;
constexpr std::uint8_t IN_ENDPOINT = 0x81;

/** Room for any answer. */
constexpr int ROOM = 4097;

/** A reader with a card on it (none for an empty name) and faults beside the card's own. */
class ReaderOnUsb
{
public:
    explicit ReaderOnUsb(const char *card = "resident", const QString &faults = QString());

    simulator::VirtualReader &operator*() { return m_reader; }
    simulator::VirtualReader *operator->() { return &m_reader; }

    void put(const char *card);
    void set(const QString &faults);

    /** Writes a command that must be taken whole, and reads its answer. */
    simulator::UsbTransfer ask(const QByteArray &command, int room = ROOM);

    /** The bytes of an answer that must come without a failure. */
    QByteArray answer(const QByteArray &command, int room = ROOM);

    /** Looks the card up and selects it; both must succeed. */
    void selectCard();

private:
    simulator::VirtualReader m_reader;
};
