#pragma once

// What every outcome of the USB road means to a person: the one place where these texts are.
// A table of `docs/result-codes.md` is made from them.

#include "apps/results/result_catalogue.h"

namespace app
{

/** All codes of reader/usb_codes.h, in its order. */
const std::vector<ResultEntry> &usbCatalogue();

/** The row of a code; null for an unknown number. */
const ResultEntry *findUsbResult(int code);

/**
 * The row of a failure after which the reader is not plugged in any more, whatever the code: its
 * code and constant with the texts of an unplugging.
 */
ResultEntry unpluggedResult(const ResultEntry &failure);

} // namespace app
