#pragma once

// The command line: what it may hold, what it says, and the help texts.

#include <optional>

#include <QString>
#include <QStringList>

#include "apps/card/card_files.h"
#include "apps/reading/configuration.h"
#include "apps/reading/usb_devices.h"
#include "apps/terminal/command_line.h"

namespace app
{

struct CommandRow;

struct Options {
    const CommandRow *command = nullptr;
    bool json = false;
    bool events = false; ///< of `watch`: a line for each event, not for each card
    bool force = false;
    bool verbose = false;
    bool list = false;            ///< list the USB devices
    bool simulatorPhotos = false; ///< decode photos with the simulator
    UsbIds device;                ///< the reader on the USB bus
    bool isDeviceNamed = false;
    bool comparesService = false; ///< `doctor` reads through the D-Bus service too
    /** "library" or "usb"; empty: not said. `doctor` looks at both then. */
    QString road;
    QString argument; ///< of `render`: the card, by name or description; of `decode`: the file
    InlineParts inlineParts; ///< whose bytes JSON holds itself
    QString rawFile;         ///< empty: do not keep the raw record
    QString outFolder;       ///< empty: write no files
    QStringList simulate;    ///< cards for the simulator; empty: use the reader
    QString faults;
    int waitSeconds = 0;
    std::optional<int> timeoutSeconds; ///< for one reading; nothing: no limit
    int intervalMs = 500;
    std::optional<int> count;
};

/**
 * Reads the arguments that follow the program's name. Needs a QCoreApplication, as
 * QCommandLineParser does.
 */
CommandLine<Options> parseCommandLine(const QStringList &arguments);

} // namespace app
