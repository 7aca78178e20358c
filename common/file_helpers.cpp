// What the library does with files: writes bytes, and asks for, renames and removes files.

#include "common/common.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>

#include "common/cancellation.h"
#include "common/debug_log.h"
#include "common/write_all.h"

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
    const CancellationHold hold; // a file is written whole
    const int descriptor = openForWriting(path);
    if (descriptor < 0) {
        criticalLine("Failed to open the file for writing.");
        return;
    }
    // Nothing from here to the end may throw, or the file would stay open.
    const auto written =
        static_cast<qint64>(writeAll(descriptor, data, static_cast<std::size_t>(std::max(len, 0))));
    ::close(descriptor);
    if (written == len)
        debugLine("Successfully wrote %lld bytes to the file.", written);
    else
        debugLine("wrote %lld bytes to the file,  want to write  %d bytes to the file.", written,
                  len);
}

bool CCommon::fileExist(QString path)
{
    return QFile::exists(path);
}

bool CCommon::fileRename(QString from, QString to)
{
    const CancellationHold hold; // to another file system Qt copies
    const bool renamed = QFile::rename(from, to);
    if (!renamed)
        debugLine("rename fail!");
    return renamed;
}

bool CCommon::fileRemove(QString path)
{
    return QFile::exists(path) && QFile::remove(path);
}
