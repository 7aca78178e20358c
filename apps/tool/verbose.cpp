#include "apps/tool/verbose.h"

#include "apps/process/standard_streams.h"

namespace app
{

void tellIfVerbose(const Options &options, const QString &message)
{
    if (options.verbose)
        printMessage(message);
}

} // namespace app
