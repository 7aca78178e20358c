#pragma once

// The fonts that all card pictures name.

#include <QString>

// Not string literals of Qt's: its font cache keeps the name, and a literal would go when the
// library is unloaded.

/** The family of all texts but numbers. */
inline QString bodyFamily()
{
    return QString::fromUtf8("华文细黑");
}

/** The family of a card's number. */
inline QString numberFamily()
{
    return QString::fromUtf8("黑体");
}

/** Weight of a card's number, between normal (50) and bold (75): `QFont::DemiBold`. */
constexpr int NUMBER_WEIGHT = 63;
