#pragma once

// What lets web pages read cards: the list of their sites, and the browser's files.

#include <QString>

#include "apps/doctor/finding.h"
#include "apps/web_sites/origin_list.h"

namespace app::doctor
{

struct WebPagesState {
    QString listPath;
    bool isListThere = false; ///< otherwise nothing for web pages is installed
    OriginList list;
    QString policyFile;
    bool isPolicyThere = false;
    QString hostFile;
    QString host; ///< the program that the file names; empty: it is missing
    bool canHostStart = false;
    JsonObject lastAnswer; ///< of the host, to this user's browser; empty: none
};

/** Of the list, which must belong to `owner`, and of the files below the browser's own folder. */
WebPagesState probeWebPages(const QString &listPath, uid_t owner, const QString &browserFolder);

/** Nothing where nothing for web pages is installed. */
Findings checkWebPages(const Environment &environment);

} // namespace app::doctor
