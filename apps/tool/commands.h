#pragma once

// The commands of the tool. Each writes its result to `output` and reports failures on standard
// error; the caller reports that `output` cannot be written.

#include "apps/process/exit_status.h"
#include "apps/process/output.h"
#include "apps/tool/options.h"

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

} // namespace app
