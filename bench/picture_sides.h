#pragma once

// The two sides of a sample card of every kind: how the library makes their pictures, and the
// floor, what Qt itself has to do for the same result.

#include <vector>

#include <QPixmap>
#include <QString>

#include "tests/render/painting_recorder.h"

/** One side of a card. */
struct Side {
    QString (*make)();
    QPixmap card; ///< the template, loaded
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

/** By Qt alone (qt_painting.h). */
QString floorOf(const Side &side);
