#pragma once

// How the simulated reader describes itself on the bus.

#include <QByteArray>

#include "simulator/reader/usb_device.h"

namespace simulator
{

/** The device descriptor, then the configuration with its interface and four bulk endpoints. */
QByteArray readerDescriptors(const UsbIds &ids);

} // namespace simulator
