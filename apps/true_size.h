#pragma once

// How large a millimetre is on a screen.

#include <QScreen>
#include <QSizeF>

namespace app
{

/** The sides of a card, and the photo on it, in millimetres. */
constexpr double CARD_WIDTH_MM = 85.6;
constexpr double CARD_HEIGHT_MM = 54.0;
constexpr double PHOTO_WIDTH_MM = 26.0;
constexpr double PHOTO_HEIGHT_MM = 32.0;

/** What a screen says of its resolution, dots per inch in device-independent pixels. */
struct ScreenResolution {
    double physicalX = 0;
    double physicalY = 0;
    double logical = 96; ///< for fonts; independent of the screen's size
    double devicePixelRatio = 1;
};

struct ScreenScale {
    double xPerMm;
    double yPerMm;
    bool isTrue; ///< false: what the screen says cannot be, and the resolution for fonts is used
};

ScreenScale screenScale(const ScreenResolution &resolution);
ScreenScale screenScale(const QScreen &screen);

} // namespace app
