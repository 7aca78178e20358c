// Walks the descriptors, every length checked before it is believed.

#include "simulator/usbip/usb_descriptors.h"

#include <algorithm>

#include "simulator/reader/usb_standard.h"

namespace simulator
{

namespace
{

constexpr int CONFIGURATION_SIZE = 9;
constexpr int INTERFACE_SIZE = 9;
constexpr int ENDPOINT_SIZE = 7;

std::uint8_t byteAt(const QByteArray &bytes, int offset)
{
    return static_cast<std::uint8_t>(bytes.at(offset));
}

std::uint16_t wordAt(const QByteArray &bytes, int offset)
{
    return static_cast<std::uint16_t>(byteAt(bytes, offset) | byteAt(bytes, offset + 1) << 8);
}

void takeInterface(const QByteArray &interface, UsbDescription *description)
{
    description->interfaces.push_back(
        {byteAt(interface, 2), byteAt(interface, 5), byteAt(interface, 6), byteAt(interface, 7)});
}

// Takes what follows the configuration's own descriptor; false when a length is wrong.
bool takeParts(UsbDescription *description)
{
    const QByteArray &all = description->configuration;
    int offset = CONFIGURATION_SIZE;
    while (offset < all.size()) {
        const int size = byteAt(all, offset);
        if (size < 2 || size > all.size() - offset)
            return false;
        const QByteArray part = all.mid(offset, size);
        const int kind = byteAt(part, 1);
        if ((kind == USB_DESCRIPTOR_INTERFACE && size < INTERFACE_SIZE) ||
            (kind == USB_DESCRIPTOR_ENDPOINT && size < ENDPOINT_SIZE))
            return false;
        if (kind == USB_DESCRIPTOR_INTERFACE)
            takeInterface(part, description);
        else if (kind == USB_DESCRIPTOR_ENDPOINT)
            description->endpoints.push_back(byteAt(part, 2));
        offset += size;
    }
    return true;
}

} // namespace

bool UsbDescription::hasEndpoint(std::uint8_t address) const
{
    return std::find(endpoints.begin(), endpoints.end(), address) != endpoints.end();
}

std::optional<UsbDescription> describeDevice(const QByteArray &descriptors)
{
    if (descriptors.size() < USB_DEVICE_DESCRIPTOR_SIZE + CONFIGURATION_SIZE)
        return std::nullopt;
    UsbDescription description;
    description.device = descriptors.left(USB_DEVICE_DESCRIPTOR_SIZE);
    description.configuration = descriptors.mid(USB_DEVICE_DESCRIPTOR_SIZE);
    const int total = wordAt(description.configuration, 2);
    if (byteAt(description.device, 0) != USB_DEVICE_DESCRIPTOR_SIZE ||
        byteAt(description.device, 1) != USB_DESCRIPTOR_DEVICE ||
        byteAt(description.configuration, 0) != CONFIGURATION_SIZE ||
        byteAt(description.configuration, 1) != USB_DESCRIPTOR_CONFIGURATION ||
        total < CONFIGURATION_SIZE || total > description.configuration.size())
        return std::nullopt;
    description.configuration.truncate(total);
    description.vendor = wordAt(description.device, 8);
    description.product = wordAt(description.device, 10);
    description.release = wordAt(description.device, 12);
    description.configurationValue = byteAt(description.configuration, 5);
    if (!takeParts(&description))
        return std::nullopt;
    return description;
}

} // namespace simulator
