#pragma once

// Waiting for a card to be laid on the reader.

#include <functional>

#include <QString>

#include "apps/process/exit_status.h"

namespace app
{

/**
 * Looks at the reader until there is a card, something fails, `seconds` are over or a signal came;
 * at least once. A terminal shows a sign of life meanwhile. `look` returns how the look ended.
 */
void lookWithin(int seconds, const std::function<ExitStatus()> &look);

/** Reports that no card came because the wait was broken off, or else `explanation`. */
void tellFailedLook(ExitStatus status, const QString &explanation);

} // namespace app
