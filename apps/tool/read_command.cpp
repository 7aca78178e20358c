// The command "read".

#include <QElapsedTimer>

#include "apps/card/card_reader.h"
#include "apps/process/interruption.h"
#include "apps/tool/card_delivery.h"
#include "apps/tool/commands.h"
#include "apps/tool/simulator_setup.h"
#include "apps/tool/verbose.h"
#include "apps/tool/waiting.h"

namespace app
{

ExitStatus runRead(const Options &options, Output *output)
{
    catchInterruption(ExitStatus::READ_FAILED);
    SimulatorLibrary simulator;
    SimulatorProblem problem = prepareSimulator(options, &simulator);
    if (!problem && !options.simulate.isEmpty())
        problem = simulator.putCard(options.simulate.first());
    if (problem)
        return reported(problem);

    if (!canBeSaved(options))
        return ExitStatus::FILES_NOT_WRITTEN;

    QElapsedTimer time;
    time.start();
    ReadOutcome outcome;
    lookWithin(options.waitSeconds, [&] {
        outcome = readCard();
        return outcome.exitStatus();
    });
    tellIfVerbose(options, QStringLiteral("Reading ended after %1 ms with the code %2.")
                               .arg(time.elapsed())
                               .arg(outcome.code));
    if (!outcome.card) {
        tellFailedLook(outcome.exitStatus(), explain(outcome));
        return outcome.exitStatus();
    }
    return deliver(*outcome.card, options, output);
}

} // namespace app
