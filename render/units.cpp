#include "render/units.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>

namespace
{

constexpr double MM_PER_INCH = 25.4;
constexpr double MM_PER_POINT = 0.35277777777777775; // 25.4 / 72

} // namespace

double units::pixelsPerMm()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    return QGuiApplication::primaryScreen()->physicalDotsPerInchX() / MM_PER_INCH;
}

double units::pixelHeightOfPoints(int pt)
{
    return pt * MM_PER_POINT * pixelsPerMm();
}

QPointF units::pixelPosition(QPointF mm)
{
    return {mm.x() * pixelsPerMm(), mm.y() * pixelsPerMm()};
}
