#include "tests/usb/emulated_bus.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/usb/device_node.h"

namespace usb_test
{

namespace
{

constexpr int BUS_NUMBER = 1;
constexpr int FIRST_DEVICE_NUMBER = 2;  ///< 1 is the root hub
constexpr int LAST_DEVICE_NUMBER = 127; ///< of a bus, whose addresses have seven bits
/** Closing a node is heard of a little later. */
constexpr std::chrono::milliseconds CLOSE_LIMIT{1000};
constexpr std::chrono::milliseconds CLOSE_PAUSE{2};

constexpr uid_t ORDINARY_USER = 65534;

std::string nodePath(int number)
{
    return QStringLiteral("/dev/bus/usb/%1/%2")
        .arg(BUS_NUMBER, 3, 10, QLatin1Char('0'))
        .arg(number, 3, 10, QLatin1Char('0'))
        .toStdString();
}

std::string systemPath(int number)
{
    return QStringLiteral("/sys/devices/pci0000:00/0000:00:14.0/usb%1/%1-%2")
        .arg(BUS_NUMBER)
        .arg(number)
        .toStdString();
}

/** A device in the form that umockdev takes. */
QByteArray description(int number, const QByteArray &descriptors)
{
    const QByteArray node = QByteArray::fromStdString(nodePath(number));
    const QByteArray path = QByteArray::fromStdString(systemPath(number));
    return "P: " + path.mid(static_cast<int>(strlen("/sys"))) +
           "\nN: " + node.mid(static_cast<int>(strlen("/dev/"))) +
           "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nE: DEVNAME=" + node +
           "\nA: busnum=" + QByteArray::number(BUS_NUMBER) +
           "\\n\nA: devnum=" + QByteArray::number(number) +
           "\\n\nH: descriptors=" + descriptors.toHex() + "\n";
}

/** The loader's word for the library that leads a program to the bus. */
QByteArray preload()
{
    return qgetenv("LD_PRELOAD");
}

[[noreturn]] void fail(const char *what, GError *error)
{
    const std::string reason = error == nullptr ? "no reason given" : error->message;
    g_clear_error(&error);
    throw std::runtime_error(std::string(what) + ": " + reason);
}

} // namespace

bool Holdings::operator==(const Holdings &other) const
{
    return openNodes == other.openNodes && claimedInterfaces == other.claimedInterfaces &&
           transfers == other.transfers && timesOpened == other.timesOpened;
}

class EmulatedBus::Implementation
{
public:
    Implementation()
    {
        if (!preload().contains("umockdev-preload"))
            throw std::runtime_error("no USB bus can be emulated: start this program with "
                                     "LD_PRELOAD=libumockdev-preload.so.0 (under a sanitizer, its "
                                     "library goes first)");
        m_bed.reset(umockdev_testbed_new());
        // An ordinary user must get as far as to a node that denies access.
        allow(folder(), 0777);
    }

    void add(simulator::UsbDevice &device, const NodeTraits &traits)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ports.emplace_back();
        m_ports.back().node =
            std::make_unique<DeviceNode>(device, traits, m_mutex, [this] { follow(); });
        follow();
    }

    void change(const std::function<void()> &change)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        change();
        follow();
    }

    void changeWhenUnused(const std::function<void()> &change)
    {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!changeIfUnused(change)) {
            if (std::chrono::steady_clock::now() > limit)
                throw std::runtime_error("a device on the emulated bus stays open");
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    Address address(const simulator::UsbDevice &device) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const int number = portOf(device).number;
        return number == 0 ? Address{0, 0} : Address{BUS_NUMBER, number};
    }

    QString boundDriver(const simulator::UsbDevice &device) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return portOf(device).node->boundDriver();
    }

    QStringList calls(const simulator::UsbDevice &device) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return portOf(device).node->calls();
    }

    Holdings holdings() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return holdingsNow();
    }

    QStringList misuses() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        QStringList misuses;
        for (const Port &port : m_ports)
            misuses << port.node->misuses();
        return misuses;
    }

    QStringList driversMissing() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        QStringList missing;
        for (const Port &port : m_ports)
            if (port.number != 0 && !port.node->isBoundAsBefore())
                missing << QStringLiteral("device %1 has lost its kernel driver").arg(port.number);
        return missing;
    }

    QString folder() const
    {
        gchar *const path = umockdev_testbed_get_root_dir(m_bed.get());
        QString folder = QString::fromLocal8Bit(path);
        g_free(path);
        return folder;
    }

private:
    struct Port {
        std::unique_ptr<DeviceNode> node;
        int number = 0; ///< of the device; 0 while it is not plugged in
        bool isHidden = false;
        std::optional<bool> isAccessAllowed;
    };

    bool changeIfUnused(const std::function<void()> &change)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (holdingsNow().openNodes > 0)
            return false;
        change();
        follow();
        return true;
    }

    Holdings holdingsNow() const
    {
        Holdings sum;
        for (const Port &port : m_ports) {
            const Holdings one = port.node->holdings();
            sum.openNodes += one.openNodes;
            sum.claimedInterfaces += one.claimedInterfaces;
            sum.transfers += one.transfers;
            sum.timesOpened += one.timesOpened;
        }
        return sum;
    }

    const Port &portOf(const simulator::UsbDevice &device) const
    {
        for (const Port &port : m_ports)
            if (&port.node->device() == &device)
                return port;
        throw std::logic_error("the device is not on this bus");
    }

    /** Plugs in and out what says so, and lets in whom the device lets in. */
    void follow()
    {
        for (Port &port : m_ports) {
            const bool isPluggedIn = port.node->device().isPluggedIn();
            if (isPluggedIn && port.number == 0)
                plugIn(port);
            else if (!isPluggedIn && port.number != 0)
                plugOut(port);
            if (isPluggedIn) {
                hide(port, port.node->device().failsToOpen());
                allowAccess(port, !port.node->device().deniesAccess());
            }
        }
    }

    void plugIn(Port &port)
    {
        port.number = freeNumber();
        port.isHidden = false;
        port.isAccessAllowed.reset();
        port.node->renew();
        const std::string node = nodePath(port.number);
        GError *error = nullptr;
        if (umockdev_testbed_add_from_string(
                m_bed.get(),
                description(port.number, port.node->device().descriptors()).constData(),
                &error) == FALSE)
            fail("no device could be added to the emulated bus", error);
        // Who had the node before it went could still be answered until now.
        if (m_answered.count(port.number) != 0 &&
            umockdev_testbed_detach_ioctl(m_bed.get(), node.c_str(), &error) == FALSE)
            fail("an earlier device of the same number is still answered for", error);
        m_answered.insert(port.number);
        if (umockdev_testbed_attach_ioctl(m_bed.get(), node.c_str(), port.node->handler(),
                                          &error) == FALSE)
            fail("no answers could be given for the emulated device", error);
        allow(folder() + QStringLiteral("/ioctl") + QString::fromStdString(node), 0777);
        umockdev_testbed_uevent(m_bed.get(), systemPath(port.number).c_str(), "add");
    }

    /** As the kernel gives them out: one after the other, then those that are free again. */
    int freeNumber()
    {
        const auto isTaken = [this](int number) {
            return std::any_of(m_ports.begin(), m_ports.end(),
                               [number](const Port &port) { return port.number == number; });
        };
        do
            m_lastNumber =
                m_lastNumber == LAST_DEVICE_NUMBER ? FIRST_DEVICE_NUMBER : m_lastNumber + 1;
        while (isTaken(m_lastNumber));
        return m_lastNumber;
    }

    void plugOut(Port &port)
    {
        const std::string path = systemPath(port.number);
        umockdev_testbed_uevent(m_bed.get(), path.c_str(), "remove");
        umockdev_testbed_remove_device(m_bed.get(), path.c_str());
        port.number = 0;
    }

    QString pathOf(const Port &port) const
    {
        return folder() + QString::fromStdString(nodePath(port.number));
    }

    // Both only when it changes: an ordinary user may not.

    /** A node that is not where it should be cannot be opened by anyone. */
    void hide(Port &port, bool isHidden)
    {
        if (port.isHidden == isHidden)
            return;
        port.isHidden = isHidden;
        const QString hidden = pathOf(port) + QStringLiteral(".hidden");
        const QString from = isHidden ? pathOf(port) : hidden;
        const QString to = isHidden ? hidden : pathOf(port);
        if (rename(qPrintable(from), qPrintable(to)) != 0)
            throw std::runtime_error("the node \"" + from.toStdString() +
                                     "\" could not be renamed");
    }

    void allowAccess(Port &port, bool isAllowed)
    {
        if (port.isAccessAllowed == isAllowed || port.isHidden)
            return;
        port.isAccessAllowed = isAllowed;
        allow(pathOf(port), isAllowed ? 0666 : 0);
    }

    static void allow(const QString &path, mode_t mode)
    {
        if (chmod(path.toLocal8Bit().constData(), mode) != 0)
            throw std::runtime_error("the rights of \"" + path.toStdString() +
                                     "\" could not be set");
    }

    mutable std::mutex m_mutex;
    // The bed goes before the ports: its thread asks them.
    std::vector<Port> m_ports;
    std::unique_ptr<UMockdevTestbed, Unref> m_bed;
    std::set<int> m_answered; ///< numbers whose nodes somebody answers for, or did last
    int m_lastNumber = FIRST_DEVICE_NUMBER - 1;
};

EmulatedBus::EmulatedBus() : m_implementation(std::make_unique<Implementation>()) {}

EmulatedBus::~EmulatedBus() = default;

void EmulatedBus::add(simulator::UsbDevice &device, const NodeTraits &traits)
{
    m_implementation->add(device, traits);
}

void EmulatedBus::change(const std::function<void()> &change)
{
    m_implementation->change(change);
}

void EmulatedBus::changeWhenUnused(const std::function<void()> &change)
{
    m_implementation->changeWhenUnused(change);
}

EmulatedBus::Address EmulatedBus::address(const simulator::UsbDevice &device) const
{
    return m_implementation->address(device);
}

QString EmulatedBus::boundDriver(const simulator::UsbDevice &device) const
{
    return m_implementation->boundDriver(device);
}

QStringList EmulatedBus::calls(const simulator::UsbDevice &device) const
{
    return m_implementation->calls(device);
}

Holdings EmulatedBus::holdings() const
{
    return m_implementation->holdings();
}

QStringList EmulatedBus::misuses() const
{
    return m_implementation->misuses();
}

QStringList EmulatedBus::leftOvers() const
{
    const auto limit = std::chrono::steady_clock::now() + CLOSE_LIMIT;
    Holdings held = holdings();
    while (held.openNodes != 0 && std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(CLOSE_PAUSE);
        held = holdings();
    }
    QStringList found = misuses() + m_implementation->driversMissing();
    if (held.openNodes != 0)
        found << QStringLiteral("%1 device nodes are open").arg(held.openNodes);
    if (held.claimedInterfaces != 0)
        found << QStringLiteral("%1 interfaces are claimed").arg(held.claimedInterfaces);
    if (held.transfers != 0)
        found << QStringLiteral("%1 transfers have not ended").arg(held.transfers);
    return found;
}

QString EmulatedBus::folder() const
{
    return m_implementation->folder();
}

QMap<QString, QString> EmulatedBus::childEnvironment() const
{
    // Umockdev 0.19 asks here about every device, /dev/null too, and ends a program whose user may
    // not.
    const std::string others = folder().toStdString() + "/ioctl/_default";
    ::chmod(others.c_str(), S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH);
    return {{QStringLiteral("UMOCKDEV_DIR"), folder()},
            {QStringLiteral("LD_PRELOAD"), QString::fromLocal8Bit(preload())}};
}

namespace
{

constexpr unsigned int READ_EVERYWHERE = 1U << CAP_DAC_READ_SEARCH;

struct Capabilities {
    __user_cap_header_struct head{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};

    Capabilities() { syscall(SYS_capget, &head, sets.data()); }
    bool mayReadEverywhere() const { return (sets[0].permitted & READ_EVERYWHERE) != 0; }
};

} // namespace

// The build may lie in a folder of root's that is closed to others, as in a home, so that reading
// stays allowed. A node is opened for writing, too.
OrdinaryUser::OrdinaryUser()
{
    if (getuid() != 0)
        return;
    if (seteuid(ORDINARY_USER) != 0)
        throw std::runtime_error("the rights of an ordinary user could not be taken on");
    Capabilities capabilities;
    if (capabilities.mayReadEverywhere()) {
        capabilities.sets[0].effective |= READ_EVERYWHERE;
        syscall(SYS_capset, &capabilities.head, capabilities.sets.data());
    }
}

OrdinaryUser::~OrdinaryUser()
{
    if (getuid() == 0 && seteuid(0) != 0)
        std::terminate();
}

QStringList ordinaryUserCommand()
{
    if (getuid() != 0)
        return {};
    const QString user = QString::number(ORDINARY_USER);
    QStringList command{QStringLiteral("/usr/bin/setpriv"),
                        QStringLiteral("--reuid"),
                        user,
                        QStringLiteral("--regid"),
                        user,
                        QStringLiteral("--clear-groups")};
    if (Capabilities().mayReadEverywhere())
        command << QStringLiteral("--inh-caps=+dac_read_search")
                << QStringLiteral("--ambient-caps=+dac_read_search");
    return command;
}

} // namespace usb_test
