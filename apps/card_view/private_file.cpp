#include "apps/card_view/private_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>

#include "common/texts.h"

namespace viewer
{

namespace
{

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(PrivateFile)
};

} // namespace

bool writePrivateFile(const QString &path, const QByteArray &content, QString *problem)
{
    // Flushed before it gets its name: QSaveFile::commit() does not see that a full disk has taken
    // less than is still in the buffer.
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) &&
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) &&
        file.write(content) == content.size() && file.flush() && file.commit())
        return true;
    *problem = filledIn(
        Texts::tr("The file %1 could not be written: %2. Free space, see who may write there, "
                  "or choose another folder."),
        QDir::toNativeSeparators(path), file.errorString());
    return false;
}

} // namespace viewer
