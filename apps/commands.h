#pragma once

// The commands of the tool. Each writes its result to `output` and tells failures on standard
// error; that `output` cannot be written is told by the caller.

#include "apps/card_files.h"
#include "apps/options.h"
#include "apps/simulator_library.h"
#include "apps/standard_streams.h"

namespace app
{

/** Needs a QGuiApplication, as all that reads a card. */
ExitStatus runRead(const Options &options, Output *output);

/** Needs a QGuiApplication. */
ExitStatus runWatch(const Options &options, Output *output);

/** Needs a QGuiApplication. */
ExitStatus runRender(const Options &options, Output *output);

/** Needs a QCoreApplication, as do the next two. */
ExitStatus runCards(const Options &options, Output *output);
ExitStatus runUsb(const Options &options, Output *output);
ExitStatus runDecode(const Options &options, Output *output);

/** Must be called without any application object: what may end a process is tried in children. */
ExitStatus runDoctor(const Options &options, Output *output);

/** Tells `message` on standard error if --verbose was given. */
void tellIfVerbose(const Options &options, const QString &message);

/** Tells a problem of the simulator, if it is one, and returns how the program ends by it. */
ExitStatus told(const SimulatorProblem &problem);

/** Loads the simulator and tells which file it is if --verbose was given. */
SimulatorProblem loadSimulator(const Options &options, SimulatorLibrary *simulator);

/** Loads the simulator and sets its faults, if --simulate was given. */
SimulatorProblem prepareSimulator(const Options &options, SimulatorLibrary *simulator);

/** Loads the simulator, whose photo decoder is found then, if --simulator-photos was given. */
SimulatorProblem prepareSimulatorPhotos(const Options &options);

/** Decodes a raw record that was checked, then saves and prints the card as the options say. */
ExitStatus deliverRecord(const QByteArray &record, FP_INFO_TYPE prints, Road road,
                         const Options &options, Output *output);

/** Tells which files were not written because the card has no such photo or picture. */
void tellMissingFiles(const Card &card, CardFiles which);

} // namespace app
