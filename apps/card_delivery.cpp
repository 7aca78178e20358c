#include "apps/card_delivery.h"

#include "api/result_codes.h"
#include "apps/card_output.h"
#include "apps/commands.h"
#include "apps/message.h"

namespace app
{

ExistingFiles existingFiles(const Options &options)
{
    return options.force ? ExistingFiles::Replace : ExistingFiles::Refuse;
}

bool canBeSaved(const Options &options)
{
    if (options.outFolder.isEmpty())
        return true;
    const QString obstacle =
        obstacleTo(options.outFolder, cardFileNames(CardFiles::All), existingFiles(options));
    if (!obstacle.isEmpty())
        tell(obstacle);
    return obstacle.isEmpty();
}

ExitStatus deliver(const Card &card, const Options &options, Output *output)
{
    ExitStatus status = ExitStatus::Done;
    std::optional<QString> folder;
    if (!options.outFolder.isEmpty()) {
        const QString notWritten = writeFileSet(options.outFolder, contentsOf(card, CardFiles::All),
                                                existingFiles(options));
        if (notWritten.isEmpty()) {
            folder = options.outFolder;
            tellIfVerbose(options, QStringLiteral("Saved the card in %1.").arg(*folder));
            tellMissingFiles(card, CardFiles::All);
        } else {
            tell(notWritten);
            status = ExitStatus::FilesNotWritten;
        }
    }
    output->write(options.json ? indentedJson(toJson(card, folder))
                               : toTable(card, folder).toUtf8());
    return status;
}

ExitStatus deliverDecoded(const Card &card, const Options &options, Output *output)
{
    const ExitStatus status = deliver(card, options, output);
    if (card.photoFormat() != PhotoFormat::Compressed)
        return status;
    const ResultEntry *const entry = findResult(IDCARD_RESULT_PHOTO_NOT_DECODED, true);
    tell(terminalText(messageOf(*entry)));
    if (!options.simulatorPhotos)
        tell(QStringLiteral("The photo of a simulated reader needs --simulator-photos."));
    return status == ExitStatus::Done ? entry->exitStatus : status;
}

} // namespace app
