#include "common/debug_log.h"

#include <cstdarg>

#include <QString>
#include <QtDebug>

void debugLine(const char *format, ...) noexcept
{
    std::va_list arguments;
    va_start(arguments, format);
    try {
        qt_message_output(QtDebugMsg, QMessageLogContext(nullptr, 0, nullptr, "default"),
                          QString::vasprintf(format, arguments));
    } catch (...) { // out of memory, or the host's message handler threw
    }
    va_end(arguments);
}
