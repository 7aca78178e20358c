#pragma once

// The command line of idcard-viewer.

#include <optional>

#include <QString>
#include <QStringList>

#include "apps/terminal/command_line.h"
#include "apps/viewer/card_desk.h"

namespace viewer
{

/** How the window begins. */
struct ViewerOptions {
    QString card;   ///< of the simulator; empty: another road
    QString faults; ///< of the simulator
    std::optional<UsbIds> device;
    std::optional<app::ReaderRoad> road; ///< another than the one that is remembered
    bool simulatorPhotos = false;
    bool isAutomatic = false;
    bool isCovered = false;
};

/** Takes the arguments apart, which do not include the program's name. */
app::CommandLine<ViewerOptions> parseCommandLine(const QString &program,
                                                 const QStringList &arguments);

} // namespace viewer
