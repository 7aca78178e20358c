#pragma once

// Files that come with the project, for a user to put where the system takes them from.

#include <QString>

namespace app::doctor
{

/**
 * A file that comes with the programs in `folder`: in the build folder that they were built in, or
 * else in the installation that they belong to, where `installed` leads to the file from their
 * folder. Empty when it is in neither.
 */
QString shippedFile(const QString &folder, const QString &installed);

/** The program for root that opens a reader to its users. */
QString shippedAccessProgram();

/** Fontconfig's file that comes with this program. */
QString shippedFontChoice();

} // namespace app::doctor
