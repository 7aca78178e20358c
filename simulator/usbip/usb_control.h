#pragma once

// The control endpoint of a simulated device: answers the standard requests that a host makes to
// find out about it. Any other request stalls.

#include <array>
#include <cstdint>

#include <QByteArray>

#include "simulator/reader/usb_device.h"
#include "simulator/usbip/usb_descriptors.h"

namespace simulator
{

/** The eight bytes that begin a control transfer; on the wire the words are little-endian. */
struct UsbSetup {
    static constexpr int SIZE = 8;

    std::uint8_t requestType = 0; ///< direction in the top bit, then kind and recipient
    std::uint8_t request = 0;
    std::uint16_t value = 0;
    std::uint16_t index = 0;
    std::uint16_t length = 0; ///< bytes of data that follow, or that there is room for

    UsbSetup() = default;
    explicit UsbSetup(const std::array<std::uint8_t, SIZE> &bytes);

    [[nodiscard]] bool isIn() const;
};

class UsbControlEndpoint
{
public:
    explicit UsbControlEndpoint(UsbDevice &device) : m_device(device) {}

    /**
     * Answers one request. A host that chooses the configuration sets the device up again; a host's
     * own reset is not heard where the bus is only imitated, and this is what follows one. The
     * device therefore forgets then what it was about to answer. One that refuses resets stalls
     * when it has been set up before.
     */
    UsbTransfer answer(const UsbSetup &setup);

private:
    [[nodiscard]] static UsbTransfer descriptor(const UsbSetup &setup,
                                                const UsbDescription &description);
    UsbTransfer configure(std::uint16_t value, const UsbDescription &description);
    UsbTransfer answerDevice(const UsbSetup &setup, const UsbDescription &description);
    [[nodiscard]] static UsbTransfer answerInterface(const UsbSetup &setup,
                                                     const UsbDescription &description);
    [[nodiscard]] static UsbTransfer answerEndpoint(const UsbSetup &setup,
                                                    const UsbDescription &description);

    UsbDevice &m_device;
    std::uint8_t m_configuration = 0; ///< 0: not set up
};

} // namespace simulator
