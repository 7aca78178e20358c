#include "apps/doctor/shipped_files.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include "apps/process/link_target.h"

namespace app::doctor
{

namespace
{

QString programFolder()
{
    return QFileInfo(linkTarget(QStringLiteral("/proc/self/exe"))).path();
}

} // namespace

QString shippedFile(const QString &folder, const QString &installed)
{
    const QString inBuild =
        QStringLiteral("../packaging/") + installed.section(QLatin1Char('/'), -1);
    for (const QString &place : {inBuild, installed}) {
        const QFileInfo file(QDir(folder).filePath(place));
        if (file.isFile())
            return file.canonicalFilePath();
    }
    return {};
}

QString shippedAccessProgram()
{
    return shippedFile(programFolder(), QStringLiteral(IDCARD_INSTALLED_ACCESS_PROGRAM));
}

QString shippedFontChoice()
{
    return shippedFile(programFolder(), QStringLiteral(IDCARD_INSTALLED_FONT_CHOICE));
}

} // namespace app::doctor
