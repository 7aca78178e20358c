#pragma once

// What is worth noting about a card that was read, by what it says and by the day of reading.

#include <optional>

#include <QDate>
#include <QString>
#include <QVector>

#include "apps/card/card.h"

namespace app
{

struct CardNote {
    QString key;   ///< for programs: "expired", "cut:address" ...
    QString words; ///< for people
};

/** Of a card whose raw record may have been damaged on its way. */
constexpr const char *ODD_RECORD_NOTE = "odd-record";

/** All notes on the card, in the order of their table; then one for each cut field. */
QVector<CardNote> cardNotes(const Card &card, const QDate &today);

/** The holder's age in years; nothing when the date of birth is incomplete or still to come. */
std::optional<int> ageOnDay(const Card &card, const QDate &today);

/**
 * Whether the last character of an 18-digit number is not the check character of the others
 * (GB 11643, ISO 7064 MOD 11-2). Other texts have none that could be wrong.
 */
bool isCheckDigitWrong(const QString &number);

} // namespace app
