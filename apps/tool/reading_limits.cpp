#include "apps/tool/reading_limits.h"

#include "apps/process/interruption.h"
#include "apps/process/program_name.h"
#include "apps/process/translation.h"
#include "apps/tool/failure_report.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

Farewell farewellOf(const Failure &failure, const Options &options, const Output &output)
{
    return {messageLine(failure.words), options.json ? errorLine(failure) : QByteArray(),
            output.descriptor(), failure.exitStatus};
}

} // namespace

void limitReadings(const Options &options, const Output &output)
{
    catchInterruption(ExitStatus::READ_FAILED);
    const Failure brokenOff = toolFailure(ToolFault::READ_BROKEN_OFF, hangingReadWords());
    setFarewellOfHangingRead(farewellOf(brokenOff, options, output));
    if (!options.timeoutSeconds)
        return;
    limitReadings(static_cast<unsigned int>(*options.timeoutSeconds),
                  farewellOf(timedOutFailure(*options.timeoutSeconds), options, output));
}

Failure timedOutFailure(int seconds)
{
    const QString cause =
        tr("The reader asks again and again for another try, or does not answer; the "
           "reading was given up after %1 s.");
    return explainedToolFailure(ToolFault::READ_TIMED_OUT, cause.arg(seconds));
}

} // namespace app
