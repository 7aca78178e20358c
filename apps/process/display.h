#pragma once

// Qt's platform, on which pictures are painted.

namespace app
{

/** Chooses Qt's offscreen platform where there is no display; whether it did. */
bool chooseOffscreenWithoutDisplay();

} // namespace app
