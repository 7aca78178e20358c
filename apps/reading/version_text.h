#pragma once

#include <QString>

namespace app
{

/** What follows a program's name: its version and, on a line of its own, that of the library. */
QString versionText();

} // namespace app
