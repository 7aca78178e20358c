#include "apps/tool/card_delivery.h"

#include "api/result_codes.h"
#include "apps/card/card_output.h"
#include "apps/card/message.h"
#include "apps/card/record_decoder.h"
#include "apps/tool/verbose.h"

namespace app
{

ExistingFiles existingFiles(const Options &options)
{
    return options.force ? ExistingFiles::REPLACE : ExistingFiles::REFUSE;
}

bool canBeSaved(const Options &options)
{
    if (options.outFolder.isEmpty())
        return true;
    const QString obstacle =
        obstacleTo(options.outFolder, cardFileNames(CardFiles::ALL), existingFiles(options));
    if (!obstacle.isEmpty())
        printMessage(obstacle);
    return obstacle.isEmpty();
}

ExitStatus deliver(const Card &card, const Options &options, Output *output)
{
    ExitStatus status = ExitStatus::DONE;
    std::optional<QString> folder;
    if (!options.outFolder.isEmpty()) {
        const QString notWritten = writeFileSet(options.outFolder, contentsOf(card, CardFiles::ALL),
                                                existingFiles(options));
        if (notWritten.isEmpty()) {
            folder = options.outFolder;
            tellIfVerbose(options, QStringLiteral("Saved the card in %1.").arg(*folder));
            tellMissingFiles(card, CardFiles::ALL);
        } else {
            printMessage(notWritten);
            status = ExitStatus::FILES_NOT_WRITTEN;
        }
    }
    output->write(options.json ? indentedJson(toJson(card, folder))
                               : toTable(card, folder).toUtf8());
    return status;
}

namespace
{

/** As `deliver`; a photo that the card has and that was not decoded decides how the program ends.
 */
ExitStatus deliverDecoded(const Card &card, const Options &options, Output *output)
{
    const ExitStatus status = deliver(card, options, output);
    if (card.photoFormat() != PhotoFormat::COMPRESSED)
        return status;
    const ResultEntry *const entry = findResult(IDCARD_RESULT_PHOTO_NOT_DECODED, true);
    printMessage(terminalText(messageOf(*entry)));
    if (!options.simulatorPhotos)
        printMessage(QStringLiteral("The photo of a simulated reader needs --simulator-photos."));
    return status == ExitStatus::DONE ? entry->exitStatus : status;
}

} // namespace

ExitStatus deliverRecord(const QByteArray &record, FP_INFO_TYPE prints, Road road,
                         const Options &options, Output *output)
{
    const std::optional<Card> card = decodeRawRecord(record, prints, road);
    if (!card) {
        printMessage(
            QStringLiteral("The card's text could not be decoded: the sex code of a foreigner's "
                           "card must be 0, 1, 2 or 9. Read the card once more."));
        return ExitStatus::NOTHING_READ;
    }
    return deliverDecoded(*card, options, output);
}

void tellMissingFiles(const Card &card, CardFiles which)
{
    for (const QString &note : missingFileNotes(card, which))
        printMessage(note);
}

} // namespace app
