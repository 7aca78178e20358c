#include "apps/tool/failure_report.h"

#include "apps/card/card_output.h"
#include "apps/process/json_object.h"

namespace app
{

QByteArray errorLine(const Failure &failure)
{
    return jsonLine(JsonObject{{"error", toJson(failure)}});
}

ExitStatus report(const Failure &failure, const Options &options, Output *output)
{
    printMessage(failure.words);
    if (options.json)
        output->write(errorLine(failure));
    return failure.exitStatus;
}

} // namespace app
