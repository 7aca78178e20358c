#pragma once

// Whether programs get cards through the D-Bus service: a read inside it beside one outside.

#include <QString>

#include "apps/doctor/finding.h"
#include "apps/process/exit_status.h"

namespace app::doctor
{

struct ServiceState {
    bool isProbed = false;
    QString error;   ///< the name on the bus of what the read inside ended with; empty: it has none
    QString message; ///< what is said of that; both are empty when a card was read
    ExitStatus outside = ExitStatus::DONE; ///< of a read by this program
};

/** Reads by both ways; what a card says is dropped. Takes up to half a minute. */
ServiceState probeService();

/** What dbus-send prints on standard error: name and message. */
ServiceState parseBusError(const QString &printed);

/** Nothing when it was not probed. */
Findings checkService(const Environment &environment);

} // namespace app::doctor
