#include "apps/card/version_text.h"

#include "api/idcard_reader_api.h"

namespace app
{

QString versionText(const QString &program)
{
    return QStringLiteral("%1 %2\nlibrary %3\n")
        .arg(program, QStringLiteral(IDCARD_VERSION), QString::fromStdString(getSDKVersion()));
}

} // namespace app
