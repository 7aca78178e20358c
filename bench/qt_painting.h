#pragma once

// The floor of a picture of a card: what Qt itself has to do for the same result.

#include <vector>

#include <QByteArray>
#include <QPixmap>

#include "tests/render/painting_recorder.h"

/**
 * Scales the template, draws the recorded texts with their fonts, decodes, scales and draws the
 * photo, and encodes the picture as JPEG in base64. It does not load the template, whiten the
 * photo, or prepare texts and fonts.
 */
QByteArray paintedByQt(QPixmap card, const std::vector<Painted> &painted, const QByteArray &photo);
