// The readers on the bus, and the kernel's drivers that are bound to them.

#include "apps/card/usb_catalogue.h"
#include "apps/card/usb_list.h"
#include "apps/doctor/environment.h"
#include "apps/doctor/shipped_files.h"
#include "apps/process/json_object.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

/** Why there is no device that could be a reader. */
Finding judgedAbsence(const UsbState &usb)
{
    if (usb.code != 0) {
        const ResultEntry *const entry = findUsbResult(usb.code);
        return {Level::FAILURE,
                QString::fromUtf8(entry->summary),
                QString::fromUtf8(entry->remedy),
                {QStringLiteral("ls -l /dev/bus/usb /sys/bus/usb")}};
    }
    const QString seen = usb.others == 0
                             ? QStringLiteral("the bus is empty, but perhaps for hubs")
                             : QStringLiteral("%1 other devices are there").arg(usb.others);
    const QString missing = usb.asked
                                ? QStringLiteral("%1 is not on the USB bus").arg(toText(*usb.asked))
                                : QStringLiteral("No device on the USB bus could be a reader");
    return {Level::FAILURE,
            filledIn(QStringLiteral("%1; %2"), missing, seen),
            QStringLiteral("Plug the reader in, straight into the computer, and see that it has "
                           "power. A container or virtual machine has only the devices that are "
                           "passed through. What is there:"),
            {QStringLiteral("idcard-reader usb --list")}};
}

Finding judgedReader(const UsbNode &node)
{
    const UsbDevice &device = node.device;
    const QString name = designation(device);
    const QString text =
        filledIn(QStringLiteral("%1 at %2%3%4"), toText(device.ids), device.node,
                 QLatin1String(name.startsWith(QLatin1Char('(')) ? " " : ", "), name);
    if (device.hasReaderPipes)
        return {Level::FINE, text};
    return {Level::FAILURE,
            text + QStringLiteral(": it has not the pipes of a reader that this library knows"),
            QStringLiteral("See whether these ids are those of the reader. One with other pipes is "
                           "read through its maker's library alone:"),
            {QStringLiteral("idcard-reader doctor --road library")}};
}

Finding judgedDriver(const UsbNode &node)
{
    const QString &driver = node.device.driver;
    if (driver.isEmpty())
        return {Level::FINE, QStringLiteral("None is bound")};
    // A program that has claimed the interface appears as this driver.
    if (driver == QLatin1String("usbfs"))
        return {Level::FINE, QStringLiteral("None but that of a program (usbfs)")};
    return {Level::WARNING,
            QStringLiteral("\"%1\" is bound to the reader; every read detaches it from the "
                           "reader and attaches it again")
                .arg(driver),
            QStringLiteral("If reading fails with USB_READER_CLAIM_FAILED, keep the driver from "
                           "it, as root, and plug the reader in again:"),
            {QStringLiteral("echo 'blacklist %1' > /etc/modprobe.d/idcard-reader.conf").arg(driver),
             QStringLiteral("rmmod %1").arg(driver)}};
}

} // namespace

UsbState probeUsb(std::optional<UsbIds> asked, const QStringList &folders)
{
    UsbState state;
    state.asked = asked;
    state.rule = findRule(folders);
    state.added = findAddedRules(folders.first());
    const QString accessProgram = shippedAccessProgram();
    state.accessProgram =
        accessProgram.isEmpty() ? QString::fromLatin1(ACCESS_PROGRAM) : quoted(accessProgram);
    state.group =
        groupState(state.rule.group.isEmpty() ? QLatin1String(READERS_GROUP) : state.rule.group);
    const UsbDevices list = listUsbDevices();
    state.code = list.code;
    for (const UsbDevice &device : list.devices) {
        const bool isInRule = ruleFor(state, device.ids).opened.contains(device.ids);
        const bool isWanted = asked ? *asked == device.ids : device.hasReaderPipes || isInRule;
        if (isWanted)
            state.nodes << UsbNode{device, rightsOf(device.node), holdersOf(device.node)};
        else
            ++state.others;
    }
    return state;
}

Findings checkReader(const Environment &environment)
{
    const UsbState &usb = environment.usb;
    if (usb.code != 0 || usb.nodes.isEmpty()) {
        Finding finding = judgedAbsence(usb);
        finding.facts = {{"device", usb.asked ? QJsonValue(toText(*usb.asked)) : QJsonValue()},
                         {"node", QJsonValue()},
                         {"manufacturer", QJsonValue()},
                         {"product", QJsonValue()},
                         {"hasReaderPipes", QJsonValue()}};
        return {finding};
    }
    return forEach(usb, judgedReader, [](const UsbNode &node) {
        return JsonObject{{"manufacturer", textOrNull(node.device.manufacturer)},
                          {"product", textOrNull(node.device.product)},
                          {"hasReaderPipes", node.device.hasReaderPipes}};
    });
}

Findings checkDriver(const Environment &environment)
{
    return forEach(environment.usb, judgedDriver, [](const UsbNode &node) {
        return JsonObject{{"driver", textOrNull(node.device.driver)}};
    });
}

} // namespace app::doctor
