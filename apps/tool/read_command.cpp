// The command "read".

#include <QElapsedTimer>

#include "apps/card/record_decoder.h"
#include "apps/process/translation.h"
#include "apps/reading/card_reader.h"
#include "apps/tool/card_delivery.h"
#include "apps/tool/commands.h"
#include "apps/tool/diagnosis.h"
#include "apps/tool/failure_report.h"
#include "apps/tool/reading_limits.h"
#include "apps/tool/simulator_setup.h"
#include "apps/tool/verbose.h"
#include "apps/tool/waiting.h"

namespace app
{

IDCARD_TEXTS(Tool)

ExitStatus runRead(const Options &options, Output *output)
{
    if (options.road == USB_ROAD)
        return runUsb(options, output);
    limitReadings(options, *output);
    SimulatorLibrary simulator;
    SimulatorProblem problem = prepareSimulator(options, &simulator);
    if (!problem && !options.simulate.isEmpty())
        problem = simulator.putCard(options.simulate.first());
    if (problem)
        return report(problem, options, output);

    const std::optional<Failure> obstacle = obstacleToSaving(options);
    if (obstacle)
        return report(*obstacle, options, output);

    QElapsedTimer time;
    time.start();
    ReadOutcome outcome;
    lookWithin(options.waitSeconds, [&] {
        outcome = readCard();
        return outcome.exitStatus();
    });
    tellIfVerbose(
        options,
        tr("Reading ended after %1 ms with the code %2.").arg(time.elapsed()).arg(outcome.code));
    if (!outcome.card)
        return report(diagnosed(failedLook(failureOf(outcome)), options), options, output);
    decodePhoto(&*outcome.card);
    return deliver(*outcome.card, options, output);
}

} // namespace app
