#include "apps/process/display.h"

#include <QByteArray>

namespace app
{

bool chooseOffscreenWithoutDisplay()
{
    for (const char *name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"}) {
        if (!qEnvironmentVariableIsEmpty(name))
            return false;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return true;
}

} // namespace app
