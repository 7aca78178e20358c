#pragma once

// Text in columns for terminals, where an ideograph takes two columns.

#include <QString>
#include <QStringList>
#include <QVector>

namespace app
{

/**
 * Columns that `text` takes on a terminal: two for East Asian wide and full-width characters, none
 * for combining marks and invisible format characters, one for all others.
 */
int displayWidth(const QString &text);

/** `text` with spaces added up to `width` columns; a longer text is left as it is. */
QString padded(const QString &text, int width);

/**
 * `text` with control characters, line breaks and invisible format characters spelled out (\u001B),
 * so that text from a card can neither steer a terminal nor break a table.
 */
QString printable(const QString &text);

/**
 * Rows of cells as lines, the columns two spaces apart, without spaces at the ends of lines. Rows
 * may have different numbers of cells. Cells are made printable.
 */
QString alignedTable(const QVector<QStringList> &rows);

/**
 * `text` broken between words, or between ideographs, into lines of at most `width` columns, and
 * `indent` spaces before every line but the first, which come on top. A longer word gets a line of
 * its own. No line begins or ends with punctuation that belongs to its neighbour.
 */
QString wrapped(const QString &text, int width, int indent);

/** Columns of a help text. */
constexpr int HELP_WIDTH = 79;

/** A heading and rows of a short text and its explanation, which may run over several lines. */
QString helpSection(const QString &heading, const QVector<QStringList> &rows);

} // namespace app
