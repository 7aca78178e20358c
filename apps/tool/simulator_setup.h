#pragma once

// The simulator as the options of a command ask for it.

#include "apps/card/simulator_library.h"
#include "apps/process/exit_status.h"
#include "apps/tool/options.h"

namespace app
{

/** Prints a problem of the simulator, if it is one, and returns how the program ends by it. */
ExitStatus reported(const SimulatorProblem &problem);

/** Loads the simulator and, if --verbose was given, prints which file it is. */
SimulatorProblem loadSimulator(const Options &options, SimulatorLibrary *simulator);

/** Loads the simulator and sets its faults, if --simulate was given. */
SimulatorProblem prepareSimulator(const Options &options, SimulatorLibrary *simulator);

/** Loads the simulator, whose photo decoder is found then, if --simulator-photos was given. */
SimulatorProblem prepareSimulatorPhotos(const Options &options);

} // namespace app
