// The programs that use the readers.

#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

#include "apps/doctor/environment.h"
#include "apps/process/link_target.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

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

bool isClaimed(const UsbNode &node)
{
    return node.device.driver == QLatin1String("usbfs");
}

Finding judgedHolders(const UsbNode &node)
{
    const Holders &holders = node.holders;
    QStringList names;
    for (const Holder &holder : holders.processes)
        names << filledIn(tr("%1 (process %2)"), holder.name, QString::number(holder.process));
    const QString unseen =
        holders.unseen == 0
            ? QString()
            : tr("; %1 processes of others cannot be seen by this user, root sees them")
                  .arg(holders.unseen);
    if (names.isEmpty() && !isClaimed(node))
        return {Level::FINE, tr("By no program%1").arg(unseen)};
    const QString who =
        names.isEmpty() ? tr("a program that this user cannot see") : names.join(tr(", "));
    const QString how = isClaimed(node) ? tr("The reader is held by %1%2")
                                        : tr("The reader's node is open in %1%2");
    return {isClaimed(node) ? Level::FAILURE : Level::WARNING,
            filledIn(how, who, unseen),
            tr("One program at a time can use a reader: end the other one first. Which it is, as "
               "root:"),
            {QStringLiteral("fuser -v %1").arg(node.device.node)}};
}

} // namespace

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

Findings checkHolder(const Environment &environment)
{
    return forEach(environment.usb, judgedHolders);
}

} // namespace app::doctor
