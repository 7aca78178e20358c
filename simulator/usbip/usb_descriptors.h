#pragma once

// Takes a device's descriptors apart, as far as a front that shows the device to a host needs them.

#include <cstdint>
#include <vector>

#include <QByteArray>

namespace simulator
{

struct UsbInterfaceClass {
    std::uint8_t number = 0;
    std::uint8_t classCode = 0;
    std::uint8_t subclass = 0;
    std::uint8_t protocol = 0;
};

struct UsbDescription {
    QByteArray device;        ///< its descriptor, 18 bytes
    QByteArray configuration; ///< the one there is, with all that belongs to it
    std::uint16_t vendor = 0;
    std::uint16_t product = 0;
    std::uint16_t release = 0; ///< of the device, binary-coded decimal
    std::uint8_t configurationValue = 0;
    std::vector<UsbInterfaceClass> interfaces;
    std::vector<std::uint8_t> endpoints; ///< addresses; the top bit is set for IN

    [[nodiscard]] bool hasEndpoint(std::uint8_t address) const;
};

/** `descriptors`: those of a `UsbDevice`. */
UsbDescription describeDevice(const QByteArray &descriptors);

} // namespace simulator
