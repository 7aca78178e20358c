// Judges the right to use the readers on the USB bus.

#include <algorithm>

#include <QJsonArray>

#include "apps/card/usb_catalogue.h"
#include "apps/doctor/usb_nodes.h"
#include "apps/doctor/usb_probe.h"
#include "reader/usb_codes.h"

namespace app::doctor
{

namespace
{

bool opens(const RuleState &rule, UsbIds ids)
{
    return rule.opened.contains(ids);
}

QString modeText(unsigned int mode)
{
    return QStringLiteral("%1").arg(mode, 4, 8, QLatin1Char('0'));
}

/** What to do after a rule file has come or changed. */
QStringList reloadCommands()
{
    return {QStringLiteral("udevadm control --reload"),
            QStringLiteral("udevadm trigger --subsystem-match=usb --action=add")};
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

/** A rule that is needed and not there, or not for this device. */
Finding ruleProblem(Level level, const QString &text, const QString &remedy,
                    const QStringList &commands, const QJsonObject &facts)
{
    return {level, text, remedy, commands + reloadCommands(), facts};
}

QJsonObject ruleFacts(const RuleState &rule)
{
    QJsonArray ids;
    for (const UsbIds opened : rule.opened)
        ids << toText(opened);
    return {{"file", textOrNull(rule.path)}, {"opens", ids}, {"isMasked", rule.isMasked}};
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

Finding judgedRule(const RuleState &rule, const UsbNode *node)
{
    QJsonObject facts = ruleFacts(rule);
    facts["device"] = node == nullptr ? QJsonValue() : QJsonValue(toText(node->device.ids));
    const bool mayOpen = node == nullptr || node->device.mayOpen;
    const Level level = mayOpen ? Level::Warning : Level::Failure;
    const QString although =
        node != nullptr && mayOpen
            ? QStringLiteral("; this user may use the reader all the same, others may not")
            : QString();
    const QString file = QLatin1String(RULE_FILE);
    if (rule.path.isEmpty()) {
        return ruleProblem(
            level, QStringLiteral("The file %1 is in none of udev's folders%2").arg(file, although),
            originOfFile(rule) +
                QStringLiteral("Copy it to /etc/udev/rules.d, then load it, as root:"),
            copyCommands(rule), facts);
    }
    if (rule.isMasked) {
        return ruleProblem(
            level,
            QStringLiteral("%1 is empty or a link to /dev/null, by which the rule is "
                           "switched off%2")
                .arg(rule.path, although),
            QStringLiteral("Take it away, so that the file of the package counts, "
                           "as root:"),
            {QStringLiteral("rm %1").arg(rule.path)}, facts);
    }
    QStringList opened;
    for (const UsbIds ids : rule.opened)
        opened << toText(ids);
    const QString whom =
        opened.isEmpty() ? QStringLiteral("no device") : opened.join(QStringLiteral(", "));
    if (node != nullptr && !opens(rule, node->device.ids)) {
        QStringList commands;
        if (!rule.path.startsWith(QLatin1String("/etc/")))
            commands << QStringLiteral("cp %1 /etc/udev/rules.d/").arg(rule.path);
        commands << ruleLine(node->device.ids);
        return ruleProblem(level,
                           QStringLiteral("%1 is for %2, not for %3%4")
                               .arg(rule.path, whom, toText(node->device.ids), although),
                           QStringLiteral("If this device is the reader, put its ids in the rule, "
                                          "as root:"),
                           commands, facts);
    }
    if (opened.isEmpty()) {
        return ruleProblem(Level::Warning,
                           QStringLiteral("%1 opens no device: it has no ids of four digits in "
                                          "lower case")
                               .arg(rule.path),
                           QStringLiteral("Put the project's file in its place, as root. ") +
                               originOfFile(rule) + QStringLiteral("Then load it:"),
                           copyCommands(rule), facts);
    }
    if (node != nullptr && !mayOpen && node->rights.group != rule.group) {
        return ruleProblem(Level::Failure,
                           QStringLiteral("%1 is for %2, but has not been applied: the node is not "
                                          "of the group %3")
                               .arg(rule.path, toText(node->device.ids), rule.group),
                           QStringLiteral("Load it, then plug the reader in anew, as root:"), {},
                           facts);
    }
    return {Level::Fine, QStringLiteral("%1, for %2").arg(rule.path, whom), {}, {}, facts};
}

} // namespace

Findings checkPermission(const Environment &environment)
{
    const bool isRoot = environment.usb.group.isRoot;
    return forEach(environment, [isRoot](const UsbNode &node) {
        const NodeRights &rights = node.rights;
        QJsonObject facts = nodeFacts(node);
        facts["mayOpen"] = node.device.mayOpen;
        facts["mode"] = rights.isThere ? QJsonValue(modeText(rights.mode)) : QJsonValue();
        facts["owner"] = textOrNull(rights.owner);
        facts["group"] = textOrNull(rights.group);
        facts["hasAcl"] = rights.hasAcl;
        if (!rights.isThere) {
            return Finding{
                Level::Failure,
                QStringLiteral("%1 is not there: the device has no node").arg(node.device.node),
                QStringLiteral("Plug the reader in anew. In a container, hand "
                               "/dev/bus/usb in."),
                {QStringLiteral("ls -l /dev/bus/usb")},
                facts};
        }
        const QString state =
            QStringLiteral("%1: mode %2, owner %3, group %4%5")
                .arg(node.device.node, modeText(rights.mode), rights.owner, rights.group,
                     rights.hasAcl ? QStringLiteral(", with an access list") : QString());
        if (node.device.mayOpen) {
            const QString root = QStringLiteral("; root may open it whatever that is");
            return Finding{Level::Fine, isRoot ? state + root : state, {}, {}, facts};
        }
        return Finding{Level::Failure,
                       QStringLiteral("This user may not open %1").arg(state),
                       QString::fromUtf8(findUsbResult(USB_READER_NO_PERMISSION)->remedy),
                       {},
                       facts};
    });
}

Findings checkRule(const Environment &environment)
{
    const RuleState &rule = environment.usb.rule;
    if (environment.usb.nodes.isEmpty())
        return {judgedRule(rule, nullptr)};
    return forEach(environment, [&rule](const UsbNode &node) { return judgedRule(rule, &node); });
}

Findings checkGroup(const Environment &environment)
{
    const GroupState &group = environment.usb.group;
    const QVector<UsbNode> &nodes = environment.usb.nodes;
    const bool mayOpenAll = std::all_of(nodes.begin(), nodes.end(),
                                        [](const UsbNode &node) { return node.device.mayOpen; });
    const QJsonObject facts{{"group", group.name},
                            {"user", group.user},
                            {"exists", group.exists},
                            {"isMember", group.isMember},
                            {"isInForce", group.isInForce}};
    const Level level = mayOpenAll ? Level::Warning : Level::Failure;
    if (!group.exists) {
        return {{level,
                 QStringLiteral("There is no group \"%1\", to which the rule gives the reader")
                     .arg(group.name),
                 QStringLiteral("Make it, as root:"),
                 {QStringLiteral("groupadd --system %1").arg(group.name)},
                 facts}};
    }
    if (group.isRoot) {
        return {{Level::Fine,
                 QStringLiteral("\"%1\" is there; root needs none").arg(group.name),
                 {},
                 {},
                 facts}};
    }
    if (group.isInForce) {
        return {{Level::Fine,
                 QStringLiteral("%1 is in \"%2\"").arg(group.user, group.name),
                 {},
                 {},
                 facts}};
    }
    if (group.isMember) {
        return {{level,
                 QStringLiteral("%1 is in \"%2\", but has not logged in since then")
                     .arg(group.user, group.name),
                 QStringLiteral("Log out of the whole desktop session and in again, or start the "
                                "machine anew. To try it in this terminal:"),
                 {QStringLiteral("newgrp %1").arg(group.name)},
                 facts}};
    }
    if (mayOpenAll && !nodes.isEmpty()) {
        return {{Level::Fine,
                 QStringLiteral("%1 is not in \"%2\" and need not be: the reader is open to them")
                     .arg(group.user, group.name),
                 {},
                 {},
                 facts}};
    }
    return {{level,
             QStringLiteral("%1 is not in \"%2\"").arg(group.user, group.name),
             QStringLiteral("Who sits at the machine needs no group. For others, as root, then log "
                            "in anew:"),
             {QStringLiteral("usermod --append --groups %1 %2").arg(group.name, group.user)},
             facts}};
}

} // namespace app::doctor
