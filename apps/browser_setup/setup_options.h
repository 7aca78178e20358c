#pragma once

// The command line of idcard-browser-setup.

#include <QString>
#include <QStringList>

#include "apps/terminal/command_line.h"
#include "apps/web_sites/browser_files.h"

namespace app
{

constexpr const char *BROWSER_SETUP_NAME = "idcard-browser-setup";

struct SetupOptions {
    QString allow;   ///< an origin; empty: none
    Browser browser; ///< in which
    bool show = false;
    bool renew = false;
    bool remove = false;
};

/** Reads the arguments that follow the program's name. Needs a QCoreApplication. */
CommandLine<SetupOptions> parseSetupArguments(const QStringList &arguments);

} // namespace app
