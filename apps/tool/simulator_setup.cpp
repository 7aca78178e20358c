#include "apps/tool/simulator_setup.h"

#include <algorithm>

#include "apps/process/text_layout.h"
#include "apps/process/translation.h"
#include "apps/tool/failure_report.h"
#include "apps/tool/verbose.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

/** A list of all names, which ends a message behind a semicolon, is a paragraph of its own. */
QString listsWrapped(const QString &message)
{
    constexpr int WIDTH = 77;
    constexpr int INDENT = 2;
    const int listed = std::max(message.lastIndexOf(QLatin1String("; ")),
                                message.lastIndexOf(QStringLiteral("；"))) +
                       1;
    const QString list = message.mid(listed).trimmed();
    if (listed == 0 || displayWidth(list) <= WIDTH)
        return message;
    return message.left(listed) + QLatin1Char('\n') + QString(INDENT, QLatin1Char(' ')) +
           wrapped(list, WIDTH, INDENT);
}

} // namespace

ExitStatus report(const SimulatorProblem &problem, const Options &options, Output *output)
{
    const ToolFault fault = problem.exitStatus == ExitStatus::WRONG_USAGE
                                ? ToolFault::SIMULATION_REFUSED
                                : ToolFault::SIMULATOR_NOT_LOADED;
    Failure failure = toolFailure(fault, problem.message);
    failure.words = listsWrapped(problem.message);
    return report(failure, options, output);
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
