#pragma once

// Words that stand out on a terminal.

#include <QString>

namespace app
{

enum class Colour { RED, YELLOW, GREEN };

enum class Colours { NONE, OF_TERMINAL };

/**
 * Whether a descriptor is a terminal that shows colours, and its user wants them: the environment
 * variable NO_COLOR is not set or empty (no-color.org), and TERM is not "dumb".
 */
Colours coloursOf(int descriptor);

/** `text` in this colour; as it is when there are none. */
QString coloured(const QString &text, Colour colour, Colours colours);

} // namespace app
