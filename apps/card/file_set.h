#pragma once

// Writes several files into a folder so that all of them appear, complete, or none, also when
// several programs write there, or a signal ends this one. Only their owner can read them.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace app
{

struct NamedContent {
    QString name;
    QByteArray content; ///< null: no file of this name may be in the folder afterwards
};

enum class ExistingFiles { REFUSE, REPLACE };

/**
 * Says why files of these names could not be written into `folder`, as far as that shows without
 * writing; empty when nothing is in the way.
 */
QString obstacleTo(const QString &folder, const QStringList &names, ExistingFiles existing);

/**
 * Makes the folder (mode 0700, its parents too) if need be and writes the files (mode 0600).
 * Returns an empty text; or what failed, and then the folder is as it was before: new files are
 * gone, replaced and removed ones are back.
 */
QString writeFileSet(const QString &folder, const QVector<NamedContent> &files,
                     ExistingFiles existing);

/** Makes a folder of mode 0700, and its parents. Returns what failed, or an empty text. */
QString makePrivateFolder(const QString &folder);

/**
 * Makes the next numbered folder in `parent` (0001, 0002, ... after the highest that is there) and
 * puts its path into `folder`. Returns what failed, or an empty text.
 */
QString makeNextNumberedFolder(const QString &parent, QString *folder);

/**
 * Makes the folder `name` in `parent`, or "name (2)", "name (3)" ... where that is taken, and puts
 * its path into `folder`. Returns what failed, or an empty text.
 */
QString makeNewFolder(const QString &parent, const QString &name, QString *folder);

} // namespace app
