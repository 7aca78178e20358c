#include "apps/tool/road_choice.h"

#include "apps/tool/option_table.h"
#include "common/texts.h"

namespace app
{

namespace
{

Failure contradiction(const QString &words, const Options &options)
{
    const QString help = QStringLiteral("\nSee \"idcard-reader %1 --help\".");
    return toolFailure(ToolFault::OPTIONS_CONTRADICT,
                       words + help.arg(QLatin1String(options.command->name)));
}

/** The simulator and the reader maker's library have no use for what is said of the other road. */
std::optional<Failure> contradictionIn(const Options &options)
{
    if (options.road == USB_ROAD) {
        if (options.simulate.isEmpty())
            return std::nullopt;
        return contradiction(
            QStringLiteral("--simulate has no meaning together with --road usb: it stands in for "
                           "the reader maker's library. idcard-virtual-reader simulates a reader "
                           "on the USB bus."),
            options);
    }
    const QString words = QStringLiteral("%1 only has a meaning together with --road usb.");
    if (options.isDeviceNamed)
        return contradiction(words.arg(QStringLiteral("--device")), options);
    if (options.simulatorPhotos)
        return contradiction(words.arg(QStringLiteral("--simulator-photos")), options);
    return std::nullopt;
}

} // namespace

std::optional<Failure> chooseRoad(Options *options)
{
    switch (options->command->road) {
    case CommandRoad::NONE:
        return std::nullopt;
    case CommandRoad::USB:
        options->road = USB_ROAD;
        break;
    case CommandRoad::ANY:
        if (options->road.isEmpty())
            options->road = LIBRARY_ROAD;
        break;
    }
    return contradictionIn(*options);
}

} // namespace app
