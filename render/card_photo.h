#pragma once

// The holder's photo, ready to be painted onto a card.

#include <QPixmap>
#include <QSize>

#include "common/card_records.h"

enum class PhotoBackground {
    AS_IT_IS,
    TRANSPARENT, ///< exact white lets the card show through
};

/**
 * The picture in the 38862 bytes of a photo area, in whatever format they are, fitted into `box`
 * with its proportions kept. A null pixmap when the bytes form no picture, or one for which Qt
 * would need more than 64 MiB.
 */
QPixmap fittedPhoto(const unsigned char (&photo)[IDCARD_PHOTO_SIZE], PhotoBackground background,
                    QSize box);
