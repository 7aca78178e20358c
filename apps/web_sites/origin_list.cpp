#include "apps/web_sites/origin_list.h"

#include <cerrno>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

#include <arpa/inet.h>
#include <sys/stat.h>

#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Browser)

constexpr qint64 LARGEST_LIST = 65536;
constexpr int LONGEST_QUOTE = 60;
constexpr int LONGEST_HOST = 253;

OriginList refused(const QString &mistake)
{
    return {{}, mistake};
}

/** What keeps the open file from being believed; empty: nothing. */
QString distrustOf(int descriptor, const QString &path, uid_t owner)
{
    struct stat state = {};
    if (::fstat(descriptor, &state) != 0)
        return filledIn(tr("%1 cannot be read: %2."), path, systemError(errno));
    if (state.st_uid != owner)
        return filledIn(tr("%1 belongs to the user with the number %2, not to %3."), path,
                        QString::number(state.st_uid), QString::number(owner));
    if ((state.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        return tr("%1 can be written by others than its owner.").arg(path);
    if (state.st_size > LARGEST_LIST)
        return tr("%1 is larger than %2 bytes.").arg(path).arg(LARGEST_LIST);
    return {};
}

OriginList parsed(const QByteArray &content, const QString &path)
{
    OriginList list;
    int number = 0;
    for (const QByteArray &line : content.split('\n')) {
        ++number;
        const QString text = QString::fromUtf8(line).trimmed();
        if (text.isEmpty() || text.startsWith(QLatin1Char('#')))
            continue;
        if (!isOrigin(text))
            return refused(
                filledIn(tr("%1, line %2: \"%3\" is no origin, such as https://pms.example or "
                            "https://pms.example:8443."),
                         path, QString::number(number), printable(text.left(LONGEST_QUOTE))));
        list.origins << text;
    }
    return list;
}

/**
 * Browsers take a host that ends in a number for an address, in this form alone. One that ends in a
 * dot is another site to them than the one without; it is none of ours.
 */
bool isHost(const QString &host)
{
    static const QRegularExpression number(QStringLiteral("(?:\\A|\\.)(?:[0-9]*|0x[0-9a-f]*)\\z"));
    in_addr address = {};
    return host.size() <= LONGEST_HOST &&
           (!number.match(host).hasMatch() ||
            ::inet_pton(AF_INET, host.toLatin1().constData(), &address) == 1);
}

} // namespace

bool isOrigin(const QString &text)
{
    const QUrl url(text, QUrl::StrictMode);
    const QString host = url.host(QUrl::FullyEncoded);
    const bool isHttps = url.scheme() == QLatin1String("https");
    const int usualPort = isHttps ? 443 : 80;
    QUrl origin; // as it is written: in lower case, with the address in its shortest form
    origin.setScheme(url.scheme());
    origin.setHost(host);
    origin.setPort(url.port());
    return origin.toString(QUrl::FullyEncoded) == text &&
           (isHttps || url.scheme() == QLatin1String("http")) && isHost(host) && url.port() != 0 &&
           url.port() != usualPort;
}

QString originListPath()
{
    return QStringLiteral(IDCARD_ORIGIN_LIST);
}

OriginList readOriginList(const QString &path, uid_t owner)
{
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile()) // opening it could wait for ever
        return refused(tr("%1 is no file.").arg(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return refused(
            filledIn(tr("%1 cannot be read: %2."), path, translatedSystemText(file.errorString())));
    const QString distrust = distrustOf(file.handle(), path, owner);
    if (!distrust.isEmpty())
        return refused(distrust);
    return parsed(file.read(LARGEST_LIST + 1), path);
}

} // namespace app
