#pragma once

#include <QString>

#include "apps/tool/options.h"

namespace app
{

/** Prints `message` on standard error if --verbose was given. */
void tellIfVerbose(const Options &options, const QString &message);

} // namespace app
