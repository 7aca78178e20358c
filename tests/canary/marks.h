#pragma once

// Cards whose every field, photo and print carries a mark that occurs nowhere else, and the search
// for these marks in whatever a program left behind.

#include <set>
#include <string>
#include <vector>

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include "simulator/card/card_description.h"

namespace canary
{

/** One thing a card says, in the forms in which it could come out of a program. */
struct Mark {
    std::string name; ///< of the field; "photo", "prints" or "picture"
    QByteArrayList needles;
    QByteArrayList words; ///< found only where no letter or digit stands beside
};

struct Card {
    const char *kind;        ///< "resident", "hmt", "foreign-2017", "foreign-new"
    const char *description; ///< a card description, JSON
};

/** One card of each kind. */
const std::vector<Card> &cards();

/** The card as the simulator has it. */
simulator::CardDescription describedCard(const Card &card);

/** Everything that must not come out unasked. A picture of either side is one mark. */
std::vector<Mark> marksOf(const Card &card);

using MarkNames = std::set<std::string>;

/** The marks that `bytes` holds. */
MarkNames found(const QByteArray &bytes, const std::vector<Mark> &marks);

} // namespace canary
