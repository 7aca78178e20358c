#pragma once

// The words that the program was started with, in any locale.

#include <QStringList>

namespace app
{

/** In the C locale, as services have it, names of files with Chinese characters would be lost. */
void useUtf8InPlainLocale();

/** The command line without the program's name. */
QStringList argumentsOf(int argc, char **argv);

} // namespace app
