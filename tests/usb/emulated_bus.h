#pragma once

// A USB bus that exists only for the programs of a test: the real libusb finds, opens and uses the
// devices on it, each a simulator::UsbDevice. It takes umockdev's preload library, with
// which idcard_add_usb_test starts a test program.

#include <functional>
#include <memory>

#include <QMap>
#include <QString>
#include <QStringList>

#include "simulator/reader/usb_device.h"

namespace usb_test
{

/** What stands between a program and a device. */
struct NodeTraits {
    /** The kernel driver that holds interface 0 until a program takes it over; empty for none. */
    QString driver;
    /** Whether the kernel can detach a driver and claim the interface in one step. */
    bool detachesAndClaims = true;
};

/** Devices that were opened, and what of them is still held. */
struct Holdings {
    int openNodes = 0;
    int claimedInterfaces = 0;
    int transfers = 0;
    int timesOpened = 0; ///< since the bus was made

    bool operator==(const Holdings &other) const;
};

/**
 * One at a time in a process. Devices must live longer than the bus. They are asked by another
 * thread, so that a test changes them only before they are plugged in or through `change`.
 */
class EmulatedBus
{
public:
    EmulatedBus();
    ~EmulatedBus();
    EmulatedBus(const EmulatedBus &) = delete;
    EmulatedBus &operator=(const EmulatedBus &) = delete;

    /** Adds a device to the bus; its node is there unless the device says it is not plugged in. */
    void add(simulator::UsbDevice &device, const NodeTraits &traits = {});

    /** Runs `change` while no device is being asked, then follows what the devices say now. */
    void change(const std::function<void()> &change);

    /**
     * The same once no program has a device open: between two looks of a program that watches. A
     * card that comes or goes in the middle of a look makes it fail. Throws if the wait takes 20
     * seconds.
     */
    void changeWhenUnused(const std::function<void()> &change);

    /** Bus and device number, as libusb reports them, of a device that is plugged in; else 0 and 0.
     */
    struct Address {
        int bus;
        int device;
    };
    [[nodiscard]] Address address(const simulator::UsbDevice &device) const;

    /** The driver that holds the device now; empty when none does. */
    [[nodiscard]] QString boundDriver(const simulator::UsbDevice &device) const;

    /**
     * What was asked of the device's node so far, since it was plugged in, in order: "open",
     * "capabilities", "claim", "release", "reset", "out 02 10" (endpoint, size), "in 81 15",
     * "discard", "attach driver" and so on. Asking whether a transfer has ended is not in it.
     */
    [[nodiscard]] QStringList calls(const simulator::UsbDevice &device) const;

    [[nodiscard]] Holdings holdings() const;

    /** What no program should ask for and this one did, such as a transfer without a claim. */
    [[nodiscard]] QStringList misuses() const;

    /**
     * Everything that is not as it was: nodes open, interfaces claimed, transfers not ended,
     * drivers not back, misuses. Waits a second for what a closing program releases.
     */
    [[nodiscard]] QStringList leftOvers() const;

    /** The folder that holds the devices' nodes; it goes with the bus. */
    [[nodiscard]] QString folder() const;

    /** What a program in another process needs in its environment to be on this bus. */
    [[nodiscard]] QMap<QString, QString> childEnvironment() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

/**
 * While it lives, this process has the rights of an ordinary user, which a device that denies
 * access needs: nothing is denied to root. Nothing changes for who is not root.
 */
class OrdinaryUser
{
public:
    OrdinaryUser();
    ~OrdinaryUser();
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;
};

/** Words before a command that start it as an ordinary user; none for who is one. */
QStringList ordinaryUserCommand();

} // namespace usb_test
