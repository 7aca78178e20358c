#pragma once

// What lets web pages read cards: the list of their sites, and the browsers' files.

#include <QString>
#include <QVector>

#include "apps/doctor/finding.h"
#include "apps/process/json_object.h"
#include "apps/web_sites/origin_list.h"

namespace app::doctor
{

struct BrowserState {
    QString name;
    QString hostFile;
    QString host; ///< the program that the file names; empty: it is missing
    bool canHostStart = false;
};

struct WebPagesState {
    bool isListThere = false; ///< otherwise nothing for web pages is installed
    OriginList list;
    QVector<BrowserState> browsers; ///< that have the extension
    JsonObject lastAnswer;          ///< of the host, to this user's browser; empty: none
    QStringList sitesLeftOut;       ///< listed ones that no browser's extension was made for
};

/** Of the list, which must belong to `owner`, and of the browsers' files below `root`. */
WebPagesState probeWebPages(const QString &listPath, uid_t owner, const QString &root = {});

/** Nothing where nothing for web pages is installed. */
Findings checkWebPages(const Environment &environment);

} // namespace app::doctor
