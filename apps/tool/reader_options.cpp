#include "apps/tool/reader_options.h"

#include "apps/process/translation.h"
#include "apps/tool/option_table.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

Failure contradiction(const QString &words, const Options &options)
{
    const QString help = tr("\nSee \"idcard-reader %1 --help\".");
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
            tr("--simulate has no meaning together with --road usb: it stands in for the reader "
               "maker's library. idcard-virtual-reader simulates a reader on the USB bus."),
            options);
    }
    const QString words = tr("%1 only has a meaning together with --road usb.");
    if (options.isDeviceNamed)
        return contradiction(words.arg(QStringLiteral("--device")), options);
    if (options.simulatorPhotos)
        return contradiction(words.arg(QStringLiteral("--simulator-photos")), options);
    return std::nullopt;
}

std::optional<Failure> mistakeIn(const Configuration &configuration)
{
    for (const ConfigurationFile &file : configuration) {
        const QString mistake = file.placedMistake();
        if (!mistake.isEmpty())
            return toolFailure(ToolFault::CONFIGURATION_WRONG,
                               filledIn(tr("%1 %2"), mistake, file.remedy));
    }
    return std::nullopt;
}

/** The simulator has one road, whatever the files say. */
QString roadFor(const Options &options, const QString &configured)
{
    if (options.command->road == CommandRoad::USB)
        return USB_ROAD;
    if (!options.road.isEmpty())
        return options.road;
    return options.simulate.isEmpty() && !configured.isEmpty() ? configured : QString(LIBRARY_ROAD);
}

void takeDevice(const QString &configured, Options *options)
{
    const std::optional<UsbIds> ids = parseUsbIds(configured);
    if (options->road != USB_ROAD || options->isDeviceNamed || !ids)
        return;
    options->device = *ids;
    options->isDeviceNamed = true;
}

} // namespace

std::optional<Failure> completeReaderOptions(const Configuration &configuration, Options *options)
{
    std::optional<Failure> failure = mistakeIn(configuration);
    if (failure)
        return failure;
    options->road = roadFor(*options, valueIn(configuration, QStringLiteral("road")));
    failure = contradictionIn(*options);
    if (failure)
        return failure;
    takeDevice(valueIn(configuration, QStringLiteral("device")), options);
    const QString timeout = valueIn(configuration, QStringLiteral("timeout"));
    if (!options->timeoutSeconds && !timeout.isEmpty())
        options->timeoutSeconds = timeout.toInt();
    return std::nullopt;
}

std::optional<Failure> completeReaderOptions(Options *options)
{
    if (options->command->road == CommandRoad::NONE || options->list)
        return std::nullopt;
    return completeReaderOptions(readConfiguration(configurationPaths()), options);
}

} // namespace app
