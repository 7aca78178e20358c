#pragma once

// The USB devices that could be a reader, as the system describes them; none is opened.

#include <QString>
#include <QVector>

#include "common/usb_ids.h"

namespace app
{

struct UsbDevice {
    int bus = 0;
    int address = 0;
    UsbIds ids;
    QString deviceClass;         ///< of the device or, where its interfaces have it, of the first
    QString manufacturer;        ///< what the device says of itself; may be empty
    QString product;             ///< likewise
    bool hasReaderPipes = false; ///< interface 0 has the pipes by which commands and answers go
    QString driver;              ///< the kernel's, that is bound to interface 0; may be empty
    QString node;                ///< its file in /dev/bus/usb
    bool mayOpen = false;        ///< whether this user may
};

/**
 * Whether it has the pipes of a reader and the kernel leaves it to programs. What a driver of the
 * kernel holds is most likely something else, such as a memory stick.
 */
bool couldBeReader(const UsbDevice &device);

struct UsbDevices {
    /** What failed: `USB_READER_INIT_FAILED`, `USB_READER_NO_DEVICE_LIST`, or 0. */
    int code = 0;
    QVector<UsbDevice> devices; ///< without hubs, by bus and address
};

UsbDevices listUsbDevices();

} // namespace app
