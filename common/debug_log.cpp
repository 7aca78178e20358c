#include "common/debug_log.h"

#include <cstdarg>

#include <QString>
#include <QtDebug>

#include "common/cancellation.h"

namespace
{

/** Writes the line that `text` gives. */
template <typename Text>
void writeLine(QtMsgType type, Text text) noexcept
{
    const CancellationHold hold;
    try {
        qt_message_output(type, QMessageLogContext(nullptr, 0, nullptr, "default"), text());
    } catch (...) { // out of memory, or the host's message handler threw
    }
}

} // namespace

void debugLine(const char *format, ...) noexcept
{
    std::va_list arguments;
    va_start(arguments, format);
    writeLine(QtDebugMsg, [&] { return QString::vasprintf(format, arguments); });
    va_end(arguments);
}

void criticalLine(const char *text) noexcept
{
    writeLine(QtCriticalMsg, [text] { return QString::fromUtf8(text); });
}
