#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

/**
 * The faces ("family style") that Qt takes the glyphs of `text` from when it is drawn with `font`,
 * without repetition; a face that lacks a glyph is marked "without a glyph".
 */
QStringList facesOf(const QFont &font, const QString &text);
