// Descriptors byte by byte; numbers of two bytes have the low byte first.

#include "simulator/reader/reader_descriptors.h"

#include <initializer_list>

#include "simulator/reader/usb_standard.h"
#include "simulator/reader/virtual_reader.h"

namespace simulator
{

namespace
{

constexpr int LOW = 0xFF;
constexpr int BULK = 2;
constexpr int VENDOR_SPECIFIC = 0xFF; ///< a class that no driver claims
constexpr int BUS_POWERED = 0x80;
constexpr int HUNDRED_MILLIAMPERES = 50; ///< in units of 2 mA
constexpr int CONTROL_PACKET_SIZE = 64;

constexpr std::uint8_t ENDPOINTS[] = {
    VirtualReader::COMMAND_ENDPOINT,
    VirtualReader::ANSWER_ENDPOINT,
    VirtualReader::LOOP_OUT_ENDPOINT,
    VirtualReader::LOOP_IN_ENDPOINT,
};

// A descriptor: its length, its kind, the rest.
QByteArray descriptor(int kind, std::initializer_list<int> rest)
{
    QByteArray bytes;
    bytes.append(static_cast<char>(rest.size() + 2)).append(static_cast<char>(kind));
    for (const int byte : rest)
        bytes.append(static_cast<char>(byte));
    return bytes;
}

QByteArray interfaceAndEndpoints()
{
    QByteArray bytes =
        descriptor(USB_DESCRIPTOR_INTERFACE,
                   {0, 0, static_cast<int>(std::size(ENDPOINTS)), VENDOR_SPECIFIC, 0, 0, 0});
    for (const std::uint8_t endpoint : ENDPOINTS) {
        bytes += descriptor(USB_DESCRIPTOR_ENDPOINT,
                            {endpoint, BULK, BULK_PACKET_SIZE & LOW, BULK_PACKET_SIZE >> 8, 0});
    }
    return bytes;
}

} // namespace

QByteArray readerDescriptors(const UsbIds &ids)
{
    const QByteArray device = descriptor(
        USB_DESCRIPTOR_DEVICE, {0x00, 0x02, // USB 2.0
                                0, 0, 0, CONTROL_PACKET_SIZE, ids.vendor & LOW, ids.vendor >> 8,
                                ids.product & LOW, ids.product >> 8, 0x00, 0x01, // release 1.00
                                0, 0, 0,                                         // no texts
                                1});
    const QByteArray inside = interfaceAndEndpoints();
    constexpr int CONFIGURATION_SIZE = 9;
    const int total = CONFIGURATION_SIZE + inside.size();
    return device +
           descriptor(USB_DESCRIPTOR_CONFIGURATION,
                      {total & LOW, total >> 8, 1, 1, 0, BUS_POWERED, HUNDRED_MILLIAMPERES}) +
           inside;
}

} // namespace simulator
