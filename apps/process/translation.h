#pragma once

// The language of what the programs say: the user's, as far as apps/translations/ has it, or the
// English of the sources.

#include <QLocale>
#include <QString>

namespace app
{

/**
 * `text` in the user's language, or as it is when there is no translation. Needs no application
 * object. Texts are translated by functions tr(), which `IDCARD_TEXTS` declares.
 */
QString translated(const char *context, const char *text);

/** `text` of the C library or of Qt, which may lack the user's language, in that language. */
QString translatedSystemText(const QString &text);

/** What the system calls an error number. */
QString systemError(int error);

/** Chooses the language of a locale; without a call it is that of the user's environment. */
void chooseLanguage(const QLocale &locale);

/**
 * Lets the application object speak the language too, and with it Qt, the forms of a window and
 * the simulator.
 */
void translateApplication();

} // namespace app

/**
 * On a line of its own in a namespace or a struct: the function tr(), which translates texts of
 * this context. What is translated later is marked with QT_TR_NOOP.
 */
#define IDCARD_TEXTS(context)                                                                      \
    [[maybe_unused]] static inline QString tr(const char *text)                                    \
    {                                                                                              \
        return app::translated(#context, text);                                                    \
    }
