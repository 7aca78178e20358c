#pragma once

// How large a millimetre is on a screen.

#include <QScreen>
#include <QSizeF>

#include "apps/process/screen_resolution.h"

namespace app
{

/** A side of a card, and the photo on it. */
constexpr QSizeF CARD_SIZE_MM(85.6, 54.0);
constexpr QSizeF PHOTO_SIZE_MM(26.0, 32.0);

struct ScreenScale {
    double xPerMm;
    double yPerMm;
    bool isTrue; ///< false: what the screen says cannot be, and the resolution for fonts is used

    /** In device-independent pixels. */
    QSize sizeOf(const QSizeF &millimetres) const;
};

ScreenScale screenScale(const ScreenResolution &resolution);
ScreenScale screenScale(const QScreen &screen);

} // namespace app
