#include "apps/results/usb_catalogue.h"

#include <algorithm>

#include "apps/process/translation.h"
#include "reader/usb_codes.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Results)

constexpr const char *PLUG_ANEW = QT_TR_NOOP("Unplug the reader, plug it in, straight into the "
                                             "computer if it hangs on a hub, and read once more.");
constexpr const char *LAY_DOWN_ANEW =
    QT_TR_NOOP("Lay the card flat on the middle of the reader, keep it still, take other cards "
               "away and read once more.");
constexpr const char *CHECK_DEVICE =
    QT_TR_NOOP("Read once more. If it happens again, see with \"idcard-reader usb --list\" that "
               "the ids are those of the reader, and plug the reader in again.");
constexpr const char *NO_ANSWER_CAUSE =
    QT_TR_NOOP("The reader gave no answer within five seconds, or the transfer failed: it hangs, "
               "its cable is bad, or the device with these ids is not a card reader.");
constexpr const char *NOT_TAKEN_CAUSE =
    QT_TR_NOOP("The device did not take the whole command: it hangs, its cable is bad, or the "
               "device with these ids is not a card reader.");
constexpr const char *GARBLED_SUMMARY = QT_TR_NOOP("The reader's answer is not a card record.");

} // namespace

const std::vector<ResultEntry> &usbCatalogue()
{
    static const std::vector<ResultEntry> entries = {
        {USB_READER_OK, "USB_READER_OK", QT_TR_NOOP("The card was read."),
         QT_TR_NOOP("The reader found the card and delivered its record."),
         QT_TR_NOOP("Nothing needs to be done."), ExitStatus::DONE},
        {USB_READER_INIT_FAILED, "USB_READER_INIT_FAILED", QT_TR_NOOP("USB could not be used."),
         QT_TR_NOOP(
             "The system has no USB, or this program may not see it: libusb could not be set up."),
         QT_TR_NOOP("See that /dev/bus/usb exists; in a container it must be passed through."),
         ExitStatus::READER_NOT_OPENED},
        {USB_READER_NO_DEVICE_LIST, "USB_READER_NO_DEVICE_LIST",
         QT_TR_NOOP("The USB devices could not be listed."),
         QT_TR_NOOP("There is no list of devices, or memory ran out."),
         QT_TR_NOOP("See that /sys/bus/usb and /dev/bus/usb exist and can be read; in a container "
                    "both must be passed through."),
         ExitStatus::READER_NOT_OPENED},
        {USB_READER_NO_DESCRIPTOR, "USB_READER_NO_DESCRIPTOR",
         QT_TR_NOOP("The search for the reader was broken off."),
         QT_TR_NOOP("A USB device that is listed before the reader could not be described."),
         QT_TR_NOOP("Unplug other USB devices, or plug the reader in again, and read once more."),
         ExitStatus::READER_NOT_OPENED},
        {USB_READER_OPEN_FAILED, "USB_READER_OPEN_FAILED",
         QT_TR_NOOP("The reader could not be opened."),
         QT_TR_NOOP("The reader is there, but the system refused to open it, for instance because "
                    "it was being plugged in or the program has too many files open."),
         PLUG_ANEW, ExitStatus::READER_NOT_OPENED},
        {USB_READER_NO_PERMISSION, "USB_READER_NO_PERMISSION",
         QT_TR_NOOP("This user may not use the reader."),
         QT_TR_NOOP("The reader is there, but its device node is not open to this user: the udev "
                    "rule for the reader is missing, or the user is not in its group."),
         QT_TR_NOOP("Run \"idcard-reader-access\" as root while the reader is plugged in: it opens "
                    "the reader to the user at the machine and to the group idcard-reader. A user "
                    "who was added to the group logs in again."),
         ExitStatus::READER_NOT_OPENED},
        {USB_READER_NOT_FOUND, "USB_READER_NOT_FOUND", QT_TR_NOOP("There is no such reader."),
         QT_TR_NOOP("No USB device has the vendor and product id that are named or, where none "
                    "are, the pipes of a reader and no kernel driver: it is not plugged in, or is "
                    "another one."),
         QT_TR_NOOP(
             "Plug the reader in and see with \"idcard-reader usb --list\" which ids it has."),
         ExitStatus::READER_NOT_OPENED},
        {USB_READER_CLAIM_FAILED, "USB_READER_CLAIM_FAILED", QT_TR_NOOP("The reader is in use."),
         QT_TR_NOOP("Another program holds the reader, for instance one that reads cards through "
                    "the reader maker's library, or the computer's kernel would not give it up."),
         QT_TR_NOOP("End the other program (as root, \"fuser -v\" with the device's node names it) "
                    "and read once more."),
         ExitStatus::READER_NOT_OPENED},
        {USB_READER_RESET_FAILED, "USB_READER_RESET_FAILED",
         QT_TR_NOOP("The reader could not be reset."),
         QT_TR_NOOP("The reader was opened and did not come back from its reset."), PLUG_ANEW,
         ExitStatus::READER_NOT_OPENED},
        {USB_READER_LOOKUP_MISMATCH, "USB_READER_LOOKUP_MISMATCH",
         QT_TR_NOOP("No card was found on the reader."),
         QT_TR_NOOP(
             "No card lies on the reader, it lies beside the antenna, or it is not a card that the "
             "reader knows. A device that is not a card reader may answer like that too."),
         LAY_DOWN_ANEW, ExitStatus::NO_CARD},
        {USB_READER_LOOKUP_READ_FAILED, "USB_READER_LOOKUP_READ_FAILED",
         QT_TR_NOOP("The reader did not answer whether a card is there."), NO_ANSWER_CAUSE,
         CHECK_DEVICE, ExitStatus::READ_FAILED},
        {USB_READER_LOOKUP_WRITE_FAILED, "USB_READER_LOOKUP_WRITE_FAILED",
         QT_TR_NOOP("The command to look for a card could not be sent."), NOT_TAKEN_CAUSE,
         CHECK_DEVICE, ExitStatus::READ_FAILED},
        {USB_READER_SELECT_MISMATCH, "USB_READER_SELECT_MISMATCH", QT_TR_NOOP("The card was lost."),
         QT_TR_NOOP("The reader found the card and could not select it: it was moved, or two cards "
                    "lie on the reader."),
         LAY_DOWN_ANEW, ExitStatus::READ_FAILED},
        {USB_READER_SELECT_READ_FAILED, "USB_READER_SELECT_READ_FAILED",
         QT_TR_NOOP("The reader did not answer whether it selected the card."), NO_ANSWER_CAUSE,
         LAY_DOWN_ANEW, ExitStatus::READ_FAILED},
        {USB_READER_SELECT_WRITE_FAILED, "USB_READER_SELECT_WRITE_FAILED",
         QT_TR_NOOP("The command to select the card could not be sent."), NOT_TAKEN_CAUSE,
         CHECK_DEVICE, ExitStatus::READ_FAILED},
        {USB_READER_DATA_LENGTH_INVALID, "USB_READER_DATA_LENGTH_INVALID", GARBLED_SUMMARY,
         QT_TR_NOOP("The answer is not as long as a record with no, one or two fingerprints."),
         CHECK_DEVICE, ExitStatus::NOTHING_READ},
        {USB_READER_DATA_PREAMBLE_WRONG, "USB_READER_DATA_PREAMBLE_WRONG", GARBLED_SUMMARY,
         QT_TR_NOOP("The answer does not begin as the reader's frames do."), CHECK_DEVICE,
         ExitStatus::NOTHING_READ},
        {USB_READER_DATA_STATUS_WRONG, "USB_READER_DATA_STATUS_WRONG", GARBLED_SUMMARY,
         QT_TR_NOOP(
             "The reader reported a failure, or lengths of text and photo that no card has."),
         CHECK_DEVICE, ExitStatus::NOTHING_READ},
        {USB_READER_DATA_LENGTH_MISMATCH, "USB_READER_DATA_LENGTH_MISMATCH", GARBLED_SUMMARY,
         QT_TR_NOOP("The answer is longer or shorter than it says it is."), CHECK_DEVICE,
         ExitStatus::NOTHING_READ},
        {USB_READER_DATA_PRINTS_INVALID, "USB_READER_DATA_PRINTS_INVALID", GARBLED_SUMMARY,
         QT_TR_NOOP("The answer declares an amount of fingerprint data that no card has."),
         CHECK_DEVICE, ExitStatus::NOTHING_READ},
        {USB_READER_DATA_READ_FAILED, "USB_READER_DATA_READ_FAILED",
         QT_TR_NOOP("Reading the card was broken off."),
         QT_TR_NOOP("The card was found, but the reader did not deliver its record within five "
                    "seconds, or the transfer failed."),
         LAY_DOWN_ANEW, ExitStatus::READ_FAILED},
        {USB_READER_DATA_WRITE_FAILED, "USB_READER_DATA_WRITE_FAILED",
         QT_TR_NOOP("The command to read the card could not be sent."), NOT_TAKEN_CAUSE,
         CHECK_DEVICE, ExitStatus::READ_FAILED},
        {USB_READER_NO_DATA, "USB_READER_NO_DATA", QT_TR_NOOP("The card gave no data."),
         QT_TR_NOOP("The card was taken off while it was read, it lies beside the antenna, or it "
                    "is not a card that the reader knows."),
         LAY_DOWN_ANEW, ExitStatus::NO_CARD},
    };
    return entries;
}

const ResultEntry *findUsbResult(int code)
{
    const auto &entries = usbCatalogue();
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const ResultEntry &entry) { return entry.code == code; });
    return found == entries.end() ? nullptr : &*found;
}

ResultEntry unpluggedResult(const ResultEntry &failure)
{
    return {failure.code,
            failure.constant,
            QT_TR_NOOP("The reader was unplugged while it was used."),
            QT_TR_NOOP("The reader was there and is not any more: its cable came off, it lost its "
                       "power, or it broke down."),
            QT_TR_NOOP("Plug the reader in again and read once more."),
            ExitStatus::READ_FAILED};
}

} // namespace app
