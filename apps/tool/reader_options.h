#pragma once

// From which reader and by which road a command reads: what its options leave open the
// configuration files say.

#include <optional>

#include "apps/reading/configuration.h"
#include "apps/reading/failure.h"
#include "apps/tool/options.h"

namespace app
{

/**
 * Completes the options of a command that reads from a reader; its road is said then. A failure
 * when a file has a mistake or options contradict each other.
 */
std::optional<Failure> completeReaderOptions(const Configuration &configuration, Options *options);

/** The same by the files of this machine and user, which no other command looks at. */
std::optional<Failure> completeReaderOptions(Options *options);

} // namespace app
