#pragma once

// A photo as readers deliver it: a BMP file of 102 x 126 pixels, with a known pattern on white.

#include <QByteArray>

#include "common/card_records.h"

QByteArray samplePhoto();

/** Puts the sample photo into a record's photo area. */
void putSamplePhoto(unsigned char (&photo)[IDCARD_PHOTO_SIZE]);
