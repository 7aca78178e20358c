#include "apps/reading/reader_look.h"

#include <QCryptographicHash>

#include "apps/card/raw_record.h"
#include "apps/card/record_decoder.h"
#include "reader/usb_codes.h"

namespace app
{

namespace
{

ReaderState stateAfter(const UsbOutcome &outcome)
{
    switch (outcome.code) {
    case USB_READER_NOT_FOUND:
        return ReaderState::MISSING;
    case USB_READER_INIT_FAILED:
    case USB_READER_NO_DEVICE_LIST:
    case USB_READER_NO_DESCRIPTOR:
        return ReaderState::UNKNOWN;
    default:
        return outcome.isUnplugged ? ReaderState::MISSING : ReaderState::THERE;
    }
}

} // namespace

bool Look::foundNoCard() const
{
    return failure && failure->exitStatus == ExitStatus::NO_CARD;
}

Look failedLook(ReaderState reader, const Failure &failure)
{
    Look look;
    look.reader = reader;
    look.failure = failure;
    return look;
}

Look lookThroughLibrary()
{
    ReadOutcome outcome = readCard();
    if (!outcome.card) {
        const bool isMissing = outcome.exitStatus() == ExitStatus::READER_NOT_OPENED;
        return failedLook(isMissing ? ReaderState::MISSING : ReaderState::THERE,
                          failureOf(outcome));
    }
    Look look;
    look.digest = outcome.card->digest();
    look.card = std::move(outcome.card);
    decodePhoto(&*look.card);
    return look;
}

Look lookOverUsb(UsbIds ids)
{
    const UsbOutcome outcome = readOverUsb(ids);
    Look look;
    if (outcome.exitStatus() != ExitStatus::DONE) {
        look = failedLook(stateAfter(outcome), failureOf(outcome));
        look.gotNoData = outcome.code == USB_READER_NO_DATA;
        return look;
    }
    look.card = decodeRawRecord(outcome.record, outcome.prints, Road::USB);
    if (!look.card)
        return failedLook(ReaderState::THERE, undecodedTextFailure());
    look.recordWarnings = checkRawRecord(outcome.record).warnings;
    look.digest = QCryptographicHash::hash(outcome.record, QCryptographicHash::Sha256);
    return look;
}

} // namespace app
