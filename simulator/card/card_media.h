#pragma once

// The photo and the fingerprints of a described card, in the forms in which readers hand them out.

#include <QByteArray>

#include "simulator/card/card_description.h"

namespace simulator
{

/** The portrait of the card's holder as a BMP file of 38862 bytes. */
QByteArray photoBmpFile(const CardDescription &card);

/** The portrait as the 1024 bytes that `unpack` decodes. */
QByteArray compressedPhoto(const CardDescription &card);

/** 1024 bytes that look like the card's compressed photo and do not decode. */
QByteArray undecodablePhoto(const CardDescription &card);

/** The card's templates one after the other: 0, 512 or 1024 bytes. */
QByteArray fingerprintTemplates(const CardDescription &card);

} // namespace simulator
