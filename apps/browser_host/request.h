#pragma once

// What the extension asks for: the page's origin, as the browser says it, and the page's own words.
//
//   {"origin": "https://pms.example",
//    "request": {"include": ["photo", "pictures"], "timeout": 10, "language": "zh-CN"}}
//
// All keys must be there, and no others.

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace app
{

struct Request {
    /** The longest time that a page may ask for. */
    static constexpr int LONGEST_TIMEOUT_SECONDS = 120;

    QString origin;
    QStringList include; ///< of "photo" and "pictures", which are all that a page may have
    int timeoutSeconds = 0;
    QString language; ///< a tag such as "zh-CN": letters, digits and hyphens

    QString problem; ///< what is wrong, a sentence; the rest is then not to be used
};

Request parseRequest(const QByteArray &body);

} // namespace app
