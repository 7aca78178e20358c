#pragma once

// By which road a command reaches the reader.

#include <optional>

#include "apps/card/failure.h"
#include "apps/tool/options.h"

namespace app
{

/** Sets the road of a command that reads from a reader; a failure when other options forbid it. */
std::optional<Failure> chooseRoad(Options *options);

} // namespace app
