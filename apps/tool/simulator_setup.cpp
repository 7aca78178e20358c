#include "apps/tool/simulator_setup.h"

#include "apps/process/standard_streams.h"
#include "apps/tool/verbose.h"

namespace app
{

ExitStatus reported(const SimulatorProblem &problem)
{
    if (problem)
        printMessage(problem.message);
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

SimulatorProblem prepareSimulatorPhotos(const Options &options)
{
    SimulatorLibrary simulator;
    return options.simulatorPhotos ? loadSimulator(options, &simulator) : SimulatorProblem();
}

} // namespace app
