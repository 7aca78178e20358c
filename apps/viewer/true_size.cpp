#include "apps/viewer/true_size.h"

#include <algorithm>

namespace app
{

namespace
{

constexpr double MM_PER_INCH = 25.4;
// From a television to a telephone, in the screen's own pixels.
constexpr double LOWEST_DPI = 30;
constexpr double HIGHEST_DPI = 800;
constexpr double MOST_UNEVEN_PIXEL = 1.25;

bool isBelievable(const ScreenResolution &resolution)
{
    const auto [low, high] = std::minmax(resolution.physicalX, resolution.physicalY);
    return low * resolution.devicePixelRatio >= LOWEST_DPI &&
           high * resolution.devicePixelRatio <= HIGHEST_DPI && high <= low * MOST_UNEVEN_PIXEL;
}

} // namespace

QSize ScreenScale::sizeOf(const QSizeF &millimetres) const
{
    return {qRound(millimetres.width() * xPerMm), qRound(millimetres.height() * yPerMm)};
}

ScreenScale screenScale(const ScreenResolution &resolution)
{
    if (!isBelievable(resolution))
        return {resolution.logical / MM_PER_INCH, resolution.logical / MM_PER_INCH, false};
    return {resolution.physicalX / MM_PER_INCH, resolution.physicalY / MM_PER_INCH, true};
}

ScreenScale screenScale(const QScreen &screen)
{
    return screenScale(ScreenResolution{screen.physicalDotsPerInchX(),
                                        screen.physicalDotsPerInchY(), screen.logicalDotsPerInch(),
                                        screen.devicePixelRatio()});
}

} // namespace app
