#pragma once

// What changes on a reader that is looked at again and again, and in which order.

#include <QVector>

#include "apps/card/card_presence.h"
#include "apps/card/reader_look.h"

namespace app
{

enum class ReaderChange {
    READER_ADDED,
    READER_MISSING, ///< to begin with
    READER_REMOVED,
    CARD_READ,
    CARD_REMOVED,
    READ_FAILED, ///< as the look before did not
};

/**
 * A card is read after the reader was added, and removed before another is read. A reader that goes
 * takes no card with it: the one that lies on it when it comes back is the same, or another.
 */
class ReaderPresence
{
public:
    /** What one look at the reader changed. */
    QVector<ReaderChange> observe(const Look &look);

    /** What it changes that the card is taken off; the next one is new whatever it holds. */
    QVector<ReaderChange> takeCard();

private:
    QVector<ReaderChange> removedCard();

    ReaderState m_reader = ReaderState::UNKNOWN;
    bool m_hasCard = false;
    CardPresence m_card;
};

} // namespace app
