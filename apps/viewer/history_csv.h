#pragma once

// The cards of a run as a table for spreadsheet programs.

#include <QByteArray>
#include <QDateTime>
#include <QVector>

#include "apps/card/card.h"

namespace viewer
{

struct KeptCard {
    app::CardPointer card;
    QDateTime time; ///< at which it was read
};

/**
 * A row for each card, in this order, with a column for each field that one of them has. UTF-8 with
 * the mark by which spreadsheet programs know it. A text that they would take for a number with
 * lost digits, or for a formula, begins with a tabulator.
 */
QByteArray historyCsv(const QVector<KeptCard> &cards);

} // namespace viewer
