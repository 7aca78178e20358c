#include "apps/web_sites/origin_list.h"

#include <cerrno>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <arpa/inet.h>
#include <sys/stat.h>

#include "apps/process/text_layout.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Browser)

constexpr qint64 LARGEST_LIST = 65536;
constexpr int LONGEST_QUOTE = 60;
constexpr int HIGHEST_PORT = 65535;

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

/** Browsers take a host that ends in a number for an address, in this form alone. */
bool isHost(const QString &host)
{
    static const QRegularExpression number(QStringLiteral("(?:\\A|\\.)(?:[0-9]+|0x[0-9a-f]*)\\z"));
    in_addr address = {};
    return !number.match(host).hasMatch() ||
           ::inet_pton(AF_INET, host.toLatin1().constData(), &address) == 1;
}

} // namespace

bool isOrigin(const QString &text)
{
    constexpr int LONGEST_HOST = 253;
    static const QRegularExpression form(QStringLiteral(
        "\\A(https?)://"
        "((?:[a-z0-9_](?:[a-z0-9_-]*[a-z0-9_])?\\.)*[a-z0-9_](?:[a-z0-9_-]*[a-z0-9_])?"
        "|\\[[0-9a-f:]+\\])"
        "(?::([1-9][0-9]{0,4}))?\\z"));
    const QRegularExpressionMatch match = form.match(text);
    const int usualPort = match.captured(1) == QLatin1String("https") ? 443 : 80;
    const int port = match.captured(3).toInt();
    return match.hasMatch() && match.capturedLength(2) <= LONGEST_HOST &&
           isHost(match.captured(2)) && port <= HIGHEST_PORT && port != usualPort;
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
