#pragma once

// What the commands that end with one card do with it: save it on request, and print it.

#include "apps/card/card.h"
#include "apps/card/card_files.h"
#include "apps/card/file_set.h"
#include "apps/process/exit_status.h"
#include "apps/process/standard_streams.h"
#include "apps/tool/options.h"

namespace app
{

ExistingFiles existingFiles(const Options &options);

/** Whether the card could be saved as the options say, as far as is known now; reports why not. */
bool canBeSaved(const Options &options);

/**
 * Saves and prints. A card that cannot be saved is reported and still printed. Returns how the
 * program ends if all else went well.
 */
ExitStatus deliver(const Card &card, const Options &options, Output *output);

/**
 * Decodes a raw record that was checked and delivers the card. A photo that the card has and that
 * was not decoded decides how the program ends.
 */
ExitStatus deliverRecord(const QByteArray &record, FP_INFO_TYPE prints, Road road,
                         const Options &options, Output *output);

/** Prints which files were not written because the card has no such photo or picture. */
void tellMissingFiles(const Card &card, CardFiles which);

} // namespace app
