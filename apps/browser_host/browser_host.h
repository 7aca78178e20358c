#pragma once

// The host that a browser starts for its extension: it takes requests on standard input, lets the
// tool read cards, and gives the tool's JSON back, until the browser closes standard input.

#include <QString>
#include <QStringList>

#include <sys/types.h>

#include "apps/process/output.h"

namespace app
{

struct HostSettings {
    QString originList;
    uid_t listOwner = 0;     ///< to whom the list must belong
    QString tool;            ///< path of idcard-reader
    int graceMs = 10 * 1000; ///< that the tool has beyond the time limit of its reading
};

/** `arguments` are those that the browser gives. Needs a QCoreApplication. */
ExitStatus serveBrowser(const QStringList &arguments, const HostSettings &settings, Output *output);

} // namespace app
