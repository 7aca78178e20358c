#include "tests/usb/scripted_device.h"

namespace usb_test
{

using simulator::UsbStatus;
using simulator::UsbTransfer;

ScriptedDevice &ScriptedDevice::expectWrite(std::uint8_t endpoint, const QByteArray &bytes)
{
    return expectWrite(endpoint, bytes, taken(UsbStatus::DONE, bytes.size()));
}

ScriptedDevice &ScriptedDevice::expectWrite(std::uint8_t endpoint, const QByteArray &bytes,
                                            const UsbTransfer &outcome)
{
    m_script.push_back({endpoint, bytes.size(), bytes, outcome});
    return *this;
}

ScriptedDevice &ScriptedDevice::expectRead(std::uint8_t endpoint, int capacity,
                                           const QByteArray &answer)
{
    return expectRead(endpoint, capacity, ended(UsbStatus::DONE, answer));
}

ScriptedDevice &ScriptedDevice::expectRead(std::uint8_t endpoint, int capacity,
                                           const UsbTransfer &outcome)
{
    m_script.push_back({endpoint, capacity, {}, outcome});
    return *this;
}

QStringList ScriptedDevice::complaints() const
{
    QStringList complaints = m_complaints;
    for (const Line &line : m_script)
        complaints << QStringLiteral("not used: ") + textOf(line);
    return complaints;
}

QByteArray ScriptedDevice::descriptors() const
{
    const auto low = [](std::uint16_t number) { return static_cast<char>(number & 0xFF); };
    const auto high = [](std::uint16_t number) { return static_cast<char>(number >> 8); };
    QByteArray bytes = QByteArray::fromHex("12010002ff000040");
    bytes += {low(m_ids.vendor)};
    bytes += {high(m_ids.vendor)};
    bytes += {low(m_ids.product)};
    bytes += {high(m_ids.product)};
    bytes += QByteArray::fromHex("000100000001"       // release 1.0, no texts, one configuration
                                 "09022e000101008032" // configuration, 46 bytes, one interface
                                 "0904000004ff000000" // interface 0, four endpoints
                                 "07050202400000"
                                 "07058102400000"
                                 "07050602400000"
                                 "07058502400000");
    return bytes;
}

UsbTransfer ScriptedDevice::write(std::uint8_t endpoint, const QByteArray &bytes)
{
    return follow({endpoint, bytes.size(), bytes, {}});
}

UsbTransfer ScriptedDevice::read(std::uint8_t endpoint, int capacity)
{
    return follow({endpoint, capacity, {}, {}});
}

UsbTransfer ScriptedDevice::follow(const Line &asked)
{
    if (m_script.empty()) {
        m_complaints << QStringLiteral("after the end of the script: ") + textOf(asked);
        return ended(UsbStatus::STALLED);
    }
    const Line expected = m_script.front();
    m_script.pop_front();
    if (asked.endpoint != expected.endpoint || asked.size != expected.size ||
        asked.written != expected.written) {
        m_complaints << textOf(asked) + QStringLiteral(" instead of: ") + textOf(expected);
        return ended(UsbStatus::STALLED);
    }
    if (expected.outcome.status == UsbStatus::UNPLUGGED)
        m_isPluggedIn = false;
    return expected.outcome;
}

QString ScriptedDevice::textOf(const Line &line)
{
    const bool isRead = (line.endpoint & 0x80) != 0;
    return QStringLiteral("%1 0x%2 of %3 bytes %4")
        .arg(isRead ? QStringLiteral("read from") : QStringLiteral("write to"))
        .arg(line.endpoint, 2, 16, QLatin1Char('0'))
        .arg(line.size)
        .arg(QString::fromLatin1(line.written.left(32).toHex(' ')))
        .trimmed();
}

} // namespace usb_test
