#pragma once

// A failure in both forms: words on standard error, and with --json an object on standard output.

#include "apps/process/output.h"
#include "apps/reading/failure.h"
#include "apps/tool/options.h"

namespace app
{

/** {"error": ...} on one line, ending with a line break. */
QByteArray errorLine(const Failure &failure);

/** In words; on a terminal its first line stands out. */
void printFailure(const Failure &failure);

/** Reports that nothing else is delivered. Returns how the program ends. */
ExitStatus report(const Failure &failure, const Options &options, Output *output);

} // namespace app
