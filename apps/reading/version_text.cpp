#include "apps/reading/version_text.h"

#include "api/idcard_reader_api.h"
#include "common/texts.h"

namespace app
{

QString versionText(const QString &program)
{
    return filledIn(QStringLiteral("%1 %2\nlibrary %3\n"), program, QStringLiteral(IDCARD_VERSION),
                    QString::fromStdString(getSDKVersion()));
}

} // namespace app
