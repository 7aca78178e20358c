#pragma once

// What a front that plugs a simulated device into a USB stack needs of it. The device sees whole
// bulk transfers, as the host's driver asks for them; the front decides how they get there.

#include <cstdint>

#include <QByteArray>

#include "common/usb_ids.h"

namespace simulator
{

/** The ids by which a simulated reader is found, unless it is given others. */
constexpr UsbIds DEFAULT_READER_IDS = {0x1209, 0x0001};

/** How a transfer ends. */
enum class UsbStatus {
    DONE,      ///< also when it moved less than was asked for
    STALLED,   ///< the endpoint refuses (-EPIPE)
    BROKEN,    ///< garbled on the bus (-EPROTO)
    TOO_LONG,  ///< the device sent more than the host had room for (-EOVERFLOW)
    UNPLUGGED, ///< the device went away meanwhile (-ESHUTDOWN); it stays away
    PENDING,   ///< never ends by itself; the host gives up or waits
};

/** What became of one transfer. */
struct UsbTransfer {
    UsbStatus status = UsbStatus::DONE;
    QByteArray data; ///< of a read: what came, also when the status is not a success
    int count = 0;   ///< bytes moved: of a write those taken, of a read the size of `data`
    int delayMs = 0; ///< time that passes before the transfer ends so
};

/** A transfer that took nothing from the host, and gave it `data`. */
inline UsbTransfer ended(UsbStatus status, const QByteArray &data = {}, int delayMs = 0)
{
    return {status, data, data.size(), delayMs};
}

/** The device took `count` bytes of a write. */
inline UsbTransfer taken(UsbStatus status, int count, int delayMs = 0)
{
    return {status, {}, count, delayMs};
}

/** A device with one interface, number 0, and bulk endpoints. Not for several threads at once. */
class UsbDevice
{
public:
    UsbDevice() = default;
    virtual ~UsbDevice() = default;
    UsbDevice(const UsbDevice &) = delete;
    UsbDevice &operator=(const UsbDevice &) = delete;

    /** The device descriptor, then the configuration with all that belongs to it. */
    [[nodiscard]] virtual QByteArray descriptors() const = 0;

    /** Whether it is plugged in. What is not answers no transfer. */
    [[nodiscard]] virtual bool isPluggedIn() const = 0;

    /** What keeps it from being used. */
    [[nodiscard]] virtual bool deniesAccess() const = 0; ///< this user may not open its node
    [[nodiscard]] virtual bool failsToOpen() const { return false; } ///< for any other reason
    [[nodiscard]] virtual bool
    isClaimedElsewhere() const = 0; ///< another program holds interface 0
    [[nodiscard]] virtual bool refusesReset() const = 0;

    /** The host resets the device: what it was about to answer is forgotten. */
    virtual void reset() = 0;

    /** One bulk transfer to `endpoint`; it stalls when that is no OUT endpoint's address. */
    virtual UsbTransfer write(std::uint8_t endpoint, const QByteArray &bytes) = 0;

    /**
     * One bulk transfer from `endpoint`, of at most `capacity` bytes; it stalls when that is no IN
     * endpoint's address.
     */
    virtual UsbTransfer read(std::uint8_t endpoint, int capacity) = 0;
};

} // namespace simulator
