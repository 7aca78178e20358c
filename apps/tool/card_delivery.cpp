#include "apps/tool/card_delivery.h"

#include "api/result_codes.h"
#include "apps/card/card_output.h"
#include "apps/card/record_decoder.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "apps/tool/diagnosis.h"
#include "apps/tool/failure_report.h"
#include "apps/tool/verbose.h"
#include "common/texts.h"

namespace app
{

ExistingFiles existingFiles(const Options &options)
{
    return options.force ? ExistingFiles::REPLACE : ExistingFiles::REFUSE;
}

std::optional<Failure> fileFailure(const QString &problem)
{
    if (problem.isEmpty())
        return std::nullopt;
    return toolFailure(ToolFault::FILES_NOT_WRITTEN, problem);
}

std::optional<Failure> obstacleToSaving(const Options &options)
{
    if (options.outFolder.isEmpty())
        return std::nullopt;
    return fileFailure(
        obstacleTo(options.outFolder, cardFileNames(CardFiles::ALL), existingFiles(options)));
}

namespace
{

IDCARD_TEXTS(Tool)

/** Saves the card if a folder was given; returns why it was not saved. */
std::optional<Failure> save(const Card &card, const Options &options)
{
    if (options.outFolder.isEmpty())
        return std::nullopt;
    auto failure = fileFailure(
        writeFileSet(options.outFolder, contentsOf(card, CardFiles::ALL), existingFiles(options)));
    if (failure) {
        printFailure(*failure);
        return failure;
    }
    tellIfVerbose(options, tr("Saved the card in %1.").arg(options.outFolder));
    tellMissingFiles(card, CardFiles::ALL);
    return std::nullopt;
}

void print(const Card &card, const std::optional<QString> &folder,
           const std::optional<Failure> &failure, const Options &options, Output *output)
{
    if (!options.json) {
        output->write(
            toTable(card, folder, QDate::currentDate(), coloursOf(output->descriptor())).toUtf8());
        return;
    }
    JsonObject object = toJson(card, folder, options.inlineParts);
    if (failure)
        object.insert("error", toJson(*failure));
    output->write(indentedJson(object));
}

} // namespace

std::optional<Failure> photoFailure(const Card &card, const Options &options)
{
    if (card.photoFormat() != PhotoFormat::COMPRESSED)
        return std::nullopt;
    return diagnosed(resultFailure(*findResult(IDCARD_RESULT_PHOTO_NOT_DECODED, true)), options);
}

void printPhotoFailure(const Failure &failure, const Card &card, const Options &options)
{
    printFailure(failure);
    if (!options.simulatorPhotos && card.road() != Road::READER_LIBRARY)
        printMessage(tr("The photo of a simulated reader needs --simulator-photos."));
}

void printRecordWarnings(const QStringList &warnings, const QString &name)
{
    const QString what = name.isEmpty() ? tr("The reader's answer") : name;
    for (const QString &warning : warnings)
        printMessage(filledIn(tr("%1 is an odd record: %2"), what, warning));
}

ExitStatus deliver(const Card &card, const Options &options, Output *output,
                   const std::optional<Failure> &earlier)
{
    const std::optional<Failure> notSaved = save(card, options);
    const std::optional<Failure> noPhoto = photoFailure(card, options);
    const std::optional<Failure> failure = notSaved ? notSaved : noPhoto ? noPhoto : earlier;
    std::optional<QString> folder;
    if (!options.outFolder.isEmpty() && !notSaved)
        folder = options.outFolder;
    print(card, folder, failure, options, output);
    if (noPhoto)
        printPhotoFailure(*noPhoto, card, options);
    return failure ? failure->exitStatus : ExitStatus::DONE;
}

ExitStatus deliverRecord(const QByteArray &record, const RecordOrigin &origin,
                         const Options &options, Output *output)
{
    const std::optional<Card> card = decodeRawRecord(record, origin.prints, origin.road);
    if (card)
        return deliver(*card, options, output, origin.earlier);
    return report(undecodedTextFailure(), options, output);
}

void tellMissingFiles(const Card &card, CardFiles which)
{
    for (const QString &note : missingFileNotes(card, which))
        printMessage(note);
}

} // namespace app
