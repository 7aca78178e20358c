#pragma once

// A USB device whose transfers end as a test says, in order. A request beyond the script
// stalls. It records the requests.

#include <deque>
#include <vector>

#include "simulator/reader/usb_device.h"

/** What the device was asked, in the order in which it was. */
struct DeviceCall {
    enum Kind { Write, Read, Reset } kind = Reset;
    int endpoint = 0;
    QByteArray bytes;
    int capacity = 0;
};
bool operator==(const DeviceCall &left, const DeviceCall &right);

class RecordingDevice : public simulator::UsbDevice
{
public:
    std::deque<simulator::UsbTransfer> writes;
    std::deque<simulator::UsbTransfer> reads;
    std::vector<DeviceCall> calls;
    bool pluggedIn = true;
    bool resetRefused = false;
    QByteArray ownDescriptors = plainDescriptors();

    /** A vendor-specific high-speed device with the reader's four endpoints and no texts. */
    static QByteArray plainDescriptors();

    QByteArray descriptors() const override { return ownDescriptors; }
    bool isPluggedIn() const override { return pluggedIn; }
    bool deniesAccess() const override { return false; }
    bool isClaimedElsewhere() const override { return false; }
    bool refusesReset() const override { return resetRefused; }
    void reset() override;
    simulator::UsbTransfer write(std::uint8_t endpoint, const QByteArray &bytes) override;
    simulator::UsbTransfer read(std::uint8_t endpoint, int capacity) override;
};
