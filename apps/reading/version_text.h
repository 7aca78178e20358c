#pragma once

#include <QString>

namespace app
{

/** The versions of the program of that name and of the library, each on a line. */
QString versionText(const QString &program);

} // namespace app
