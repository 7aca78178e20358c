#pragma once

// The sides of cards: what each shows and where, and the side composed by Qt alone of that, which
// the makers have to come to, byte for byte.

#include <optional>
#include <vector>

#include <QByteArray>
#include <QPixmap>
#include <QRectF>
#include <QString>

#include "common/card_records.h"
#include "tests/render/picture_matchers.h"

// Records with a value in every field, but for the photo.
_tagIDCARD_INFO_ALL_CN residentCard();
_tagIDCARD_INFO_ALL_HMT permit(); ///< of Hong Kong
_tagIDCARD_INFO_ALL_FOREIGN_2017 foreign2017Card();
_tagIDCARD_INFO_ALL_FOREIGN_NEW foreignNewCard();

/** Pixels for millimetres on the card. */
double px(double mm);

/** Height in pixels of a font of `pt` points. */
double height(int pt);

/** A text of the resident card, its baseline beginning at (xmm, ymm). */
ExpectedText onResidentCard(const std::string &text, double xmm, double ymm, int pt = 9);

/** The same below its top at `ymm`. */
ExpectedText belowTop(const std::string &text, double xmm, double ymm, int pt = 9);

/** The same, of 9 points, ending at `xmm`. */
ExpectedText endingAt(const std::string &text, double xmm, double ymm);

/** Where a photo is painted: its top left corner, and the box that it is fitted into. */
struct PhotoPlace {
    QRectF box; ///< pixels; its size counts without fractions
    bool hasClearWhite;

    QSize fitted(QSize photo) const;
};

/** One side of one kind of card. */
struct CardSide {
    const char *name;
    const char *templatePath;
    QSize size;                               ///< pixels
    QString (*make)(const QByteArray &photo); ///< what the maker makes of its record
    std::vector<ExpectedText> texts;          ///< in the order in which they are painted
    std::optional<PhotoPlace> photo;          ///< painted before the last text, the number
};

/** All of them; every template is that of one. */
const std::vector<CardSide> &cardSides();

/** The four that have a photo. */
std::vector<CardSide> cardFronts();

/** The texts of a side, as its maker paints them. */
std::vector<Painted> textsOf(const CardSide &side);

/** The side with these texts and, unless it is null, this photo: base64 of a JPEG file. */
QString composed(const CardSide &side, const std::vector<Painted> &texts, const QPixmap &photo);
