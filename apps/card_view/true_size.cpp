#include "apps/card_view/true_size.h"

namespace app
{

namespace
{

constexpr double MM_PER_INCH = 25.4;

bool isBelievable(const ScreenResolution &resolution)
{
    const ResolutionClaim claim = judgedClaim(resolution);
    return claim == ResolutionClaim::USUAL || claim == ResolutionClaim::UNUSUAL;
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
