// The command "read", and what the commands that read a card share.

#include <QElapsedTimer>

#include "apps/card_delivery.h"
#include "apps/card_reader.h"
#include "apps/commands.h"
#include "apps/interruption.h"
#include "apps/waiting.h"

namespace app
{

void tellIfVerbose(const Options &options, const QString &message)
{
    if (options.verbose)
        tell(message);
}

ExitStatus told(const SimulatorProblem &problem)
{
    if (problem)
        tell(problem.message);
    return problem.exitStatus;
}

SimulatorProblem loadSimulator(const Options &options, SimulatorLibrary *simulator)
{
    SimulatorProblem problem = simulator->load();
    if (!problem)
        tellIfVerbose(options, QStringLiteral("The simulator is %1.").arg(simulator->path()));
    return problem;
}

SimulatorProblem prepareSimulator(const Options &options, SimulatorLibrary *simulator)
{
    if (options.simulate.isEmpty())
        return {};
    const SimulatorProblem problem = loadSimulator(options, simulator);
    return problem ? problem : simulator->setFaults(options.faults);
}

void tellMissingFiles(const Card &card, CardFiles which)
{
    for (const QString &note : missingFileNotes(card, which))
        tell(note);
}

ExitStatus runRead(const Options &options, Output *output)
{
    catchInterruption(ExitStatus::ReadFailed);
    SimulatorLibrary simulator;
    SimulatorProblem problem = prepareSimulator(options, &simulator);
    if (!problem && !options.simulate.isEmpty())
        problem = simulator.putCard(options.simulate.first());
    if (problem)
        return told(problem);

    if (!canBeSaved(options))
        return ExitStatus::FilesNotWritten;

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
