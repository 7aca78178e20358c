#include "apps/card/file_set.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <vector>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QtDebug>

#include <sys/stat.h>
#include <unistd.h>

namespace app
{

namespace
{

constexpr mode_t PRIVATE_FOLDER_MODE = 0700;

QString systemError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

bool isThere(const QFileInfo &info)
{
    return info.exists() || info.isSymLink();
}

/** Removes the folders it has made unless they are kept. */
class NewFolders
{
public:
    NewFolders() = default;
    NewFolders(const NewFolders &) = delete;
    NewFolders(NewFolders &&) = delete;
    NewFolders &operator=(const NewFolders &) = delete;
    NewFolders &operator=(NewFolders &&) = delete;
    ~NewFolders()
    {
        for (auto it = m_made.rbegin(); it != m_made.rend(); ++it)
            ::rmdir(it->constData());
    }

    QString make(const QString &folder)
    {
        const QString path = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
        QStringList missing;
        QString above = path;
        while (!isThere(QFileInfo(above))) {
            missing.prepend(above);
            above = QFileInfo(above).path();
        }
        for (const QString &part : missing) {
            const QByteArray name = QFile::encodeName(part);
            if (::mkdir(name.constData(), PRIVATE_FOLDER_MODE) != 0)
                return problem(part, systemError(errno));
            m_made.push_back(name);
        }
        if (!QFileInfo(path).isDir())
            return problem(path, QStringLiteral("there is something else of that name"));
        return {};
    }

    void keep() { m_made.clear(); }

private:
    static QString problem(const QString &folder, const QString &reason)
    {
        return QStringLiteral("The folder %1 could not be made: %2. Choose another folder.")
            .arg(QDir::toNativeSeparators(folder), reason);
    }

    std::vector<QByteArray> m_made;
};

/**
 * One file on its way: first written whole under a passing name, then put in its place, where what
 * stood there is kept under another passing name until all files are in their places.
 */
class FileChange
{
public:
    FileChange(const QString &folder, const NamedContent &file)
        : m_path(QDir(folder).filePath(file.name)), m_content(file.content),
          m_passing(QDir(folder).filePath(QStringLiteral(".%1.XXXXXX").arg(file.name)))
    {
    }
    FileChange(const FileChange &) = delete;
    FileChange(FileChange &&) = delete;
    FileChange &operator=(const FileChange &) = delete;
    FileChange &operator=(FileChange &&) = delete;
    ~FileChange()
    {
        m_passing.close(); // a file that cannot be flushed is not removed at once
        if (m_isOpened && !m_isInPlace && !m_passing.remove())
            tellLeftOver(m_passing.fileName(), m_passing.errorString());
    }

    QString prepare()
    {
        m_isOpened = m_passing.open();
        if (!m_isOpened)
            return problem(m_passing.errorString());
        if (m_content.isNull())
            return {};
        if (m_passing.write(m_content) != m_content.size() || !m_passing.flush())
            return problem(m_passing.errorString());
        if (::fsync(m_passing.handle()) != 0 && errno != EINVAL)
            return problem(systemError(errno));
        return {};
    }

    QString putInPlace(ExistingFiles existing)
    {
        if (existing == ExistingFiles::REPLACE && isThere(QFileInfo(m_path))) {
            const QString name = m_passing.fileName();
            if (name.isEmpty())
                return problem(systemError(errno));
            const QString aside = name + QStringLiteral(".old");
            if (::rename(QFile::encodeName(m_path).constData(),
                         QFile::encodeName(aside).constData()) != 0)
                return problem(systemError(errno));
            m_oldFile = aside;
        }
        if (m_content.isNull())
            return {};
        // Replaces nothing, not even a file that has appeared just now. QFile::rename would copy
        // what cannot be renamed, and not see that a full disk has cut the copy off.
        if (!m_passing.rename(m_path))
            return problem(m_passing.errorString());
        m_passing.setAutoRemove(false);
        m_isInPlace = true;
        return {};
    }

    void undo()
    {
        QFile placed(m_path);
        if (m_oldFile.isEmpty() && m_isInPlace && !placed.remove())
            tellLeftOver(m_path, placed.errorString());
        if (!m_oldFile.isEmpty() && ::rename(QFile::encodeName(m_oldFile).constData(),
                                             QFile::encodeName(m_path).constData()) != 0)
            qCritical("%s", qUtf8Printable(QStringLiteral("The earlier file %1 is now %2: %3. "
                                                          "Rename it.")
                                               .arg(QDir::toNativeSeparators(m_path),
                                                    QDir::toNativeSeparators(m_oldFile),
                                                    systemError(errno))));
    }

    void finish()
    {
        QFile old(m_oldFile);
        if (!m_oldFile.isEmpty() && !old.remove())
            tellLeftOver(m_oldFile, old.errorString());
    }

private:
    /** What somebody's card holds must not lie around. */
    static void tellLeftOver(const QString &path, const QString &reason)
    {
        qCritical("%s", qUtf8Printable(QStringLiteral("The file %1 could not be removed: %2. "
                                                      "Remove it.")
                                           .arg(QDir::toNativeSeparators(path), reason)));
    }

    QString problem(const QString &reason) const
    {
        return QStringLiteral("The file %1 could not be written: %2. Free space, see who may "
                              "write there, or choose another folder.")
            .arg(QDir::toNativeSeparators(m_path), reason);
    }

    QString m_path;
    QByteArray m_content;
    QTemporaryFile m_passing;
    QString m_oldFile;
    bool m_isOpened = false;
    bool m_isInPlace = false;
};

using FileChanges = std::vector<std::unique_ptr<FileChange>>;

QString putAllInPlace(const FileChanges &changes, ExistingFiles existing)
{
    for (const auto &change : changes) {
        QString problem = change->putInPlace(existing);
        if (!problem.isEmpty()) {
            std::for_each(changes.rbegin(), changes.rend(),
                          [](const auto &undone) { undone->undo(); });
            return problem;
        }
    }
    for (const auto &change : changes)
        change->finish();
    return {};
}

} // namespace

QString obstacleTo(const QString &folder, const QStringList &names, ExistingFiles existing)
{
    const QFileInfo info(folder);
    if (!isThere(info))
        return {};
    if (!info.isDir()) {
        return QStringLiteral("%1 is not a folder. Choose another folder.")
            .arg(QDir::toNativeSeparators(folder));
    }
    QStringList present;
    for (const QString &name : names) {
        const QFileInfo file(QDir(folder).filePath(name));
        if (file.isDir() && !file.isSymLink()) {
            return QStringLiteral("%1 is a folder, where a file must be written. Choose another "
                                  "folder.")
                .arg(QDir::toNativeSeparators(file.filePath()));
        }
        if (isThere(file))
            present << name;
    }
    if (present.isEmpty() || existing == ExistingFiles::REPLACE)
        return {};
    return QStringLiteral("The folder %1 already holds %2, and nothing is overwritten. Choose "
                          "another folder, or replace the card in it with --force.")
        .arg(QDir::toNativeSeparators(folder), present.join(QStringLiteral(", ")));
}

QString writeFileSet(const QString &folder, const QVector<NamedContent> &files,
                     ExistingFiles existing)
{
    QStringList names;
    for (const NamedContent &file : files)
        names << file.name;
    QString obstacle = obstacleTo(folder, names, existing);
    if (!obstacle.isEmpty())
        return obstacle;

    NewFolders newFolders;
    QString problem = newFolders.make(folder);
    if (!problem.isEmpty())
        return problem;

    FileChanges changes; // after `newFolders`: the passing files go before their folder
    for (const NamedContent &file : files) {
        changes.push_back(std::make_unique<FileChange>(folder, file));
        problem = changes.back()->prepare();
        if (!problem.isEmpty())
            return problem;
    }
    problem = putAllInPlace(changes, existing);
    if (problem.isEmpty())
        newFolders.keep();
    return problem;
}

QString makePrivateFolder(const QString &folder)
{
    NewFolders newFolders;
    QString problem = newFolders.make(folder);
    if (problem.isEmpty())
        newFolders.keep();
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

    int error = EEXIST;
    while (error == EEXIST) { // another program may number folders here too
        ++highest;
        *folder =
            QDir(parent).filePath(QStringLiteral("%1").arg(highest, DIGITS, 10, QLatin1Char('0')));
        const int made = ::mkdir(QFile::encodeName(*folder).constData(), PRIVATE_FOLDER_MODE);
        error = made == 0 ? 0 : errno;
    }
    if (error == 0)
        return {};
    return QStringLiteral("The folder %1 could not be made: %2.")
        .arg(QDir::toNativeSeparators(*folder), systemError(error));
}

} // namespace app
