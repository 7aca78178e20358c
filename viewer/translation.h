#pragma once

// The languages of the window.

#include <QLocale>

class QCoreApplication;

namespace viewer
{

/**
 * Lets the application speak the language of the locale if there is a translation, and English if
 * not. Whether there is one.
 */
bool installTranslation(QCoreApplication *application, const QLocale &locale = QLocale::system());

} // namespace viewer
