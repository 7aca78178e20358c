#pragma once

// The simulator as the options of a command ask for it.

#include "apps/process/output.h"
#include "apps/reading/simulator_library.h"
#include "apps/tool/options.h"

namespace app
{

/** Reports a problem of the simulator and returns how the program ends by it. */
ExitStatus report(const SimulatorProblem &problem, const Options &options, Output *output);

/** Loads the simulator and, if --verbose was given, prints which file it is. */
SimulatorProblem loadSimulator(const Options &options, SimulatorLibrary *simulator);

/** Loads the simulator and sets its faults, if --simulate was given. */
SimulatorProblem prepareSimulator(const Options &options, SimulatorLibrary *simulator);

/** Loads the simulator, whose photo decoder is found then, if --simulator-photos was given. */
SimulatorProblem prepareSimulatorPhotos(const Options &options);

} // namespace app
