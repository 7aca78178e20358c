#pragma once

// The versions of what runs, and the locale.

#include "apps/doctor/finding.h"

namespace app::doctor
{

struct Versions {
    QString program;
    QString library; ///< as `getSDKVersion` returns it
    QString qtBuilt;
    QString qtRunning;
};

struct LocaleState {
    QString requested;  ///< by the environment; empty when it asks for none
    bool isSet = false; ///< whether the system has it
    QString name;       ///< what `setlocale` made of it
    QString encoding;   ///< of the locale that is in force
};

Versions probeVersions();

/** Puts the locale of the environment in force. */
LocaleState probeLocale();

Findings checkLibraryVersion(const Environment &environment);
Findings checkQtVersion(const Environment &environment);
Findings checkLocale(const Environment &environment);

} // namespace app::doctor
