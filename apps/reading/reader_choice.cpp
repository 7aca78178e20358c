#include "apps/reading/reader_choice.h"

#include <algorithm>

#include <QStringList>

#include "apps/process/translation.h"
#include "apps/results/usb_catalogue.h"
#include "common/texts.h"
#include "reader/usb_codes.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Results)

Failure severalReaders(const QVector<UsbDevice> &readers)
{
    QStringList places;
    for (const UsbDevice &reader : readers)
        places << filledIn(tr("%1 at %2"), toText(reader.ids), reader.node);
    const bool areAlike = std::all_of(readers.begin(), readers.end(), [&](const UsbDevice &reader) {
        return reader.ids == readers.first().ids;
    });
    const QString words =
        areAlike ? tr("Several USB devices with the same ids could be the reader: %1. Unplug all "
                      "but one: --device cannot distinguish them.")
                 : tr("Several USB devices could be the reader: %1. Name its ids with --device, or "
                      "as device in a configuration file.");
    Failure failure = toolFailure(ToolFault::SEVERAL_READERS, words.arg(places.join(tr(", "))));
    if (areAlike)
        failure.remedy = tr("Unplug all readers but one.");
    return failure;
}

} // namespace

ReaderChoice onlyReaderIn(const UsbDevices &list)
{
    if (list.code != USB_READER_OK)
        return {std::nullopt, resultFailure(*findUsbResult(list.code))};
    QVector<UsbDevice> readers;
    for (const UsbDevice &device : list.devices) {
        if (couldBeReader(device))
            readers << device;
    }
    if (readers.isEmpty())
        return {std::nullopt, resultFailure(*findUsbResult(USB_READER_NOT_FOUND))};
    if (readers.size() > 1)
        return {std::nullopt, severalReaders(readers)};
    return {readers.first().ids, std::nullopt};
}

ReaderChoice onlyReaderOnBus()
{
    return onlyReaderIn(listUsbDevices());
}

} // namespace app
