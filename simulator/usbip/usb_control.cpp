// The standard requests, by whom they are addressed to.

#include "simulator/usbip/usb_control.h"

#include <algorithm>

#include "simulator/reader/usb_standard.h"

namespace simulator
{

namespace
{

// The lower seven bits of the request type: a standard request, and whom it concerns.
enum Recipient : std::uint8_t { TO_DEVICE = 0, TO_INTERFACE = 1, TO_ENDPOINT = 2 };

enum Request : std::uint8_t {
    GET_STATUS = 0,
    CLEAR_FEATURE = 1,
    SET_ADDRESS = 5,
    GET_DESCRIPTOR = 6,
    GET_CONFIGURATION = 8,
    SET_CONFIGURATION = 9,
    GET_INTERFACE = 10,
    SET_INTERFACE = 11,
};

constexpr std::uint16_t FEATURE_ENDPOINT_HALT = 0;
constexpr std::uint8_t ENDPOINT_ZERO = 0;

UsbTransfer status(const UsbSetup &setup)
{
    return ended(UsbStatus::DONE, QByteArray(2, '\0').left(setup.length));
}

} // namespace

UsbSetup::UsbSetup(const std::array<std::uint8_t, SIZE> &bytes)
    : requestType(bytes[0]), request(bytes[1]),
      value(static_cast<std::uint16_t>(bytes[2] | bytes[3] << 8)),
      index(static_cast<std::uint16_t>(bytes[4] | bytes[5] << 8)),
      length(static_cast<std::uint16_t>(bytes[6] | bytes[7] << 8))
{
}

bool UsbSetup::isIn() const
{
    return (requestType & USB_ENDPOINT_IN) != 0;
}

UsbTransfer UsbControlEndpoint::answer(const UsbSetup &setup)
{
    const UsbDescription description = describeDevice(m_device.descriptors());
    switch (setup.requestType & ~USB_ENDPOINT_IN) {
    case TO_DEVICE:
        return answerDevice(setup, description);
    case TO_INTERFACE:
        return answerInterface(setup, description);
    case TO_ENDPOINT:
        return answerEndpoint(setup, description);
    default:
        return ended(UsbStatus::STALLED);
    }
}

UsbTransfer UsbControlEndpoint::answerDevice(const UsbSetup &setup,
                                             const UsbDescription &description)
{
    if (setup.isIn()) {
        switch (setup.request) {
        case GET_STATUS:
            return status(setup);
        case GET_DESCRIPTOR:
            return descriptor(setup, description);
        case GET_CONFIGURATION:
            return ended(UsbStatus::DONE,
                         QByteArray(1, static_cast<char>(m_configuration)).left(setup.length));
        default:
            return ended(UsbStatus::STALLED);
        }
    }
    switch (setup.request) {
    case SET_ADDRESS:
        return ended(UsbStatus::DONE);
    case SET_CONFIGURATION:
        return configure(setup.value, description);
    default:
        return ended(UsbStatus::STALLED);
    }
}

UsbTransfer UsbControlEndpoint::answerInterface(const UsbSetup &setup,
                                                const UsbDescription &description)
{
    const bool isKnown = std::any_of(
        description.interfaces.begin(), description.interfaces.end(),
        [&](const UsbInterfaceClass &interface) { return interface.number == setup.index; });
    if (!isKnown)
        return ended(UsbStatus::STALLED);
    if (setup.isIn() && setup.request == GET_STATUS)
        return status(setup);
    if (setup.isIn() && setup.request == GET_INTERFACE)
        return ended(UsbStatus::DONE, QByteArray(1, '\0').left(setup.length));
    const bool isFirstSetting = setup.value == 0; // there is no other
    return !setup.isIn() && setup.request == SET_INTERFACE && isFirstSetting
               ? ended(UsbStatus::DONE)
               : ended(UsbStatus::STALLED);
}

UsbTransfer UsbControlEndpoint::answerEndpoint(const UsbSetup &setup,
                                               const UsbDescription &description)
{
    const auto address = static_cast<std::uint8_t>(setup.index);
    const bool isZero = (address & ~USB_ENDPOINT_IN) == ENDPOINT_ZERO;
    if (setup.index > 0xFF || (!isZero && !description.hasEndpoint(address)))
        return ended(UsbStatus::STALLED);
    if (setup.isIn() && setup.request == GET_STATUS)
        return status(setup);
    return !setup.isIn() && setup.request == CLEAR_FEATURE && setup.value == FEATURE_ENDPOINT_HALT
               ? ended(UsbStatus::DONE)
               : ended(UsbStatus::STALLED);
}

UsbTransfer UsbControlEndpoint::descriptor(const UsbSetup &setup, const UsbDescription &description)
{
    const int kind = setup.value >> 8;
    const int index = setup.value & 0xFF;
    if (kind == USB_DESCRIPTOR_DEVICE)
        return ended(UsbStatus::DONE, description.device.left(setup.length));
    if (kind == USB_DESCRIPTOR_CONFIGURATION && index == 0)
        return ended(UsbStatus::DONE, description.configuration.left(setup.length));
    return ended(UsbStatus::STALLED);
}

UsbTransfer UsbControlEndpoint::configure(std::uint16_t value, const UsbDescription &description)
{
    if (value != 0 && value != description.configurationValue)
        return ended(UsbStatus::STALLED);
    if (value != 0 && m_configuration != 0 && m_device.refusesReset()) {
        m_configuration = 0; // the host drops the device and may enumerate it again
        return ended(UsbStatus::STALLED);
    }
    m_configuration = static_cast<std::uint8_t>(value);
    m_device.reset();
    return ended(UsbStatus::DONE);
}

} // namespace simulator
