// Walks the descriptors, each of which begins with its length and its kind.

#include "simulator/usbip/usb_descriptors.h"

#include <algorithm>

#include "simulator/reader/usb_standard.h"

namespace simulator
{

namespace
{

std::uint8_t byteAt(const QByteArray &bytes, int offset)
{
    return static_cast<std::uint8_t>(bytes.at(offset));
}

std::uint16_t wordAt(const QByteArray &bytes, int offset)
{
    return static_cast<std::uint16_t>(byteAt(bytes, offset) | byteAt(bytes, offset + 1) << 8);
}

UsbInterfaceClass interfaceAt(const QByteArray &bytes, int offset)
{
    return {byteAt(bytes, offset + 2), byteAt(bytes, offset + 5), byteAt(bytes, offset + 6),
            byteAt(bytes, offset + 7)};
}

} // namespace

bool UsbDescription::hasEndpoint(std::uint8_t address) const
{
    return std::find(endpoints.begin(), endpoints.end(), address) != endpoints.end();
}

UsbDescription describeDevice(const QByteArray &descriptors)
{
    UsbDescription description;
    description.device = descriptors.left(USB_DEVICE_DESCRIPTOR_SIZE);
    description.configuration = descriptors.mid(USB_DEVICE_DESCRIPTOR_SIZE);
    description.vendor = wordAt(description.device, 8);
    description.product = wordAt(description.device, 10);
    description.release = wordAt(description.device, 12);
    description.configurationValue = byteAt(description.configuration, 5);
    const QByteArray &all = description.configuration;
    for (int offset = 0; offset < all.size(); offset += byteAt(all, offset)) {
        const int kind = byteAt(all, offset + 1);
        if (kind == USB_DESCRIPTOR_INTERFACE)
            description.interfaces.push_back(interfaceAt(all, offset));
        else if (kind == USB_DESCRIPTOR_ENDPOINT)
            description.endpoints.push_back(byteAt(all, offset + 2));
    }
    return description;
}

} // namespace simulator
