#pragma once

// The command line of idcard-virtual-reader: what it may hold, what it says, and the help text.

#include <cstdint>

#include <QHostAddress>
#include <QString>
#include <QStringList>

#include "apps/terminal/command_line.h"
#include "simulator/reader/usb_device.h"
#include "simulator/usbip/usbip_protocol.h"

namespace app
{

constexpr const char *VIRTUAL_READER_NAME = "idcard-virtual-reader";

struct VirtualReaderOptions {
    QHostAddress address{QHostAddress::LocalHost};
    std::uint16_t port = simulator::USBIP_DEFAULT_PORT; ///< 0: any free one
    UsbIds ids = simulator::DEFAULT_READER_IDS;
    QString card; ///< empty: none on the reader
    QString faults;
    bool endsWithInput = false;
};

/** Reads the arguments that follow the program's name. Needs a QCoreApplication. */
CommandLine<VirtualReaderOptions> parseVirtualReaderArguments(const QStringList &arguments);

} // namespace app
