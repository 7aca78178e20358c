#pragma once

// The words that the program was started with, in any locale.

#include <QStringList>

namespace app
{

/**
 * For the command line and names of files. It is UTF-8 in the C locale, as services have it, where
 * Chinese characters would be lost. Qt does not ask the locale, but takes UTF-8, as Debian builds
 * it.
 */
void useEncodingOfLocale();

/** The command line without the program's name. */
QStringList argumentsOf(int argc, char **argv);

} // namespace app
