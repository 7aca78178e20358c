#pragma once

// The files by which a browser lets listed sites read cards, below the browser's own folder.

#include <QString>

namespace app
{

constexpr const char *CHROMIUM_FOLDER = "/etc/chromium";

/** The folder of the policies, and the one that installs the extension. */
QString policyFolder(const QString &browserFolder);
QString policyFile(const QString &browserFolder);

/** The file by which the browser finds the host: {"path": ...}. */
QString hostFile(const QString &browserFolder);
QString hostFileName();

} // namespace app
