#pragma once

// The help texts, made from the tables of commands, options, faults and exit statuses.

#include <QString>

#include "apps/tool/option_table.h"

namespace app
{

QString overallHelp();
QString commandHelp(const CommandRow &command, const OptionParser &parser);

} // namespace app
