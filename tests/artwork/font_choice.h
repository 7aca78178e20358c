#pragma once

// Finds which installed fonts Qt takes for the two families that the card pictures name. The
// program's main function; FONTCONFIG_FILE says which fonts there are.

#include <QString>
#include <QStringList>

/** The faces ("family style") that a text of the pictures is drawn with, without repetition. */
QStringList facesOfTexts(const QString &text);

/** The same for an ID number. */
QStringList facesOfNumber(const QString &text);
