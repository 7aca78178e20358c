#include "apps/tool/simulator_setup.h"

#include "apps/process/translation.h"
#include "apps/tool/failure_report.h"
#include "apps/tool/verbose.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

} // namespace

ExitStatus report(const SimulatorProblem &problem, const Options &options, Output *output)
{
    const ToolFault fault = problem.exitStatus == ExitStatus::WRONG_USAGE
                                ? ToolFault::SIMULATION_REFUSED
                                : ToolFault::SIMULATOR_NOT_LOADED;
    return report(toolFailure(fault, problem.message), options, output);
}

SimulatorProblem loadSimulator(const Options &options, SimulatorLibrary *simulator)
{
    SimulatorProblem problem = simulator->load();
    if (!problem)
        tellIfVerbose(options, tr("The simulator is %1.").arg(simulator->path()));
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
