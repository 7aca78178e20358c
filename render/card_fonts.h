#pragma once

// The fonts that all card pictures name.

#include <QFont>
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

/**
 * The default font in this family and size, in pixels. It has no style name, even where the default
 * font has one: Qt would take the face of that name and ignore the weight. And it is completed from
 * the default font, not a changed copy of it, in which Qt from 5.13 on would prefer the default
 * font's list of families to the family.
 */
inline QFont cardFont(const QString &family, int pixelSize)
{
    QFont font(family);
    font.setStyleName(QString());
    font.setPixelSize(pixelSize);
    return font.resolve(QFont());
}
