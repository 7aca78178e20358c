// The readers on the bus, and the kernel's drivers that are bound to them.

#include "apps/doctor/environment.h"
#include "apps/doctor/shipped_files.h"
#include "apps/process/translation.h"
#include "apps/reading/usb_list.h"
#include "apps/results/message.h"
#include "apps/results/usb_catalogue.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

/** Why there is no device that could be a reader. */
Finding judgedAbsence(const UsbState &usb)
{
    if (usb.code != 0) {
        const ResultEntry *const entry = findUsbResult(usb.code);
        return {Level::FAILURE,
                resultText(entry->summary),
                resultText(entry->remedy),
                {QStringLiteral("ls -l /dev/bus/usb /sys/bus/usb")}};
    }
    const QString seen = usb.others == 0 ? tr("the bus is empty, but perhaps for hubs")
                                         : tr("%1 other devices are there").arg(usb.others);
    const QString missing = usb.asked ? tr("%1 is not on the USB bus").arg(toText(*usb.asked))
                                      : tr("No device on the USB bus could be a reader");
    return {
        Level::FAILURE,
        filledIn(tr("%1; %2"), missing, seen),
        tr("Plug the reader in, straight into the computer, and see that it has power. A container "
           "or virtual machine has only the devices that are passed through. What is there:"),
        {QStringLiteral("idcard-reader usb --list")}};
}

Finding judgedReader(const UsbNode &node)
{
    const UsbDevice &device = node.device;
    const bool hasName = !(device.manufacturer + device.product).trimmed().isEmpty();
    const QString text = filledIn(hasName ? tr("%1 at %2, %3") : tr("%1 at %2 %3"),
                                  toText(device.ids), device.node, designation(device));
    if (device.hasReaderPipes)
        return {Level::FINE, text};
    return {Level::FAILURE,
            tr("%1: it has not the pipes of a reader that this library knows").arg(text),
            tr("See whether these ids are those of the reader. One with other pipes is read "
               "through its maker's library alone:"),
            {QStringLiteral("idcard-reader doctor --road library")}};
}

Finding judgedDriver(const UsbNode &node)
{
    const QString &driver = node.device.driver;
    if (driver.isEmpty())
        return {Level::FINE, tr("None is bound")};
    // A program that has claimed the interface appears as this driver.
    if (driver == QLatin1String("usbfs"))
        return {Level::FINE, tr("None but that of a program (usbfs)")};
    return {Level::WARNING,
            tr("\"%1\" is bound to the reader; every read detaches it from the reader and attaches "
               "it again")
                .arg(driver),
            tr("If reading fails with USB_READER_CLAIM_FAILED, keep the driver from it, as root, "
               "and plug the reader in again:"),
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
        const bool isWanted = asked ? *asked == device.ids : couldBeReader(device) || isInRule;
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
    if (usb.code != 0 || usb.nodes.isEmpty())
        return {judgedAbsence(usb)};
    return forEach(usb, judgedReader);
}

Findings checkDriver(const Environment &environment)
{
    return forEach(environment.usb, judgedDriver);
}

} // namespace app::doctor
