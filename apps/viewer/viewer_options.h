#pragma once

// The command line of idcard-viewer.

#include <optional>

#include <QString>
#include <QStringList>

#include "apps/card/usb_devices.h"

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

struct CommandLine {
    std::optional<ViewerOptions> options; ///< when the window is to open
    QString text;                         ///< when that is all that was asked for
    QString problem;                      ///< when the command line is wrong
};

/** Takes the arguments apart, which do not include the program's name. */
CommandLine parseCommandLine(const QString &program, const QStringList &arguments);

} // namespace viewer
