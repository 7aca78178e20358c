#pragma once

// The command line of idcard-viewer.

#include <optional>

#include <QString>
#include <QStringList>

#include "apps/card/usb_devices.h"
#include "apps/process/command_line.h"

namespace viewer
{

/** How the window begins. */
struct ViewerOptions {
    QString card;   ///< of the simulator; empty: another road
    QString faults; ///< of the simulator
    std::optional<UsbIds> device;
    bool simulatorPhotos = false;
    bool isAutomatic = false;
    bool isCovered = false;
};

/** Takes the arguments apart, which do not include the program's name. */
app::CommandLine<ViewerOptions> parseCommandLine(const QString &program,
                                                 const QStringList &arguments);

} // namespace viewer
