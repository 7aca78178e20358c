#include "apps/reading/usb_list.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "apps/process/json_object.h"
#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(UsbList)

QString yesOrNo(bool answer)
{
    return answer ? tr("yes") : tr("no");
}

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QString classForPeople(const QString &deviceClass)
{
    const QString number = deviceClass.section(QStringLiteral("class "), 1);
    return number.isEmpty() ? tr(deviceClass.toUtf8().constData()) : tr("class %1").arg(number);
}

} // namespace

QString designation(const UsbDevice &device)
{
    const QString name = (device.manufacturer + QLatin1Char(' ') + device.product).trimmed();
    const QString deviceClass = classForPeople(device.deviceClass);
    return name.isEmpty() ? tr("(%1)").arg(deviceClass)
                          : filledIn(tr("%1 (%2)"), name, deviceClass);
}

QByteArray toJson(const QVector<UsbDevice> &devices)
{
    QJsonArray array;
    for (const UsbDevice &device : devices) {
        array << JsonObject{{"device", toText(device.ids)},
                            {"bus", device.bus},
                            {"address", device.address},
                            {"node", device.node},
                            {"mayOpen", device.mayOpen},
                            {"class", device.deviceClass},
                            {"manufacturer", textOrNull(device.manufacturer)},
                            {"product", textOrNull(device.product)},
                            {"hasReaderPipes", device.hasReaderPipes}};
    }
    return QJsonDocument(array).toJson();
}

QString toTable(const QVector<UsbDevice> &devices)
{
    if (devices.isEmpty())
        return {};
    QVector<QStringList> rows{
        {tr("DEVICE"), tr("NODE"), tr("MAY OPEN"), tr("READER'S PIPES"), tr("WHAT IT IS")}};
    for (const UsbDevice &device : devices) {
        rows << QStringList{toText(device.ids), device.node, yesOrNo(device.mayOpen),
                            yesOrNo(device.hasReaderPipes), designation(device)};
    }
    return alignedTable(rows);
}

QString emptyListNote()
{
    constexpr int FIRST_LINE_WIDTH = 64; // it comes after the program's name
    return wrapped(
        tr("There is no USB device here, except perhaps hubs. See that the reader is plugged in "
           "and has power, and that /sys/bus/usb/devices and /dev/bus/usb are there: a container "
           "or a virtual machine has only the devices that are passed through."),
        FIRST_LINE_WIDTH, 2);
}

} // namespace app
