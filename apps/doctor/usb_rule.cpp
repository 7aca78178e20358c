// The udev rule that opens the readers to their users.

#include <algorithm>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include "apps/doctor/environment.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

constexpr qint64 LONGEST_RULE = 65536;

QString valueIn(const QString &line, const char *pattern)
{
    return QRegularExpression(QLatin1String(pattern)).match(line).captured(1);
}

QStringList openedDevices(const RuleState &rule)
{
    QStringList ids;
    for (const UsbIds opened : rule.opened)
        ids << toText(opened);
    return ids;
}

/** Has udev read its rules and apply them to what is plugged in. */
QStringList applyCommands()
{
    return {QStringLiteral("udevadm control --reload"),
            QStringLiteral("udevadm trigger --subsystem-match=usb --action=add")};
}

/** What is wrong with the rule, if anything, for a device or for any. */
Finding judgedRule(const UsbState &usb, const RuleState &rule, const UsbNode *node)
{
    const bool mayOpen = node == nullptr || node->device.mayOpen;
    const Level level = mayOpen ? Level::WARNING : Level::FAILURE;
    const QString although = node != nullptr && mayOpen
                                 ? tr("; this user may use the reader anyway, others may not")
                                 : QString();
    const auto notOpened = [&](const QString &text) {
        return node == nullptr
                   ? Finding{level, text, tr("Plug the reader in, then open it, as root:"),
                             QStringList{usb.accessProgram}}
                   : Finding{level, text + although,
                             tr("If this device is the reader, open it, as root:"),
                             QStringList{accessCommand(usb, node->device.ids)}};
    };
    if (rule.path.isEmpty()) {
        return notOpened(
            tr("The file %1 is in none of udev's folders").arg(QLatin1String(RULE_FILE)));
    }
    if (rule.isMasked) {
        return {
            level,
            filledIn(tr("%1 is empty or a link to /dev/null, by which the rule is switched off%2"),
                     rule.path, although),
            tr("Take it away, so that the file of the package counts, as root:"),
            QStringList{QStringLiteral("rm %1").arg(rule.path)} + applyCommands()};
    }
    const QString whom =
        rule.opened.isEmpty() ? tr("no device") : openedDevices(rule).join(tr(", "));
    if (node != nullptr && !rule.opened.contains(node->device.ids)) {
        return notOpened(
            filledIn(tr("%1 is for %2, not for %3"), rule.path, whom, toText(node->device.ids)));
    }
    if (rule.opened.isEmpty()) {
        return notOpened(
            tr("%1 opens no device: it has no ids of four digits in lower case").arg(rule.path));
    }
    if (node != nullptr && !mayOpen && node->rights.group != rule.group) {
        return {
            Level::FAILURE,
            filledIn(tr("%1 is for %2, but has not been applied: the node is not of the group %3"),
                     rule.path, toText(node->device.ids), rule.group),
            tr("Load it, then plug the reader in again, as root:"), applyCommands()};
    }
    return {Level::FINE, filledIn(tr("%1, for %2"), rule.path, whom)};
}

/** The rule file at a path; without one, an empty state. */
RuleState readRule(const QString &path)
{
    RuleState rule;
    if (!QFileInfo::exists(path))
        return rule;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        const QString text = QString::fromUtf8(file.read(LONGEST_RULE));
        rule = parseRule(text);
        rule.isMasked = text.trimmed().isEmpty();
    }
    rule.path = path;
    return rule;
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
    for (const QString &line : splitAt(QLatin1Char('\n'), joined)) {
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
        RuleState rule = readRule(QDir(folder).filePath(QLatin1String(RULE_FILE)));
        if (!rule.path.isEmpty())
            return rule;
    }
    return {};
}

QVector<RuleState> findAddedRules(const QString &folder)
{
    QVector<RuleState> rules;
    const QDir dir(folder);
    for (const QString &name : dir.entryList({QLatin1String(ADDED_RULE_FILES)}, QDir::Files))
        rules << readRule(dir.filePath(name));
    return rules;
}

const RuleState &ruleFor(const UsbState &usb, UsbIds ids)
{
    const auto *const added =
        std::find_if(usb.added.begin(), usb.added.end(),
                     [&](const RuleState &rule) { return rule.opened.contains(ids); });
    return added == usb.added.end() ? usb.rule : *added;
}

QString accessCommand(const UsbState &usb, UsbIds ids)
{
    return filledIn(QStringLiteral("%1 --device %2"), usb.accessProgram, toText(ids));
}

Findings checkRule(const Environment &environment)
{
    const UsbState &usb = environment.usb;
    Findings findings;
    for (const UsbNode &node : usb.nodes)
        findings << judgedRule(usb, ruleFor(usb, node.device.ids), &node);
    if (!findings.isEmpty())
        return findings;
    for (const RuleState &rule : usb.added)
        findings << judgedRule(usb, rule, nullptr);
    if (findings.isEmpty() || !usb.rule.path.isEmpty())
        findings.prepend(judgedRule(usb, usb.rule, nullptr));
    return findings;
}

} // namespace app::doctor
