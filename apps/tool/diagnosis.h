#pragma once

// What the doctor sees of the cause of a failed reading.

#include "apps/reading/failure.h"
#include "apps/tool/options.h"

namespace app
{

/**
 * `failure` of a reading through the reader maker's library, whose code alone has several causes:
 * with the one that the doctor finds on this machine and what it says is to be done. As it was when
 * the doctor finds none, when the code says enough, or when the simulator failed. Takes a moment,
 * and some seconds where a library hangs; a signal to end ends it, with `failure` as it was.
 */
Failure diagnosed(const Failure &failure, const Options &options);

} // namespace app
