#pragma once

// What the commands that end with one card do with it: save it if they are asked to, and print it.

#include "apps/card.h"
#include "apps/exit_status.h"
#include "apps/file_set.h"
#include "apps/options.h"
#include "apps/standard_streams.h"

namespace app
{

ExistingFiles existingFiles(const Options &options);

/** Whether the card could be saved as the options say, as far as can be told now; tells why not. */
bool canBeSaved(const Options &options);

/**
 * Saves and prints. A card that cannot be saved is told and printed all the same. Returns how the
 * program ends if all else went well.
 */
ExitStatus deliver(const Card &card, const Options &options, Output *output);

/** As `deliver`; a photo that the card has and that was not decoded decides how the program ends.
 */
ExitStatus deliverDecoded(const Card &card, const Options &options, Output *output);

} // namespace app
