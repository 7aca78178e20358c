#pragma once

// How a reading that does not end is left: by a signal, or after the time of --timeout.

#include "apps/process/output.h"
#include "apps/reading/failure.h"
#include "apps/tool/options.h"

namespace app
{

/**
 * Catches the signals and limits every reading from here on. The closed library cannot be stopped
 * in its work: the process ends in the middle of it, before anything of the card is on the disk.
 */
void limitReadings(const Options &options, const Output &output);

/** Of a look at the reader that took longer. */
Failure timedOutFailure(int seconds);

} // namespace app
