#include "apps/reading/usb_devices.h"

#include <algorithm>
#include <array>
#include <memory>
#include <tuple>

#include <libusb.h>

#include <QFile>
#include <QStringList>

#include <unistd.h>

#include "apps/process/link_target.h"
#include "apps/process/translation.h"
#include "common/texts.h"
#include "reader/reader_frames.h"
#include "reader/usb_codes.h"

namespace app
{

namespace
{

IDCARD_TEXTS(UsbList)

struct ClassRow {
    std::uint8_t code;
    const char *name;
};

// Class codes of the USB Implementers Forum.
constexpr std::array<ClassRow, 15> CLASSES = {{
    {LIBUSB_CLASS_AUDIO, QT_TR_NOOP("audio")},
    {LIBUSB_CLASS_COMM, QT_TR_NOOP("communication")},
    {LIBUSB_CLASS_HID, QT_TR_NOOP("human interface")},
    {LIBUSB_CLASS_PHYSICAL, QT_TR_NOOP("physical")},
    {LIBUSB_CLASS_IMAGE, QT_TR_NOOP("image")},
    {LIBUSB_CLASS_PRINTER, QT_TR_NOOP("printer")},
    {LIBUSB_CLASS_MASS_STORAGE, QT_TR_NOOP("mass storage")},
    {LIBUSB_CLASS_DATA, QT_TR_NOOP("communication data")},
    {LIBUSB_CLASS_SMART_CARD, QT_TR_NOOP("smart card")},
    {LIBUSB_CLASS_VIDEO, QT_TR_NOOP("video")},
    {LIBUSB_CLASS_DIAGNOSTIC_DEVICE, QT_TR_NOOP("diagnostic")},
    {LIBUSB_CLASS_WIRELESS, QT_TR_NOOP("wireless")},
    {LIBUSB_CLASS_MISCELLANEOUS, QT_TR_NOOP("miscellaneous")},
    {LIBUSB_CLASS_APPLICATION, QT_TR_NOOP("application")},
    {LIBUSB_CLASS_VENDOR_SPEC, QT_TR_NOOP("vendor-specific")},
}};

QString className(std::uint8_t code)
{
    const auto *const row = std::find_if(CLASSES.begin(), CLASSES.end(),
                                         [&](const ClassRow &known) { return known.code == code; });
    return row == CLASSES.end() ? QStringLiteral("class %1").arg(int(code), 2, 16, QLatin1Char('0'))
                                : QString::fromLatin1(row->name);
}

using Config = std::unique_ptr<libusb_config_descriptor, decltype(&libusb_free_config_descriptor)>;

/** The configuration that the device is in, or its first when it is in none; null without any. */
Config configOf(libusb_device *device)
{
    libusb_config_descriptor *config = nullptr;
    if (libusb_get_active_config_descriptor(device, &config) != LIBUSB_SUCCESS &&
        libusb_get_config_descriptor(device, 0, &config) != LIBUSB_SUCCESS)
        config = nullptr;
    return {config, libusb_free_config_descriptor};
}

/** The first interface, as it is before a setting was chosen; null when there is none. */
const libusb_interface_descriptor *firstInterface(const Config &config)
{
    if (!config || config->bNumInterfaces == 0 || config->interface[0].num_altsetting < 1)
        return nullptr;
    return config->interface[0].altsetting;
}

bool hasBulkPipe(const libusb_interface_descriptor &interface, unsigned char address)
{
    return std::any_of(
        interface.endpoint, interface.endpoint + interface.bNumEndpoints,
        [&](const libusb_endpoint_descriptor &endpoint) {
            const unsigned int type = endpoint.bmAttributes & LIBUSB_TRANSFER_TYPE_MASK;
            return endpoint.bEndpointAddress == address && type == LIBUSB_TRANSFER_TYPE_BULK;
        });
}

/** The device's name among the kernel's USB devices; empty where there is none. */
QString systemName(libusb_device *device)
{
    constexpr int MAX_DEPTH = 7; // of hubs behind each other, by the USB standard
    std::array<std::uint8_t, MAX_DEPTH> ports{};
    const int depth = libusb_get_port_numbers(device, ports.data(), MAX_DEPTH);
    if (depth < 1)
        return {};
    QStringList path;
    for (int i = 0; i < depth; ++i)
        path << QString::number(ports.at(static_cast<std::size_t>(i)));
    return QStringLiteral("%1-%2")
        .arg(libusb_get_bus_number(device))
        .arg(path.join(QLatin1Char('.')));
}

QString systemFolder(const QString &name)
{
    return QStringLiteral("/sys/bus/usb/devices/") + name;
}

/** What the system keeps about a device under this name, without opening the device. */
QString attributeOf(libusb_device *device, const char *name)
{
    constexpr qint64 MAX_SIZE = 512;
    const QString ownName = systemName(device);
    QFile file(systemFolder(ownName) + QLatin1Char('/') + QLatin1String(name));
    if (ownName.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.read(MAX_SIZE)).trimmed();
}

/** The kernel's driver that is bound to interface 0, by the system's links. */
QString driverOf(libusb_device *device, const Config &config)
{
    const QString name = systemName(device);
    if (name.isEmpty() || !config)
        return {};
    const QString link = filledIn(QStringLiteral("%1/%2:%3.0/driver"), systemFolder(name), name,
                                  QString::number(config->bConfigurationValue));
    return linkTarget(link).section(QLatin1Char('/'), -1);
}

UsbDevice describe(libusb_device *device, const libusb_device_descriptor &descriptor)
{
    const Config config = configOf(device);
    const libusb_interface_descriptor *const interface = firstInterface(config);
    UsbDevice described;
    described.bus = libusb_get_bus_number(device);
    described.address = libusb_get_device_address(device);
    described.ids = {descriptor.idVendor, descriptor.idProduct};
    const bool isToldByInterface =
        descriptor.bDeviceClass == LIBUSB_CLASS_PER_INTERFACE && interface != nullptr;
    described.deviceClass =
        className(isToldByInterface ? interface->bInterfaceClass : descriptor.bDeviceClass);
    described.manufacturer = attributeOf(device, "manufacturer");
    described.product = attributeOf(device, "product");
    described.hasReaderPipes = interface != nullptr &&
                               hasBulkPipe(*interface, reader_frames::COMMAND_PIPE) &&
                               hasBulkPipe(*interface, reader_frames::ANSWER_PIPE);
    described.driver = driverOf(device, config);
    described.node = QStringLiteral("/dev/bus/usb/%1/%2")
                         .arg(described.bus, 3, 10, QLatin1Char('0'))
                         .arg(described.address, 3, 10, QLatin1Char('0'));
    described.mayOpen = ::access(QFile::encodeName(described.node).constData(), R_OK | W_OK) == 0;
    return described;
}

QVector<UsbDevice> describeAll(libusb_device *const *list)
{
    QVector<UsbDevice> devices;
    for (int i = 0; list[i] != nullptr; ++i) {
        libusb_device_descriptor descriptor{};
        if (libusb_get_device_descriptor(list[i], &descriptor) == LIBUSB_SUCCESS &&
            descriptor.bDeviceClass != LIBUSB_CLASS_HUB)
            devices << describe(list[i], descriptor);
    }
    std::sort(devices.begin(), devices.end(), [](const UsbDevice &a, const UsbDevice &b) {
        return std::tie(a.bus, a.address) < std::tie(b.bus, b.address);
    });
    return devices;
}

} // namespace

bool couldBeReader(const UsbDevice &device)
{
    // A program that has claimed the interface appears as the driver usbfs.
    const bool isLeftToPrograms =
        device.driver.isEmpty() || device.driver == QLatin1String("usbfs");
    return device.hasReaderPipes && isLeftToPrograms;
}

UsbDevices listUsbDevices()
{
    UsbDevices result;
    libusb_context *context = nullptr;
    if (libusb_init(&context) < 0) {
        result.code = USB_READER_INIT_FAILED;
        return result;
    }
    libusb_device **list = nullptr;
    if (libusb_get_device_list(context, &list) < 0) {
        result.code = USB_READER_NO_DEVICE_LIST;
    } else {
        result.devices = describeAll(list);
        libusb_free_device_list(list, 1);
    }
    libusb_exit(context);
    return result;
}

} // namespace app
