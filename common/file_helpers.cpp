// What the library does with files: writes bytes, and asks for, renames and removes files.

#include "common/common.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>

#include <QByteArray>
#include <QFile>
#include <QtDebug>

namespace
{

/** Opens `path` for writing, empty; -1 when that fails. A new file is its owner's alone. */
int openForWriting(const QString &path)
{
    return ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC,
                  S_IRUSR | S_IWUSR);
}

} // namespace

void CCommon::saveByteDataToFile(unsigned char *data, int len, QString path)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), std::max(len, 0));
    const int descriptor = openForWriting(path);
    QFile file;
    // Unbuffered: only then the count tells what has reached the file.
    if (descriptor < 0 || !file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered,
                                     QFileDevice::AutoCloseHandle)) {
        qCritical("Failed to open the file for writing.");
        return;
    }
    const qint64 written = std::max(file.write(bytes), qint64{0});
    file.close();
    if (written == len)
        qDebug() << "Successfully wrote" << written << "bytes to the file.";
    else
        qDebug() << "wrote" << written << "bytes to the file, "
                 << "want to write " << len << "bytes to the file.";
}

bool CCommon::fileExist(QString path)
{
    return QFile::exists(path);
}

bool CCommon::fileRename(QString from, QString to)
{
    const bool renamed = QFile::rename(from, to);
    if (!renamed)
        qDebug("rename fail!");
    return renamed;
}

bool CCommon::fileRemove(QString path)
{
    return QFile::exists(path) && QFile::remove(path);
}
