#include "apps/card/file_set.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QtDebug>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Files)

constexpr mode_t PRIVATE_FOLDER_MODE = 0700;
constexpr std::chrono::seconds LOCK_LIMIT{10}; // a slow disk takes a second for a card
constexpr std::chrono::milliseconds LOCK_PAUSE{20};

bool isThere(const QFileInfo &info)
{
    return info.exists() || info.isSymLink();
}

QString notMade(const QString &folder, const QString &reason)
{
    return filledIn(tr("The folder %1 could not be made: %2. Choose another folder."),
                    QDir::toNativeSeparators(folder), reason);
}

/**
 * The folder and those above it that are not there, outermost first. A path means what it means to
 * the system, to which the files' own paths go: "link/.." is above the folder that is linked to.
 */
QStringList missingFolders(const QString &folder)
{
    QStringList missing;
    for (QString part = folder; !isThere(QFileInfo(part)); part = QFileInfo(part).path())
        missing.prepend(part);
    return missing;
}

/** What is in the way of a folder, as far as that shows without making it. */
QString obstacleToFolder(const QString &folder)
{
    const QStringList missing = missingFolders(folder);
    for (const QString &part : missing) {
        if (QFileInfo(part).fileName() == QLatin1String("..")) // leads nowhere
            return notMade(folder, systemError(ENOENT));
    }
    if (!missing.isEmpty() || QFileInfo(folder).isDir())
        return {};
    return tr("%1 is not a folder. Choose another folder.").arg(QDir::toNativeSeparators(folder));
}

/** As makePrivateFolder(); `made` are the folders that were not there, outermost first. */
QString makeFolders(const QString &folder, QStringList *made)
{
    QString problem = obstacleToFolder(folder);
    if (!problem.isEmpty())
        return problem;
    for (const QString &part : missingFolders(folder)) {
        if (::mkdir(QFile::encodeName(part).constData(), PRIVATE_FOLDER_MODE) == 0)
            made->append(part);
        else if (errno != EEXIST) // another program may make it at the same time
            return notMade(part, systemError(errno));
    }
    return {};
}

void removeFolders(const QStringList &made)
{
    std::for_each(made.rbegin(), made.rend(),
                  [](const QString &folder) { ::rmdir(QFile::encodeName(folder).constData()); });
}

/** Keeps other programs that write such files out of a folder. */
class FolderLock
{
public:
    explicit FolderLock(const QString &folder)
        : m_descriptor(
              ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
    }
    ~FolderLock()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    FolderLock(const FolderLock &) = delete;
    FolderLock(FolderLock &&) = delete;
    FolderLock &operator=(const FolderLock &) = delete;
    FolderLock &operator=(FolderLock &&) = delete;

    /** False when another keeps it for too long. Where folders cannot be locked, nothing is. */
    bool wait() const
    {
        const QDeadlineTimer limit(LOCK_LIMIT);
        while (::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
            if (limit.hasExpired())
                return false;
            std::this_thread::sleep_for(LOCK_PAUSE);
        }
        return true;
    }

private:
    int m_descriptor;
};

/**
 * While it lives, the signals by which a program is ended have no effect; afterwards they do. A
 * program with other threads must catch them, as those would take them.
 */
class DelayedEnd
{
public:
    DelayedEnd()
    {
        sigset_t ending;
        sigemptyset(&ending);
        for (const int signal : {SIGHUP, SIGINT, SIGTERM})
            sigaddset(&ending, signal);
        ::pthread_sigmask(SIG_BLOCK, &ending, &m_before);
    }
    ~DelayedEnd() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    DelayedEnd(const DelayedEnd &) = delete;
    DelayedEnd(DelayedEnd &&) = delete;
    DelayedEnd &operator=(const DelayedEnd &) = delete;
    DelayedEnd &operator=(DelayedEnd &&) = delete;

private:
    sigset_t m_before{};
};

/**
 * One file on its way: first written whole under a passing name, then put in its place, where what
 * stood there is kept under another passing name until all files are in their places.
 */
struct FileChange {
    QString path;
    std::unique_ptr<QTemporaryFile> passing;
    QString oldFile; ///< passing name of what stood in its place; empty: nothing did
    bool isOpened = false;
    bool isInPlace = false;
};

QString notWritten(const FileChange &change, const QString &reason)
{
    return filledIn(tr("The file %1 could not be written: %2. Free space, see who may write there, "
                       "or choose another folder."),
                    QDir::toNativeSeparators(change.path), reason);
}

/** What somebody's card holds must not lie around. */
void removeOrReport(QFile &file)
{
    if (!file.remove()) {
        qCritical("%s",
                  qUtf8Printable(filledIn(tr("The file %1 could not be removed: %2. Remove it."),
                                          QDir::toNativeSeparators(file.fileName()),
                                          translatedSystemText(file.errorString()))));
    }
}

bool renameFile(const QString &from, const QString &to)
{
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/** Writes the content under the passing name. */
QString prepare(FileChange &change, const QByteArray &content)
{
    QTemporaryFile &passing = *change.passing;
    change.isOpened = passing.open();
    if (!change.isOpened)
        return notWritten(change, translatedSystemText(passing.errorString()));
    if (content.isNull())
        return {};
    if (passing.write(content) != content.size() || !passing.flush())
        return notWritten(change, translatedSystemText(passing.errorString()));
    if (::fsync(passing.handle()) != 0 && errno != EINVAL)
        return notWritten(change, systemError(errno));
    return {};
}

QString putInPlace(FileChange &change, const QByteArray &content, ExistingFiles existing)
{
    if (existing == ExistingFiles::REPLACE && isThere(QFileInfo(change.path))) {
        const QString name = change.passing->fileName();
        const QString aside = name + QStringLiteral(".old");
        if (name.isEmpty() || !renameFile(change.path, aside))
            return notWritten(change, systemError(errno));
        change.oldFile = aside;
    }
    if (content.isNull())
        return {};
    // Replaces nothing, not even a file that has appeared just now. QFile::rename would copy
    // what cannot be renamed, and not see that a full disk has cut the copy off.
    if (!change.passing->rename(change.path))
        return notWritten(change, translatedSystemText(change.passing->errorString()));
    change.passing->setAutoRemove(false);
    change.isInPlace = true;
    return {};
}

/** Brings back what stood in the file's place, if anything did. */
void undo(const FileChange &change)
{
    QFile placed(change.path);
    if (change.oldFile.isEmpty() && change.isInPlace)
        removeOrReport(placed);
    if (!change.oldFile.isEmpty() && !renameFile(change.oldFile, change.path)) {
        qCritical("%s", qUtf8Printable(filledIn(tr("The earlier file %1 is now %2: %3. Rename it."),
                                                QDir::toNativeSeparators(change.path),
                                                QDir::toNativeSeparators(change.oldFile),
                                                systemError(errno))));
    }
}

/** Removes what lies under passing names; a change that is undone has brought its old file back. */
void cleanUp(const FileChange &change, bool isUndone)
{
    change.passing->close(); // a file that cannot be flushed is not removed at once
    if (change.isOpened && !change.isInPlace)
        removeOrReport(*change.passing);
    QFile old(change.oldFile);
    if (!isUndone && !change.oldFile.isEmpty())
        removeOrReport(old);
}

/** Writes all files, or leaves the folder as it was. */
QString changeFiles(const QString &folder, const QVector<NamedContent> &files,
                    ExistingFiles existing)
{
    std::vector<FileChange> changes;
    QString problem;
    for (const auto *file = files.begin(); file != files.end() && problem.isEmpty(); ++file) {
        const QString passing = QDir(folder).filePath(QStringLiteral(".%1.XXXXXX").arg(file->name));
        changes.push_back(
            {QDir(folder).filePath(file->name), std::make_unique<QTemporaryFile>(passing), {}});
        problem = prepare(changes.back(), file->content);
    }
    for (std::size_t i = 0; i < changes.size() && problem.isEmpty(); ++i)
        problem = putInPlace(changes[i], files[static_cast<int>(i)].content, existing);
    if (!problem.isEmpty())
        std::for_each(changes.rbegin(), changes.rend(), undo);
    for (const FileChange &change : changes)
        cleanUp(change, !problem.isEmpty());
    return problem;
}

/** As changeFiles(), while no other program writes there. */
QString changeFilesInTurn(const QString &folder, const QVector<NamedContent> &files,
                          ExistingFiles existing)
{
    const FolderLock lock(folder);
    if (!lock.wait()) {
        return tr("Another program has locked the folder %1. Wait until it has ended, or choose "
                  "another folder.")
            .arg(QDir::toNativeSeparators(folder));
    }
    QStringList names;
    for (const NamedContent &file : files)
        names << file.name;
    QString obstacle = obstacleTo(folder, names, existing);
    if (!obstacle.isEmpty())
        return obstacle;
    // QTemporaryFile would take "link/.." out of a path, which then leads elsewhere.
    const QString place = QFileInfo(folder).canonicalFilePath();
    if (place.isEmpty()) // has been removed just now
        return notMade(folder, systemError(ENOENT));
    return changeFiles(place, files, existing);
}

/** Makes a folder of the first of these names that is not taken. */
QString makeFirstFree(const QString &parent, QString *folder,
                      const std::function<QString()> &nextName)
{
    int error = EEXIST;
    while (error == EEXIST) {
        *folder = QDir(parent).filePath(nextName());
        const int made = ::mkdir(QFile::encodeName(*folder).constData(), PRIVATE_FOLDER_MODE);
        error = made == 0 ? 0 : errno;
    }
    if (error == 0)
        return {};
    return filledIn(tr("The folder %1 could not be made: %2."), QDir::toNativeSeparators(*folder),
                    systemError(error));
}

} // namespace

QString obstacleTo(const QString &folder, const QStringList &names, ExistingFiles existing)
{
    QString problem = obstacleToFolder(folder);
    if (!problem.isEmpty())
        return problem;
    QStringList present;
    for (const QString &name : names) {
        const QFileInfo file(QDir(folder).filePath(name));
        if (file.isDir() && !file.isSymLink()) {
            return tr("%1 is a folder, where a file must be written. Choose another folder.")
                .arg(QDir::toNativeSeparators(file.filePath()));
        }
        if (isThere(file))
            present << name;
    }
    if (present.isEmpty() || existing == ExistingFiles::REPLACE)
        return {};
    return filledIn(tr("The folder %1 already holds %2, and nothing is overwritten. Choose another "
                       "folder, or replace the card in it with --force."),
                    QDir::toNativeSeparators(folder), present.join(tr(", ")));
}

QString writeFileSet(const QString &folder, const QVector<NamedContent> &files,
                     ExistingFiles existing)
{
    const DelayedEnd delayedEnd;
    QStringList made;
    QString problem = makeFolders(folder, &made);
    if (problem.isEmpty())
        problem = changeFilesInTurn(folder, files, existing);
    if (!problem.isEmpty())
        removeFolders(made);
    return problem;
}

QString makePrivateFolder(const QString &folder)
{
    QStringList made;
    QString problem = makeFolders(folder, &made);
    if (!problem.isEmpty())
        removeFolders(made);
    return problem;
}

QString makeNextNumberedFolder(const QString &parent, QString *folder)
{
    constexpr int DIGITS = 4;
    const QRegularExpression number(QStringLiteral("^[0-9]{4,9}$"));
    int highest = 0;
    const QStringList names = QDir(parent).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        if (number.match(name).hasMatch())
            highest = std::max(highest, name.toInt());
    }

    // Another program may number folders here too.
    return makeFirstFree(parent, folder, [&] {
        return QStringLiteral("%1").arg(++highest, DIGITS, 10, QLatin1Char('0'));
    });
}

QString makeNewFolder(const QString &parent, const QString &name, QString *folder)
{
    int copy = 0;
    return makeFirstFree(parent, folder, [&] {
        return ++copy == 1 ? name : QStringLiteral("%1 (%2)").arg(name).arg(copy);
    });
}

} // namespace app
