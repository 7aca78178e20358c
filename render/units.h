#pragma once

// Millimetres on a card and points of a font, in pixels of the primary screen. Every call asks the
// screen each time; there must be one.

#include <QPointF>

namespace units
{

/** Sets `Qt::AA_EnableHighDpiScaling`, which stays on for the process. */
double pixelsPerMm();

/** Height of a font of `pt` points, not rounded. */
double pixelHeightOfPoints(int pt);

/** A place given in millimetres, not rounded. */
QPointF pixelPosition(QPointF mm);

} // namespace units
