// The command "render".

#include "apps/card/card_output.h"
#include "apps/process/translation.h"
#include "apps/reading/card_reader.h"
#include "apps/tool/card_delivery.h"
#include "apps/tool/commands.h"
#include "apps/tool/failure_report.h"
#include "apps/tool/reading_limits.h"
#include "apps/tool/simulator_setup.h"
#include "apps/tool/verbose.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

/** Lays the described card on the simulator, where nothing keeps it from being read. */
SimulatorProblem layOut(const Options &options, SimulatorLibrary *simulator)
{
    SimulatorProblem problem = loadSimulator(options, simulator);
    if (!problem)
        problem = simulator->setFaults(QString());
    if (!problem)
        problem = simulator->putPlainCard(options.argument);
    return problem;
}

} // namespace

ExitStatus runRender(const Options &options, Output *output)
{
    limitReadings(options, *output);
    SimulatorLibrary simulator;
    const SimulatorProblem problem = layOut(options, &simulator);
    if (problem)
        return report(problem, options, output);

    const ExistingFiles existing = existingFiles(options);
    const QString obstacle =
        obstacleTo(options.outFolder, cardFileNames(CardFiles::PICTURES), existing);
    if (!obstacle.isEmpty())
        return report(toolFailure(ToolFault::FILES_NOT_WRITTEN, obstacle), options, output);

    const ReadOutcome outcome = readCard();
    if (!outcome.card)
        return report(failureOf(outcome), options, output);

    const QString notWritten =
        writeFileSet(options.outFolder, contentsOf(*outcome.card, CardFiles::PICTURES), existing);
    if (!notWritten.isEmpty())
        return report(toolFailure(ToolFault::FILES_NOT_WRITTEN, notWritten), options, output);
    tellIfVerbose(options, tr("Saved the pictures in %1.").arg(options.outFolder));
    tellMissingFiles(*outcome.card, CardFiles::PICTURES);
    output->write(options.json ? indentedJson(picturesToJson(*outcome.card, options.outFolder))
                               : picturesToTable(*outcome.card, options.outFolder).toUtf8());
    return ExitStatus::DONE;
}

} // namespace app
