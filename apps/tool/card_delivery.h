#pragma once

// What the commands that end with one card do with it: save it on request, and print it.

#include "apps/card/card.h"
#include "apps/card/card_files.h"
#include "apps/card/file_set.h"
#include "apps/process/output.h"
#include "apps/reading/failure.h"
#include "apps/tool/options.h"

namespace app
{

ExistingFiles existingFiles(const Options &options);

/** A problem with files as a failure; nothing for an empty text. */
std::optional<Failure> fileFailure(const QString &problem);

/** Why the card could not be saved as the options say, as far as is known now. */
std::optional<Failure> obstacleToSaving(const Options &options);

/**
 * Saves and prints. What keeps the card from being saved is reported, and it is still printed, and
 * so is a photo that the card has and that was not decoded. The first of these, or else `earlier`,
 * which was reported before, is the error of the printed card and decides how the program ends.
 */
ExitStatus deliver(const Card &card, const Options &options, Output *output,
                   const std::optional<Failure> &earlier = std::nullopt);

/** Why the photo is not a picture although the card delivered one, after it was to be decoded. */
std::optional<Failure> photoFailure(const Card &card, const Options &options);

/** Prints such a failure, and what helps if the reader is a simulated one. */
void printPhotoFailure(const Failure &failure, const Card &card, const Options &options);

/** Prints what is odd about a raw record, which without a name is the reader's answer. */
void printRecordWarnings(const QStringList &warnings, const QString &name = {});

/** What is known of a raw record that was checked. */
struct RecordOrigin {
    FP_INFO_TYPE prints;
    Road road;
    std::optional<Failure> earlier; ///< as for `deliver`
};

/** Decodes a raw record that was checked and delivers the card. */
ExitStatus deliverRecord(const QByteArray &record, const RecordOrigin &origin,
                         const Options &options, Output *output);

/** Prints which files were not written because the card has no such photo or picture. */
void tellMissingFiles(const Card &card, CardFiles which);

} // namespace app
