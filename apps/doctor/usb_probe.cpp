#include "apps/doctor/usb_probe.h"

#include <algorithm>
#include <array>
#include <vector>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

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

QString linkTarget(const QString &path)
{
    std::array<char, 4096> target{};
    const ssize_t length =
        ::readlink(QFile::encodeName(path).constData(), target.data(), target.size() - 1);
    return length < 0 ? QString() : QFile::decodeName(target.data());
}

bool isSameFile(const QString &one, const QString &other)
{
    struct stat first {
    };
    struct stat second {
    };
    return ::stat(QFile::encodeName(one).constData(), &first) == 0 &&
           ::stat(QFile::encodeName(other).constData(), &second) == 0 &&
           ((first.st_dev == second.st_dev && first.st_ino == second.st_ino) ||
            (S_ISCHR(first.st_mode) && S_ISCHR(second.st_mode) && first.st_rdev == second.st_rdev));
}

/** Whether a process has the node open. The links are read first: nothing else is looked at. */
bool hasOpen(const QDir &files, const QString &node)
{
    for (const QString &name : files.entryList(QDir::Files | QDir::System | QDir::Hidden)) {
        const QString path = files.filePath(name);
        if (linkTarget(path).endsWith(node) && isSameFile(path, node))
            return true;
    }
    return false;
}

QString nameOfProcess(const QString &folder)
{
    constexpr qint64 LONGEST = 64;
    QFile file(folder + QStringLiteral("/comm"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLocal8Bit(file.read(LONGEST)).trimmed();
}

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

/** The groups of a user by the system's lists, whatever this process has. */
std::vector<gid_t> listedGroups(const char *name, gid_t primary)
{
    constexpr int MOST = 65536;
    int count = 64;
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    while (::getgrouplist(name, primary, groups.data(), &count) < 0) {
        if (count > MOST || static_cast<std::size_t>(count) <= groups.size())
            return {};
        groups.resize(static_cast<std::size_t>(count));
    }
    groups.resize(static_cast<std::size_t>(count));
    return groups;
}

std::vector<gid_t> processGroups()
{
    const int count = ::getgroups(0, nullptr);
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(count, 0)));
    const int got = ::getgroups(count, groups.data());
    groups.resize(static_cast<std::size_t>(std::max(got, 0)));
    groups.push_back(::getegid());
    return groups;
}

bool holds(const std::vector<gid_t> &groups, gid_t group)
{
    return std::find(groups.begin(), groups.end(), group) != groups.end();
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

Holders holdersOf(const QString &node, const QString &processes)
{
    Holders holders;
    const QDir folder(processes);
    for (const QString &name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool isNumber = false;
        const int process = name.toInt(&isNumber);
        if (!isNumber || process == ::getpid())
            continue;
        const QDir files(folder.filePath(name + QStringLiteral("/fd")));
        if (::access(QFile::encodeName(files.path()).constData(), R_OK | X_OK) != 0) {
            holders.unseen += files.exists() ? 1 : 0;
        } else if (hasOpen(files, node)) {
            holders.processes << Holder{process, nameOfProcess(folder.filePath(name))};
        }
    }
    return holders;
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
    state.isMember = !name.isEmpty() && holds(listedGroups(name.constData(), primary), number);
    state.isInForce = holds(processGroups(), number);
    return state;
}

UsbState probeUsb(std::optional<UsbIds> asked, const QStringList &folders)
{
    UsbState state;
    state.asked = asked;
    state.rule = findRule(folders);
    const QString shipped = shippedRule();
    if (shipped != QFileInfo(state.rule.path).canonicalFilePath())
        state.rule.shipped = shipped;
    state.group =
        groupState(state.rule.group.isEmpty() ? QLatin1String(READERS_GROUP) : state.rule.group);
    const UsbDevices list = listUsbDevices();
    state.code = list.code;
    for (const UsbDevice &device : list.devices) {
        const bool isInRule = state.rule.opened.contains(device.ids);
        const bool isWanted = asked ? *asked == device.ids : device.hasReaderPipes || isInRule;
        if (isWanted)
            state.nodes << UsbNode{device, rightsOf(device.node), holdersOf(device.node)};
        else
            ++state.others;
    }
    return state;
}

} // namespace app::doctor
