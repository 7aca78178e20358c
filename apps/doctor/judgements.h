#pragma once

// The checks: each judges what the doctor knows of one matter. Rows of the table in
// doctor_checks.cpp.

#include <QVector>

#include "apps/doctor/environment.h"
#include "apps/doctor/finding.h"

namespace app::doctor
{

using Findings = QVector<Finding>;

Findings checkLibraryVersion(const Environment &environment);
Findings checkQtVersion(const Environment &environment);
Findings checkLocale(const Environment &environment);
Findings checkReaderLibrary(const Environment &environment);
Findings checkPhotoDecoder(const Environment &environment);

// One finding a device, or one for the bus.
Findings checkReader(const Environment &environment);
Findings checkPermission(const Environment &environment);
Findings checkRule(const Environment &environment);
Findings checkGroup(const Environment &environment);
Findings checkDriver(const Environment &environment);
Findings checkHolder(const Environment &environment);

Findings checkScreen(const Environment &environment);
Findings checkResolution(const Environment &environment);
Findings checkJpeg(const Environment &environment);
Findings checkTextFont(const Environment &environment);
Findings checkNumberFont(const Environment &environment);

/** JSON has null for what is not there. */
QJsonValue textOrNull(const QString &text);

/** A path as a word of a shell command. */
QString quoted(const QString &path);

} // namespace app::doctor
