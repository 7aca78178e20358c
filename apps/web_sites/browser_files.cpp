#include "apps/web_sites/browser_files.h"

namespace app
{

QString policyFolder(const QString &browserFolder)
{
    return browserFolder + QStringLiteral("/policies/managed");
}

QString policyFile(const QString &browserFolder)
{
    return policyFolder(browserFolder) + QStringLiteral("/idcard-reader.json");
}

QString hostFileName()
{
    return QStringLiteral(IDCARD_BROWSER_HOST_NAME ".json");
}

QString hostFile(const QString &browserFolder)
{
    return browserFolder + QStringLiteral("/native-messaging-hosts/") + hostFileName();
}

} // namespace app
