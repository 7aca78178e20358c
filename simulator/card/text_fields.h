#pragma once

// The fixed-width text fields of a card's records, however the record is laid out: UCS-2, low byte
// first, the rest of a field filled up.

#include <cstddef>

#include <QChar>
#include <QString>

#include "simulator/card/card_description.h"

namespace simulator
{

/** Where a record has a text of a card. */
struct TextField {
    CardKind kind;
    std::size_t offset; ///< in the record, bytes
    std::size_t size;   ///< bytes, two a character
    QString (*text)(const CardDescription &card);
};

/** The text of a field that is one of the description's. */
template <QString CardDescription::*text>
QString from(const CardDescription &card)
{
    return card.*text;
}

/**
 * Fills a field. A text longer than the field is cut there, as the name of ethnic group 98 is in
 * the makers' record; a description holds no text that a card has no room for, nor a character that
 * is more than one unit of UCS-2.
 */
void putText(unsigned char *field, std::size_t size, const QString &text, QChar rest);

} // namespace simulator
