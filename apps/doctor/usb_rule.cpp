// The udev rule that opens the readers to their users.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>

#include "apps/doctor/environment.h"
#include "apps/doctor/shipped_files.h"

namespace app::doctor
{

namespace
{

constexpr qint64 LONGEST_RULE = 65536;

QString valueIn(const QString &line, const char *pattern)
{
    return QRegularExpression(QLatin1String(pattern)).match(line).captured(1);
}

/** How the rule file comes to its place, as far as a copy of it came with this program. */
QStringList copyCommands(const RuleState &rule)
{
    if (rule.shipped.isEmpty())
        return {};
    return {QStringLiteral("cp %1 /etc/udev/rules.d/").arg(quoted(rule.shipped))};
}

/** Where a user who has no copy gets one from. */
QString originOfFile(const RuleState &rule)
{
    return rule.shipped.isEmpty()
               ? QStringLiteral("It is in the project's build folder, packaging/%1, and in its "
                                "package. ")
                     .arg(QLatin1String(RULE_FILE))
               : QString();
}

QStringList openedDevices(const RuleState &rule)
{
    QStringList ids;
    for (const UsbIds opened : rule.opened)
        ids << toText(opened);
    return ids;
}

/** A line for a rule file that opens this device and no other. */
QString ruleLine(UsbIds ids)
{
    const QString text = toText(ids);
    return QStringLiteral("sed -i -e 's/\\(idVendor}==\\)\"[^\"]*\"/\\1\"%1\"/' -e "
                          "'s/\\(idProduct}==\\)\"[^\"]*\"/\\1\"%2\"/' /etc/udev/rules.d/%3")
        .arg(text.section(QLatin1Char(':'), 0, 0), text.section(QLatin1Char(':'), 1, 1),
             QLatin1String(RULE_FILE));
}

/** What is wrong with the rule, if anything, for a device or for any; without what loads it. */
Finding judgedRule(const RuleState &rule, const UsbNode *node)
{
    const bool mayOpen = node == nullptr || node->device.mayOpen;
    const Level level = mayOpen ? Level::WARNING : Level::FAILURE;
    const QString although =
        node != nullptr && mayOpen
            ? QStringLiteral("; this user may use the reader all the same, others may not")
            : QString();
    if (rule.path.isEmpty()) {
        return {level,
                QStringLiteral("The file %1 is in none of udev's folders%2")
                    .arg(QLatin1String(RULE_FILE), although),
                originOfFile(rule) +
                    QStringLiteral("Copy it to /etc/udev/rules.d, then load it, as root:"),
                copyCommands(rule)};
    }
    if (rule.isMasked) {
        return {level,
                QStringLiteral("%1 is empty or a link to /dev/null, by which the rule is switched "
                               "off%2")
                    .arg(rule.path, although),
                QStringLiteral("Take it away, so that the file of the package counts, as root:"),
                {QStringLiteral("rm %1").arg(rule.path)}};
    }
    const QString whom = rule.opened.isEmpty() ? QStringLiteral("no device")
                                               : openedDevices(rule).join(QStringLiteral(", "));
    if (node != nullptr && !rule.opened.contains(node->device.ids)) {
        QStringList commands;
        if (!rule.path.startsWith(QLatin1String("/etc/")))
            commands << QStringLiteral("cp %1 /etc/udev/rules.d/").arg(rule.path);
        return {level,
                QStringLiteral("%1 is for %2, not for %3%4")
                    .arg(rule.path, whom, toText(node->device.ids), although),
                QStringLiteral("If this device is the reader, put its ids in the rule, as root:"),
                commands << ruleLine(node->device.ids)};
    }
    if (rule.opened.isEmpty()) {
        return {Level::WARNING,
                QStringLiteral("%1 opens no device: it has no ids of four digits in lower case")
                    .arg(rule.path),
                QStringLiteral("Put the project's file in its place, as root. ") +
                    originOfFile(rule) + QStringLiteral("Then load it:"),
                copyCommands(rule)};
    }
    if (node != nullptr && !mayOpen && node->rights.group != rule.group) {
        return {Level::FAILURE,
                QStringLiteral("%1 is for %2, but has not been applied: the node is not of the "
                               "group %3")
                    .arg(rule.path, toText(node->device.ids), rule.group),
                QStringLiteral("Load it, then plug the reader in anew, as root:")};
    }
    return {Level::FINE, QStringLiteral("%1, for %2").arg(rule.path, whom)};
}

Finding findingOf(const RuleState &rule, const UsbNode *node)
{
    Finding finding = judgedRule(rule, node);
    if (finding.level != Level::FINE)
        finding.commands << QStringLiteral("udevadm control --reload")
                         << QStringLiteral("udevadm trigger --subsystem-match=usb --action=add");
    finding.facts = {{"device", node == nullptr ? QJsonValue() : toText(node->device.ids)},
                     {"file", textOrNull(rule.path)},
                     {"opens", QJsonArray::fromStringList(openedDevices(rule))},
                     {"isMasked", rule.isMasked}};
    return finding;
}

} // namespace

QStringList ruleFolders()
{
    return {QStringLiteral("/etc/udev/rules.d"), QStringLiteral("/run/udev/rules.d"),
            QStringLiteral("/usr/lib/udev/rules.d"), QStringLiteral("/lib/udev/rules.d")};
}

RuleState parseRule(const QString &text)
{
    RuleState rule;
    QString joined = text;
    joined.replace(QStringLiteral("\\\n"), QStringLiteral(" "));
    for (const QString &line : joined.split(QLatin1Char('\n'))) {
        if (line.trimmed().startsWith(QLatin1Char('#')))
            continue;
        // udev compares texts, and the kernel has lower case: ids in upper case open nothing.
        const QString vendor = valueIn(line, R"re(ATTR\{idVendor\}\s*==\s*"([0-9a-f]{4})")re");
        const QString product = valueIn(line, R"re(ATTR\{idProduct\}\s*==\s*"([0-9a-f]{4})")re");
        if (vendor.isEmpty() || product.isEmpty())
            continue;
        rule.opened << UsbIds{vendor.toUShort(nullptr, 16), product.toUShort(nullptr, 16)};
        const QString group = valueIn(line, R"re(GROUP\s*:?=\s*"([^"]*)")re");
        if (!group.isEmpty())
            rule.group = group;
    }
    return rule;
}

RuleState findRule(const QStringList &folders)
{
    for (const QString &folder : folders) {
        const QString path = QDir(folder).filePath(QLatin1String(RULE_FILE));
        QFile file(path);
        if (!QFileInfo::exists(path))
            continue;
        RuleState rule;
        if (file.open(QIODevice::ReadOnly)) {
            const QString text = QString::fromUtf8(file.read(LONGEST_RULE));
            rule = parseRule(text);
            rule.isMasked = text.trimmed().isEmpty();
        }
        rule.path = path;
        return rule;
    }
    return {};
}

Findings checkRule(const Environment &environment)
{
    const UsbState &usb = environment.usb;
    Findings findings;
    for (const UsbNode &node : usb.nodes)
        findings << findingOf(usb.rule, &node);
    return findings.isEmpty() ? Findings{findingOf(usb.rule, nullptr)} : findings;
}

} // namespace app::doctor
