#include "apps/results/result_catalogue.h"

#include <algorithm>

#include "api/result_codes.h"
#include "apps/process/translation.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Results)

constexpr const char *NULL_POINTER_REMEDY =
    QT_TR_NOOP("Fix the program: it must pass seven pointers, though only one record is filled.");

} // namespace

const std::vector<ResultEntry> &resultCatalogue()
{
    static const std::vector<ResultEntry> entries = {
        {IDCARD_RESULT_OK, "IDCARD_RESULT_OK", QT_TR_NOOP("The card was read."),
         QT_TR_NOOP("The reader delivered a card of one of the four kinds."),
         QT_TR_NOOP("Nothing needs to be done."), ExitStatus::DONE},
        {IDCARD_RESULT_OK, "IDCARD_RESULT_OK",
         QT_TR_NOOP("The call succeeded, but nothing was read."),
         QT_TR_NOOP("The reader reported a kind of card that this library does not name, or ended "
                    "the read with an unexpected code."),
         QT_TR_NOOP("Lay the card flat on the reader, keep it still and read once more. Only "
                    "resident identity cards, residence permits for Hong Kong, Macao and Taiwan "
                    "residents and foreigners' permanent residence cards can be read."),
         ExitStatus::NOTHING_READ},
        {IDCARD_RESULT_PORT_NOT_OPEN, "IDCARD_RESULT_PORT_NOT_OPEN",
         QT_TR_NOOP("The reader could not be opened."),
         QT_TR_NOOP(
             "No reader is connected, this user may not use it, another program holds it, or the "
             "reader maker's library was not found or failed while it opened the reader. A reader "
             "that answers the read itself with 1 gives this code as well."),
         QT_TR_NOOP("Plug the reader in, end other programs that use it, check the access rights "
                    "of its device, and see that the reader maker's library is beside "
                    "libidcard_reader_lib.so or where the loader looks for libraries."),
         ExitStatus::READER_NOT_OPENED},
        {IDCARD_RESULT_READ_FAILED, "IDCARD_RESULT_READ_FAILED",
         QT_TR_NOOP("Reading the card was broken off."),
         QT_TR_NOOP("The reader maker's library failed while it read, or memory ran out."),
         QT_TR_NOOP("Lay the card on the reader again and read once more; if it happens again, "
                    "unplug the reader, plug it in and see that the computer has free memory."),
         ExitStatus::READ_FAILED},
        {IDCARD_RESULT_NO_CARD, "IDCARD_RESULT_NO_CARD",
         QT_TR_NOOP("No card was found on the reader."),
         QT_TR_NOOP(
             "No card lies on the reader, it lies beside the antenna, it is not a card that the "
             "reader knows, or the reader maker's library failed while it looked for a card."),
         QT_TR_NOOP("Lay the card flat on the middle of the reader, take other cards away and read "
                    "once more."),
         ExitStatus::NO_CARD},
        {IDCARD_RESULT_PHOTO_NOT_DECODED, "IDCARD_RESULT_PHOTO_NOT_DECODED",
         QT_TR_NOOP("The photo of the card could not be decoded."),
         QT_TR_NOOP("The card delivered its photo compressed, and the photo decoder was not found, "
                    "failed, or refused the data."),
         QT_TR_NOOP("See that the photo decoder's library is beside libidcard_reader_lib.so or "
                    "where the loader looks for libraries; if it does, read the card once more."),
         ExitStatus::PHOTO_NOT_DECODED},
        {IDCARD_RESULT_NULL_CARD_KIND, "IDCARD_RESULT_NULL_CARD_KIND",
         QT_TR_NOOP("The program passed no place for the kind of card."),
         QT_TR_NOOP("The argument cardKind is null."), NULL_POINTER_REMEDY,
         ExitStatus::PROGRAM_FAILED},
        {IDCARD_RESULT_NULL_CN, "IDCARD_RESULT_NULL_CN",
         QT_TR_NOOP("The program passed no record for resident identity cards."),
         QT_TR_NOOP("The argument cn is null."), NULL_POINTER_REMEDY, ExitStatus::PROGRAM_FAILED},
        {IDCARD_RESULT_NULL_FOREIGN_2017, "IDCARD_RESULT_NULL_FOREIGN_2017",
         QT_TR_NOOP("The program passed no record for foreigners' cards of the 2017 edition."),
         QT_TR_NOOP("The argument f2017 is null."), NULL_POINTER_REMEDY,
         ExitStatus::PROGRAM_FAILED},
        {IDCARD_RESULT_NULL_FOREIGN_NEW, "IDCARD_RESULT_NULL_FOREIGN_NEW",
         QT_TR_NOOP("The program passed no record for foreigners' cards of the new edition."),
         QT_TR_NOOP("The argument fNew is null."), NULL_POINTER_REMEDY, ExitStatus::PROGRAM_FAILED},
        {IDCARD_RESULT_NULL_HMT, "IDCARD_RESULT_NULL_HMT",
         QT_TR_NOOP("The program passed no record for residence permits."),
         QT_TR_NOOP("The argument hmt is null."), NULL_POINTER_REMEDY, ExitStatus::PROGRAM_FAILED},
        {IDCARD_RESULT_NULL_FRONT_IMAGE, "IDCARD_RESULT_NULL_FRONT_IMAGE",
         QT_TR_NOOP("The program passed no place for the picture of the front."),
         QT_TR_NOOP("The argument frontImage is null."), NULL_POINTER_REMEDY,
         ExitStatus::PROGRAM_FAILED},
        {IDCARD_RESULT_NULL_BACK_IMAGE, "IDCARD_RESULT_NULL_BACK_IMAGE",
         QT_TR_NOOP("The program passed no place for the picture of the back."),
         QT_TR_NOOP("The argument backImage is null."), NULL_POINTER_REMEDY,
         ExitStatus::PROGRAM_FAILED},
    };
    return entries;
}

const std::vector<ExitStatusEntry> &exitStatusCatalogue()
{
    static const std::vector<ExitStatusEntry> entries = {
        {ExitStatus::DONE, QT_TR_NOOP("Done as asked.")},
        {ExitStatus::PROGRAM_FAILED,
         QT_TR_NOOP("The program itself failed: the simulator could not be loaded, or standard "
                    "output could not be written.")},
        {ExitStatus::WRONG_USAGE,
         QT_TR_NOOP("Wrong usage: an unknown option or value, a mistake in a configuration file, "
                    "several readers of which --device "
                    "names none, a card description or fault that the simulator refuses, or a file "
                    "that is not a raw card record.")},
        {ExitStatus::READER_NOT_OPENED, QT_TR_NOOP("The reader could not be opened.")},
        {ExitStatus::NO_CARD,
         QT_TR_NOOP("No card was found on the reader, or none came while waiting.")},
        {ExitStatus::READ_FAILED, QT_TR_NOOP("Reading the card was broken off.")},
        {ExitStatus::PHOTO_NOT_DECODED, QT_TR_NOOP("The photo of the card could not be decoded.")},
        {ExitStatus::FILES_NOT_WRITTEN, QT_TR_NOOP("The files could not be written.")},
        {ExitStatus::NOTHING_READ,
         QT_TR_NOOP("The reader answered, but with nothing that could be read.")},
        {ExitStatus::FOUND_WARNINGS, QT_TR_NOOP("The doctor found nothing worse than warnings: "
                                                "reading may work, or not as well as it could.")},
        {ExitStatus::FOUND_FAILURES,
         QT_TR_NOOP("The doctor found a failure: something does not work.")},
        {ExitStatus::READ_TIMED_OUT,
         QT_TR_NOOP(
             "Reading the card did not end within the time of --timeout, and was given up.")},
    };
    return entries;
}

const ResultEntry *findResult(int code, bool recordFilled)
{
    const auto &entries = resultCatalogue();
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const ResultEntry &entry) {
        return entry.code == code && (entry.exitStatus == ExitStatus::NOTHING_READ) ==
                                         (code == IDCARD_RESULT_OK && !recordFilled);
    });
    return found == entries.end() ? nullptr : &*found;
}

QString resultText(const char *text)
{
    return translated("Results", text);
}

} // namespace app
