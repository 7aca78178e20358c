#pragma once

// What changes on a reader that is looked at again and again, and in which order.

#include <optional>
#include <utility>

#include <QVector>

#include "apps/reading/reader_look.h"

namespace app
{

enum class ReaderChange {
    READER_ADDED,
    READER_MISSING, ///< to begin with
    READER_REMOVED,
    CARD_READ, ///< a new card, or the same after a look that failed
    CARD_REMOVED,
    READ_FAILED, ///< as the look before did not
};

/**
 * A card is read after the reader was added, and removed before another is read. A reader that goes
 * takes no card with it: the one that lies on it when it comes back is the same, or another. Nor
 * does a card go that is found and gives no data: the next look decides.
 */
class ReaderPresence
{
public:
    /** What one look at the reader changed. */
    QVector<ReaderChange> observe(const Look &look);

    /** What it changes that the card is taken off; the next one is new whatever it holds. */
    QVector<ReaderChange> takeCard();

private:
    QVector<ReaderChange> observeCard(const Look &look);
    QVector<ReaderChange> removeCard();

    ReaderState m_reader = ReaderState::UNKNOWN;
    QByteArray m_card;        ///< digest of the card that lies there; empty: none does
    bool m_gotNoData = false; ///< by the last look
    std::optional<std::pair<ExitStatus, int>> m_failure; ///< codes alone do not distinguish all
};

} // namespace app
