#pragma once

// Texts for people in the language of the application that the simulator is part of: English, if
// its translators have none.

#include <QCoreApplication>
#include <QString>

/**
 * On a line of its own in a namespace: the function tr(), which translates texts of this context.
 * What is translated later is marked with QT_TR_NOOP.
 */
#define SIMULATOR_TEXTS(context)                                                                   \
    [[maybe_unused]] static inline QString tr(const char *text)                                    \
    {                                                                                              \
        return QCoreApplication::translate(#context, text);                                        \
    }
