#include "apps/web_sites/browser_files.h"

#include <QRegularExpression>

namespace app
{

namespace
{

const QLatin1String HOST_FILE("/native-messaging-hosts/" IDCARD_BROWSER_HOST_NAME ".json");

} // namespace

QString extensionsFolder(const QString &root)
{
    return root + QStringLiteral(IDCARD_BROWSER_EXTENSIONS);
}

QVector<Browser> browsers(const QString &root)
{
    const QString extensions = extensionsFolder(root);
    return {{QStringLiteral("chromium"), false,
             root + QStringLiteral("/etc/chromium/policies/managed/idcard-reader.json"),
             root + QStringLiteral("/etc/chromium") + HOST_FILE,
             extensions + QStringLiteral("/chromium")},
            // The folder of extensions for everybody, and in it that of Firefox.
            {QStringLiteral("firefox"), true,
             root + QStringLiteral("/usr/share/mozilla/extensions/"
                                   "{ec8030f7-c20a-464f-9b0e-13a3a9e97384}/" IDCARD_FIREFOX_ID),
             root + QStringLiteral("/usr/lib/mozilla") + HOST_FILE,
             extensions + QStringLiteral("/firefox")}};
}

std::optional<Browser> findBrowser(const QString &name, const QString &root)
{
    for (const Browser &browser : browsers(root)) {
        if (browser.name == name)
            return browser;
    }
    return std::nullopt;
}

QString patternOf(QString origin, const Browser &browser)
{
    static const QRegularExpression port(QStringLiteral(":[0-9]+\\z"));
    if (browser.isFirefox)
        origin.remove(port);
    else if (!origin.contains(port))
        origin += QLatin1String(origin.startsWith(QLatin1String("https:")) ? ":443" : ":80");
    return origin + QStringLiteral("/*");
}

} // namespace app
