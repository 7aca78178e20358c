#pragma once

// Compares what was painted with the layout tables, one call after the other.

#include "tests/render/painting_recorder.h"

#include <QImage>
#include <QString>

constexpr const char *BODY = "华文细黑";
constexpr const char *NUMBER = "黑体";

/** One text as a layout table has it; weight and spacing are 50 and 0 where the table is silent. */
struct ExpectedText {
    std::string text;
    double x;
    double y;
    const char *family;
    int pixelSize;
    int weight = 50;
    double spacing = 0.0;
};

void expectText(const Painted &painted, const ExpectedText &expected);

/** A photo painted with its top left corner at (x, y). */
void expectPhoto(const Painted &painted, double x, double y, QSize size);

/** The picture in a maker's result. */
QImage decodedPicture(const QString &base64);
