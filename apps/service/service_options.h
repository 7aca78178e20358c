#pragma once

// The command line of idcard-readerd: what it may hold, what it says, and the help text.

#include <QString>
#include <QStringList>

#include "apps/terminal/command_line.h"

namespace app
{

constexpr const char *SERVICE_PROGRAM_NAME = "idcard-readerd";

struct ServiceOptions {
    bool isOnSessionBus = false;
    QString card; ///< for the simulator; empty: the reader is used
    QString faults;
};

/** Reads the arguments that follow the program's name. Needs a QCoreApplication. */
CommandLine<ServiceOptions> parseServiceArguments(const QStringList &arguments);

} // namespace app
