#pragma once

// One reading of the card on the reader.

#include <optional>

#include "apps/card/card.h"
#include "apps/results/message.h"

namespace app
{

struct ReadOutcome {
    int code = 0;             ///< what `readIDCard` returned
    std::optional<Card> card; ///< only when a record was filled

    ExitStatus exitStatus() const;
};

/** Calls `readIDCard` once. The conditions of that function hold: GUI thread, no second call. */
ReadOutcome readCard();

/**
 * What happened, why and what to do, for a reading that gave no card. Holds nothing of what the
 * card says.
 */
Message messageOf(const ReadOutcome &outcome);

/** The same for a terminal. */
QString explain(const ReadOutcome &outcome);

} // namespace app
