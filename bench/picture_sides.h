#pragma once

// The two sides of a sample card of every kind: how the library makes their pictures, and the
// floor, what Qt itself has to do for the same result.

#include <vector>

#include <QPixmap>
#include <QSize>
#include <QString>

#include "tests/render/painting_recorder.h"

/** One side of a card. */
struct Side {
    QString (*make)();
    QPixmap card; ///< the template, loaded
    QSize canvas; ///< what it is scaled to
    QSize photo;  ///< what the photo is scaled to
    std::vector<Painted> painted;
};

struct Kind {
    const char *name;
    const char *frontPath;
    const char *backPath;
    QString (*front)();
    QString (*back)();
};

constexpr int KIND_COUNT = 4;
extern const Kind KINDS[KIND_COUNT];

/** Makes the picture once, to learn what is painted. Needs a GUI application. */
Side sideOf(const char *path, QString (*make)());

/**
 * Scales the template, draws the same texts with the same fonts, decodes, scales and draws the
 * photo, and encodes the picture as base64 text. It does not load the template, whiten the photo,
 * or prepare texts and fonts.
 */
QString floorOf(const Side &side);
