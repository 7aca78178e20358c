#pragma once

// The doctor's findings as text for people and as JSON for programs.

#include <QByteArray>
#include <QString>

#include "apps/doctor/checks.h"
#include "apps/terminal/colours.h"

namespace app::doctor
{

/** Lines that fit a terminal; commands have their own lines, however long. */
QString toReport(const std::vector<CheckedFinding> &findings, Roads roads,
                 Colours colours = Colours::NONE);

/** An object as docs/doctor.schema.json has it, over several lines, ending with a line break. */
QByteArray toReportJson(const std::vector<CheckedFinding> &findings, Roads roads);

} // namespace app::doctor
