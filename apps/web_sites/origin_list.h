#pragma once

// The sites that may read cards: the administrator's list, one origin a line, with comment lines
// that begin with #.

#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace app
{

/** Where root has the list of this machine. */
QString originListPath();

struct OriginList {
    QStringList origins;
    QString mistake; ///< why the list is refused as a whole, a sentence that names the file
};

/**
 * Reads the list, which must belong to `owner` and be writable by nobody else. One line that is not
 * an origin refuses the whole list: what the administrator meant is not known.
 */
OriginList readOriginList(const QString &path, uid_t owner);

/**
 * Whether this is an origin as browsers write it: "https" or "http", "://", the host, and the port
 * unless it is the scheme's own. Nothing else is one: no path, no pattern, no upper case.
 */
bool isOrigin(const QString &text);

} // namespace app
