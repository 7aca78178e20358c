#pragma once

// The configuration files of the machine and its user.

#include "apps/card/configuration.h"
#include "apps/doctor/finding.h"

namespace app::doctor
{

Findings checkConfiguration(const Environment &environment);

} // namespace app::doctor
