#pragma once

// The configuration files of the machine and its user.

#include "apps/doctor/finding.h"
#include "apps/reading/configuration.h"

namespace app::doctor
{

Findings checkConfiguration(const Environment &environment);

} // namespace app::doctor
