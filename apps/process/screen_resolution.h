#pragma once

// What a screen claims its resolution to be, and how far that can be believed.

namespace app
{

/** Dots per inch, in device-independent pixels. */
struct ScreenResolution {
    double physicalX = 0;
    double physicalY = 0;
    double logical = 96; ///< for fonts; independent of the screen's size
    double devicePixelRatio = 1;
};

enum class ResolutionClaim {
    USUAL,
    UNUSUAL, ///< there are such screens, but few
    UNEVEN,  ///< across and down differ more than the pixels of a screen do
    IMPOSSIBLE,
};

ResolutionClaim judgedClaim(const ScreenResolution &resolution);

} // namespace app
