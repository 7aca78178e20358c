#pragma once

// A device that expects exactly the transfers of a script, byte by byte, and answers as it says.

#include <deque>

#include <QStringList>

#include "simulator/reader/usb_device.h"

namespace usb_test
{

class ScriptedDevice : public simulator::UsbDevice
{
public:
    explicit ScriptedDevice(const UsbIds &ids = simulator::DEFAULT_READER_IDS) : m_ids(ids) {}

    // The script, in order; each line is one transfer.

    /** A write of exactly `bytes`, all of them taken. */
    ScriptedDevice &expectWrite(std::uint8_t endpoint, const QByteArray &bytes);

    /** A write of exactly `bytes` that ends as `outcome` says. */
    ScriptedDevice &expectWrite(std::uint8_t endpoint, const QByteArray &bytes,
                                const simulator::UsbTransfer &outcome);

    /** A read with room for exactly `capacity` bytes, answered with `answer`. */
    ScriptedDevice &expectRead(std::uint8_t endpoint, int capacity, const QByteArray &answer);

    /** A read with room for exactly `capacity` bytes that ends as `outcome` says. */
    ScriptedDevice &expectRead(std::uint8_t endpoint, int capacity,
                               const simulator::UsbTransfer &outcome);

    // What stands in the way of using it.
    void setPluggedIn(bool isPluggedIn) { m_isPluggedIn = isPluggedIn; }
    void setClaimedElsewhere(bool isClaimed) { m_isClaimedElsewhere = isClaimed; }
    void setRefusesReset(bool refuses) { m_refusesReset = refuses; }

    [[nodiscard]] int resets() const { return m_resets; }

    /** Transfers that differ from the script, and lines of it that were not used. */
    [[nodiscard]] QStringList complaints() const;

    QByteArray descriptors() const override;
    bool isPluggedIn() const override { return m_isPluggedIn; }
    bool deniesAccess() const override { return false; }
    bool isClaimedElsewhere() const override { return m_isClaimedElsewhere; }
    bool refusesReset() const override { return m_refusesReset; }
    void reset() override { ++m_resets; }
    simulator::UsbTransfer write(std::uint8_t endpoint, const QByteArray &bytes) override;
    simulator::UsbTransfer read(std::uint8_t endpoint, int capacity) override;

private:
    struct Line {
        std::uint8_t endpoint;
        int size;
        QByteArray written; ///< of a write
        simulator::UsbTransfer outcome;
    };

    static QString textOf(const Line &line);
    simulator::UsbTransfer follow(const Line &asked);

    UsbIds m_ids;
    std::deque<Line> m_script;
    QStringList m_complaints;
    bool m_isPluggedIn = true;
    bool m_isClaimedElsewhere = false;
    bool m_refusesReset = false;
    int m_resets = 0;
};

} // namespace usb_test
