#include "apps/tool/failure_report.h"

#include <unistd.h>

#include "apps/card/card_output.h"
#include "apps/process/json_object.h"
#include "apps/process/standard_streams.h"
#include "apps/terminal/colours.h"
#include "common/texts.h"

namespace app
{

QByteArray errorLine(const Failure &failure)
{
    return jsonLine(JsonObject{{"error", toJson(failure)}});
}

void printFailure(const Failure &failure)
{
    QStringList lines = splitAt(QLatin1Char('\n'), failure.words);
    lines.first() = coloured(lines.first(), Colour::RED, coloursOf(STDERR_FILENO));
    printMessage(lines.join(QLatin1Char('\n')));
}

ExitStatus report(const Failure &failure, const Options &options, Output *output)
{
    printFailure(failure);
    if (options.json)
        output->write(errorLine(failure));
    return failure.exitStatus;
}

} // namespace app
