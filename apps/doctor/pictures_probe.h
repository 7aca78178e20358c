#pragma once

// What the pictures of the cards are painted with: Qt's platform and screen, its JPEG plug-in, the
// fonts. Asked in a child process, since Qt ends a process whose display it cannot use.

#include "apps/doctor/environment.h"

namespace app::doctor
{

/** How much time Qt has to come up and answer. */
constexpr int QT_LIMIT_MS = 20000;

/** The process must have no application object. May choose a platform for the process. */
PicturesState probePictures();

} // namespace app::doctor
