#include "tests/usbip/recording_device.h"

#include <tuple>

using simulator::UsbStatus;
using simulator::UsbTransfer;

namespace
{

UsbTransfer next(std::deque<UsbTransfer> *script)
{
    if (script->empty())
        return ended(UsbStatus::STALLED);
    UsbTransfer transfer = script->front();
    script->pop_front();
    return transfer;
}

} // namespace

bool operator==(const DeviceCall &left, const DeviceCall &right)
{
    return std::tie(left.kind, left.endpoint, left.bytes, left.capacity) ==
           std::tie(right.kind, right.endpoint, right.bytes, right.capacity);
}

QByteArray RecordingDevice::plainDescriptors()
{
    return QByteArray::fromHex("12 01 00 02 00 00 00 40 09 12 01 00 00 01 00 00 00 01"
                               "09 02 2E 00 01 01 00 80 32"
                               "09 04 00 00 04 FF 00 00 00"
                               "07 05 02 02 00 02 00"
                               "07 05 81 02 00 02 00"
                               "07 05 06 02 00 02 00"
                               "07 05 85 02 00 02 00");
}

void RecordingDevice::reset()
{
    calls.push_back({DeviceCall::Reset, 0, {}, 0});
}

UsbTransfer RecordingDevice::write(std::uint8_t endpoint, const QByteArray &bytes)
{
    calls.push_back({DeviceCall::Write, endpoint, bytes, 0});
    return next(&writes);
}

UsbTransfer RecordingDevice::read(std::uint8_t endpoint, int capacity)
{
    calls.push_back({DeviceCall::Read, endpoint, {}, capacity});
    return next(&reads);
}
