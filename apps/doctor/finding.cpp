#include "apps/doctor/finding.h"

#include <QRegularExpression>
#include <QVariant>

namespace app::doctor
{

QStringList texts(const QJsonValue &array)
{
    return array.toVariant().toStringList();
}

QString quoted(const QString &path)
{
    static const QRegularExpression plain(QStringLiteral("\\A[\\w./+@:,-]+\\z"));
    if (plain.match(path).hasMatch())
        return path;
    return QLatin1Char('\'') + QString(path).replace(QLatin1Char('\''), QLatin1String("'\\''")) +
           QLatin1Char('\'');
}

} // namespace app::doctor
