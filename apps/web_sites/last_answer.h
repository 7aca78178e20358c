#pragma once

// What the host of the browser last answered, and to which site: kept for the doctor to say until
// the user logs out. Nothing of a card is in it.

#include <QString>

#include "apps/process/json_object.h"

namespace app
{

/** Replaces the one before. `result`: "card", or the name of a failure. */
void noteLastAnswer(const QString &origin, const QString &result);

/** {"time", "origin", "result"}, all of them texts; empty when there has been none. */
JsonObject lastAnswer();

} // namespace app
