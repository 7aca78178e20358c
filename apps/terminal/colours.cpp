#include "apps/terminal/colours.h"

#include <array>

#include <unistd.h>

#include "common/texts.h"

namespace app
{

namespace
{

// ECMA-48, Select Graphic Rendition; in the order of `Colour`.
constexpr std::array<int, 3> FOREGROUNDS = {31, 33, 32};

} // namespace

Colours coloursOf(int descriptor)
{
    const QByteArray terminal = qgetenv("TERM");
    const bool isWanted = qEnvironmentVariableIsEmpty("NO_COLOR");
    const bool isAble = !terminal.isEmpty() && terminal != "dumb" && ::isatty(descriptor) == 1;
    return isWanted && isAble ? Colours::OF_TERMINAL : Colours::NONE;
}

QString coloured(const QString &text, Colour colour, Colours colours)
{
    if (colours == Colours::NONE || text.isEmpty())
        return text;
    const int foreground = FOREGROUNDS.at(static_cast<std::size_t>(colour));
    return filledIn(QStringLiteral("\033[%1m%2\033[0m"), QString::number(foreground), text);
}

} // namespace app
