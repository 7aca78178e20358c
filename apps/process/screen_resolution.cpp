#include "apps/process/screen_resolution.h"

#include <algorithm>

namespace app
{

namespace
{

// Dots per inch, of a screen's own pixels. Below the first a card is less than 100 pixels wide and
// no text on it can be read; not even telephones are above the second. The desktops' are between
// the others.
constexpr double LOWEST_DPI = 30;
constexpr double HIGHEST_DPI = 800;
constexpr double LOWEST_USUAL_DPI = 60;
constexpr double HIGHEST_USUAL_DPI = 400;
// Pixels are square. A small screen that reports its size in whole centimetres, 22 x 13, seems
// uneven by 1.06; the mildest mode that a screen stretches, 1440 x 900 on one of 16:9, is so
// by 1.11.
constexpr double MOST_UNEVEN = 1.1;

} // namespace

ResolutionClaim judgedClaim(const ScreenResolution &resolution)
{
    const double x = resolution.physicalX * resolution.devicePixelRatio;
    const double y = resolution.physicalY * resolution.devicePixelRatio;
    const auto [low, high] = std::minmax(x, y);
    const bool isPossible = low >= LOWEST_DPI && high <= HIGHEST_DPI; // which no NaN is
    if (!isPossible)
        return ResolutionClaim::IMPOSSIBLE;
    if (high > low * MOST_UNEVEN)
        return ResolutionClaim::UNEVEN;
    return low < LOWEST_USUAL_DPI || high > HIGHEST_USUAL_DPI ? ResolutionClaim::UNUSUAL
                                                              : ResolutionClaim::USUAL;
}

} // namespace app
