#pragma once

// Which reader on the USB bus is meant when none is named.

#include <optional>

#include "apps/reading/failure.h"
#include "apps/reading/usb_devices.h"

namespace app
{

/** Exactly one of the two is set. */
struct ReaderChoice {
    std::optional<UsbIds> ids;
    std::optional<Failure> failure;
};

/** The one device that could be a reader; a failure for none and for several. */
ReaderChoice onlyReaderIn(const UsbDevices &list);

/** That on the bus; no device is opened. */
ReaderChoice onlyReaderOnBus();

} // namespace app
