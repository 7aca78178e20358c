// The right to open the readers: the rights of their nodes, and the group of their users.

#include <algorithm>
#include <vector>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <QFile>

#include "apps/doctor/environment.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

QString userName(uid_t user)
{
    const passwd *const entry = ::getpwuid(user);
    return entry == nullptr ? QString::number(user) : QString::fromLocal8Bit(entry->pw_name);
}

QString groupName(gid_t group)
{
    const ::group *const entry = ::getgrgid(group);
    return entry == nullptr ? QString::number(group) : QString::fromLocal8Bit(entry->gr_name);
}

/** Whether a user has a group by the system's lists, whatever this process has. */
bool isListed(const char *user, gid_t primary, gid_t group)
{
    int count = 0;
    ::getgrouplist(user, primary, nullptr, &count);
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    return ::getgrouplist(user, primary, groups.data(), &count) >= 0 &&
           std::find(groups.begin(), groups.end(), group) != groups.end();
}

QString modeText(unsigned int mode)
{
    return QStringLiteral("%1").arg(mode, 4, 8, QLatin1Char('0'));
}

Finding judgedGroup(const GroupState &group, const QVector<UsbNode> &nodes)
{
    const bool mayOpenAll = std::all_of(nodes.begin(), nodes.end(),
                                        [](const UsbNode &node) { return node.device.mayOpen; });
    const Level level = mayOpenAll ? Level::WARNING : Level::FAILURE;
    if (!group.exists) {
        return {level,
                tr("There is no group \"%1\", to which the rule gives the reader").arg(group.name),
                tr("Make it, as root:"),
                {QStringLiteral("groupadd --system %1").arg(group.name)}};
    }
    if (group.isRoot)
        return {Level::FINE, tr("\"%1\" is there; root needs none").arg(group.name)};
    if (group.isInForce)
        return {Level::FINE, filledIn(tr("%1 is in \"%2\""), group.user, group.name)};
    if (group.isMember) {
        return {level,
                filledIn(tr("%1 is in \"%2\", but has not logged in since then"), group.user,
                         group.name),
                tr("Log out of the whole desktop session and in again, or restart the machine. To "
                   "try it in this terminal:"),
                {QStringLiteral("newgrp %1").arg(group.name)}};
    }
    const QString text = filledIn(tr("%1 is not in \"%2\""), group.user, group.name);
    if (mayOpenAll && !nodes.isEmpty())
        return {Level::FINE, tr("%1 and need not be: the reader is open to them").arg(text)};
    return {level,
            text,
            tr("The user at the machine needs no group. For others, as root, then log in again:"),
            {filledIn(QStringLiteral("usermod --append --groups %1 %2"), group.name, group.user)}};
}

Finding judgedRights(const UsbNode &node, const UsbState &usb)
{
    const NodeRights &rights = node.rights;
    if (!rights.isThere) {
        return {Level::FAILURE,
                tr("%1 is not there: the device has no node").arg(node.device.node),
                tr("Plug the reader in again. In a container, pass /dev/bus/usb through."),
                {QStringLiteral("ls -l /dev/bus/usb")}};
    }
    const QString state = filledIn(tr("%1: mode %2, owner %3, group %4%5"), node.device.node,
                                   modeText(rights.mode), rights.owner, rights.group,
                                   rights.hasAcl ? tr(", with an access list") : QString());
    if (!node.device.mayOpen) {
        const QString text = tr("This user may not open %1").arg(state);
        constexpr unsigned int GROUP_MAY_USE = S_IRGRP | S_IWGRP;
        const Finding group = judgedGroup(usb.group, usb.nodes);
        if (rights.group == usb.group.name && (rights.mode & GROUP_MAY_USE) == GROUP_MAY_USE &&
            group.level == Level::FAILURE)
            return {Level::FAILURE, filledIn(tr("%1; %2"), text, group.text), group.remedy,
                    group.commands};
        return {Level::FAILURE,
                text,
                tr("If this device is the reader, open it to the user at the machine and to those "
                   "of the group, as root:"),
                {accessCommand(usb, node.device.ids)}};
    }
    return {Level::FINE,
            usb.group.isRoot ? tr("%1; root may open it whatever that is").arg(state) : state};
}

} // namespace

NodeRights rightsOf(const QString &node)
{
    const QByteArray path = QFile::encodeName(node);
    struct stat state {
    };
    NodeRights rights;
    if (::stat(path.constData(), &state) != 0)
        return rights;
    rights.isThere = true;
    rights.mode = state.st_mode & 07777U;
    rights.owner = userName(state.st_uid);
    rights.group = groupName(state.st_gid);
    rights.hasAcl = ::getxattr(path.constData(), "system.posix_acl_access", nullptr, 0) > 0;
    return rights;
}

GroupState groupState(const QString &group)
{
    GroupState state;
    state.name = group;
    state.isRoot = ::geteuid() == 0;
    const passwd *const user = ::getpwuid(::geteuid());
    const QByteArray name = user == nullptr ? QByteArray() : QByteArray(user->pw_name);
    const gid_t primary = user == nullptr ? ::getegid() : user->pw_gid;
    state.user = name.isEmpty() ? QString::number(::geteuid()) : QString::fromLocal8Bit(name);
    const ::group *const entry = ::getgrnam(group.toLocal8Bit().constData());
    if (entry == nullptr)
        return state;
    const gid_t number = entry->gr_gid;
    state.exists = true;
    state.isMember = !name.isEmpty() && isListed(name.constData(), primary, number);
    state.isInForce = number == ::getegid() || ::group_member(number) != 0;
    return state;
}

Findings checkPermission(const Environment &environment)
{
    const UsbState &usb = environment.usb;
    return forEach(usb, [&](const UsbNode &node) { return judgedRights(node, usb); });
}

Findings checkGroup(const Environment &environment)
{
    return {judgedGroup(environment.usb.group, environment.usb.nodes)};
}

} // namespace app::doctor
