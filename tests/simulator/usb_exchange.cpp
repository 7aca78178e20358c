#include "tests/simulator/usb_exchange.h"

#include <gtest/gtest.h>

using simulator::UsbStatus;
using simulator::UsbTransfer;

namespace frames
{

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

QByteArray notSelected(unsigned char status)
{
    QByteArray payload(11, '\0');
    payload[2] = static_cast<char>(status);
    return frame(payload);
}

QByteArray statusOnly(unsigned char status)
{
    QByteArray payload(3, '\0');
    payload[2] = static_cast<char>(status);
    return frame(payload);
}

QByteArray frame(const QByteArray &payload)
{
    const int length = payload.size() + 1;
    QByteArray bytes = hex("AA AA AA 96 69");
    bytes += static_cast<char>(length >> 8);
    bytes += static_cast<char>(length & 0xFF);
    bytes += payload;
    char sum = 0;
    for (int i = 5; i < bytes.size(); ++i)
        sum = static_cast<char>(sum ^ bytes.at(i));
    return bytes + sum;
}

} // namespace frames

ReaderOnUsb::ReaderOnUsb(const char *card, const QString &faults)
{
    if (*card != '\0')
        put(card);
    set(faults);
}

void ReaderOnUsb::put(const char *card)
{
    QString problem;
    EXPECT_TRUE(
        m_reader.slot().putCard(QString::fromUtf8(card), simulator::PutAs::DESCRIBED, &problem))
        << problem.toStdString();
}

void ReaderOnUsb::set(const QString &faults)
{
    QString problem;
    EXPECT_TRUE(m_reader.slot().setFaults(faults, &problem)) << problem.toStdString();
}

UsbTransfer ReaderOnUsb::ask(const QByteArray &command, int room)
{
    const UsbTransfer written = m_reader.write(OUT_ENDPOINT, command);
    EXPECT_EQ(written.status, UsbStatus::DONE);
    EXPECT_EQ(written.count, command.size());
    return m_reader.read(IN_ENDPOINT, room);
}

QByteArray ReaderOnUsb::answer(const QByteArray &command, int room)
{
    const UsbTransfer transfer = ask(command, room);
    EXPECT_EQ(transfer.status, UsbStatus::DONE);
    EXPECT_EQ(transfer.count, transfer.data.size());
    return transfer.data;
}

void ReaderOnUsb::selectCard()
{
    EXPECT_EQ(answer(frames::LOOKUP, 15), frames::LOOKUP_ANSWER);
    EXPECT_EQ(answer(frames::SELECT, 19), frames::SELECT_ANSWER);
}
