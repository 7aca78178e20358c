#pragma once

// The languages of a program with a window.

#include <QLocale>

namespace app
{

/**
 * Lets the application speak the language of the locale, in its own texts by the resource
 * ":/translations/PROGRAM_LANGUAGE.qm" and in Qt's dialogs, or English if there is no such
 * resource. Whether there is one.
 */
bool installTranslation(const QString &program, const QLocale &locale = QLocale::system());

} // namespace app
