#pragma once

// What of a card a clerk should look at: each a sentence.

#include <QDate>
#include <QStringList>

#include "apps/card/card.h"

namespace viewer
{

/** Covered, the sentences say nothing of what the card says. */
QStringList attentionTo(const app::Card &card, bool isCovered,
                        const QDate &today = QDate::currentDate());

} // namespace viewer
