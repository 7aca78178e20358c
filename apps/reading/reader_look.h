#pragma once

// One look at the reader by either road, as a program needs it that looks again and again.

#include <optional>

#include "apps/card/card.h"
#include "apps/reading/failure.h"

namespace app
{

/** Where the reader is, as far as a look at it tells. */
enum class ReaderState {
    THERE,
    MISSING,
    UNKNOWN, ///< the look did not get that far
};

struct Look {
    ReaderState reader = ReaderState::THERE;
    std::optional<Card> card;
    QStringList recordWarnings;     ///< of `checkRawRecord` over USB, for people
    QByteArray digest;              ///< that distinguishes cards; empty without a card
    std::optional<Failure> failure; ///< why there is no card
    /** Whether the reader found a card that then gave no data: it may lie there or be gone. */
    bool gotNoData = false;

    /** Whether the reader is in order and no card lies on it. */
    bool foundNoCard() const;
};

/** A look that ended before a reader was looked at. */
Look failedLook(ReaderState reader, const Failure &failure);

/**
 * By `readIDCard`, under its conditions. Its code for a port that does not open counts as a missing
 * reader: the reader maker's library gives no other.
 */
Look lookThroughLibrary();

/** The card is compared by its raw record. */
Look lookOverUsb(UsbIds ids);

} // namespace app
