#pragma once

// Waiting for a card to be laid on the reader.

#include <functional>

#include "apps/reading/failure.h"

namespace app
{

/**
 * Looks at the reader until there is a card, something fails, `seconds` are over or a signal came;
 * at least once. A terminal shows a sign of life meanwhile. `look` returns how the look ended.
 */
void lookWithin(int seconds, const std::function<ExitStatus()> &look);

/** The failure of the last look; or, when it found no card, that the wait was broken off. */
Failure failedLook(const Failure &failure);

} // namespace app
