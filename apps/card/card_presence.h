#pragma once

// Distinguishes a card that was newly laid on the reader from one that has been there.

#include <optional>
#include <utility>

#include "apps/card/card_reader.h"

namespace app
{

enum class Sighting {
    NOTHING,     ///< no card on the reader
    NEW_CARD,    ///< the reader was empty before, or held something else
    SAME_CARD,   ///< the card seen last
    NEW_FAILURE, ///< a failure that the look before did not end with
    SAME_FAILURE,
};

class CardPresence
{
public:
    /** Takes note of what one look at the reader gave. */
    Sighting observe(const ReadOutcome &outcome);

    /** As above for any road: the card, if there was one, how the look ended and with which code.
     */
    Sighting observe(const Card *card, ExitStatus status, int code);

    /** As above, with what distinguishes the card from others; empty when there was none. */
    Sighting observe(const QByteArray &digest, ExitStatus status, int code);

private:
    QByteArray m_card; ///< digest of the card seen last; empty when the reader was empty
    std::optional<std::pair<ExitStatus, int>> m_failure; ///< codes alone do not distinguish all
};

} // namespace app
