#pragma once

// One reading of the card over USB, without the reader maker's library.

#include <optional>

#include "apps/card/card.h"
#include "apps/reading/usb_devices.h"
#include "apps/results/message.h"

namespace app
{

struct UsbOutcome {
    UsbIds ids;
    int code = 0; ///< `USB_READER_CODE`
    /** The reader as it was found after a failure; nothing when it was not there. */
    std::optional<UsbDevice> device;
    /** Whether the reader was there and is not any more. */
    bool isUnplugged = false;
    QByteArray record; ///< the reader's answer frame; empty after a failure
    FP_INFO_TYPE prints = FP_INFO_NONE;

    ExitStatus exitStatus() const;
};

/** Opens the reader, fetches the card's record and closes the reader. */
UsbOutcome readOverUsb(UsbIds ids);

/** The catalogue's row for the outcome; nothing for an unknown code. */
std::optional<ResultEntry> resultOf(const UsbOutcome &outcome);

/** What happened, why and what to do, for a reading that failed. */
Message messageOf(const UsbOutcome &outcome);

/** The same for a terminal. */
QString explain(const UsbOutcome &outcome);

} // namespace app
