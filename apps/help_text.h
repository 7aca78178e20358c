#pragma once

// The help and version texts, made from the tables of commands, options, faults and exit statuses.

#include <QString>

#include "apps/option_table.h"

namespace app
{

QString overallHelp();
QString commandHelp(const CommandRow &command);
QString versionText();

} // namespace app
