#include "apps/reading/version_text.h"

#include "api/idcard_reader_api.h"

namespace app
{

QString versionText()
{
    return QStringLiteral(IDCARD_VERSION "\nlibrary ") + QString::fromStdString(getSDKVersion());
}

} // namespace app
