#include "apps/reading/usb_reading.h"

#include <algorithm>

#include "apps/process/interruption.h"
#include "apps/process/translation.h"
#include "apps/results/usb_catalogue.h"
#include "common/texts.h"
#include "reader/usbidreader.h"

namespace app
{

namespace
{

/** Whether the reader had been found before the failure with this code. */
bool wasFound(int code)
{
    switch (code) {
    case USB_READER_INIT_FAILED:
    case USB_READER_NO_DEVICE_LIST:
    case USB_READER_NO_DESCRIPTOR:
    case USB_READER_NOT_FOUND:
        return false;
    default:
        return true;
    }
}

/** Looks where the reader is after a failure. */
void lookForReader(UsbOutcome *outcome)
{
    const UsbDevices now = listUsbDevices();
    const auto *const found =
        std::find_if(now.devices.begin(), now.devices.end(), [&](const UsbDevice &device) {
            return device.ids.vendor == outcome->ids.vendor &&
                   device.ids.product == outcome->ids.product;
        });
    if (found != now.devices.end())
        outcome->device = *found;
    else
        outcome->isUnplugged = now.code == USB_READER_OK && wasFound(outcome->code);
}

/** Which device it was about, and where it is if it was found after a failure. */
QString deviceOf(const UsbOutcome &outcome)
{
    const QString ids = toText(outcome.ids);
    return outcome.device ? filledIn(translated("Messages", "%1 at %2"), ids, outcome.device->node)
                          : ids;
}

} // namespace

std::optional<ResultEntry> resultOf(const UsbOutcome &outcome)
{
    const ResultEntry *const entry = findUsbResult(outcome.code);
    if (entry == nullptr)
        return std::nullopt;
    return outcome.isUnplugged ? unpluggedResult(*entry) : *entry;
}

ExitStatus UsbOutcome::exitStatus() const
{
    const std::optional<ResultEntry> entry = resultOf(*this);
    return entry ? entry->exitStatus : ExitStatus::PROGRAM_FAILED;
}

UsbOutcome readOverUsb(UsbIds ids)
{
    UsbOutcome outcome;
    outcome.ids = ids;
    {
        const ReadInProgress reading;
        CUsbIdReader reader(ids.vendor, ids.product);
        reader.fetch_data(outcome.record, outcome.prints);
        outcome.code = reader.lastError();
    }
    if (outcome.code != USB_READER_OK)
        lookForReader(&outcome);
    return outcome;
}

Message messageOf(const UsbOutcome &outcome)
{
    const std::optional<ResultEntry> entry = resultOf(outcome);
    if (!entry)
        return unknownCodeMessage(outcome.code);
    const QString device = translated("Messages", "Device: %1");
    return messageOf(*entry, {device.arg(deviceOf(outcome))});
}

QString explain(const UsbOutcome &outcome)
{
    return terminalText(messageOf(outcome));
}

} // namespace app
