#pragma once

// The sides of cards with a photo and a template of the test's own, composed by Qt alone: what the
// makers have to come to, byte for byte. Only the texts are taken from them, which have tests of
// their own.

#include <optional>
#include <vector>

#include <QByteArray>
#include <QPixmap>
#include <QRectF>
#include <QString>

#include "tests/render/painting_recorder.h"

/** Where a photo is painted: its top left corner, and the box that it is fitted into. */
struct PhotoPlace {
    QRectF box; ///< pixels; its size counts without fractions
    bool hasClearWhite;
};

/** One side of one kind of card, with sample texts. */
struct CardSide {
    const char *name;
    const char *templatePath;
    bool hasRealSize;                          ///< the size of a card on the screen
    QString (*make)(const QByteArray &photo);  ///< what the maker makes of it
    std::optional<PhotoPlace> (*photoPlace)(); ///< nothing: the side has no photo
};

/** All of them; every template is that of one. */
const std::vector<CardSide> &cardSides();

/** The four that have a photo. */
std::vector<CardSide> cardFronts();

/** The texts of a side, as its maker paints them. */
std::vector<Painted> textsOf(const CardSide &side);

/** The side with these texts and, unless it is null, this photo: base64 of a JPEG file. */
QString composed(const CardSide &side, const std::vector<Painted> &texts, const QPixmap &photo);
