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
 * The picture in the 38862 bytes of a photo area, in any format that `QPixmap::loadFromData` reads,
 * fitted into `box` with its proportions kept. Where a BMP file lacks pixels, they are black. A
 * null pixmap when the bytes form no picture, or one for which Qt would need more than 64 MiB at 32
 * bits a pixel. Only the size of a format whose Qt plug-in does not announce it is known too late
 * to spare the memory.
 */
QPixmap fittedPhoto(const unsigned char (&photo)[IDCARD_PHOTO_SIZE], PhotoBackground background,
                    QSize box);
