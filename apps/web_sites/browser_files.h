#pragma once

// The browsers that let listed sites read cards, and the files by which each does.

#include <optional>

#include <QString>
#include <QVector>

namespace app
{

struct Browser {
    QString name;
    bool isFirefox = false;
    QString installation; ///< the policy or link by which it has the extension
    QString hostFile;     ///< the file by which it finds the host: {"path": ...}
};

/** With their files below the folder `root`: none but in tests. */
QVector<Browser> browsers(const QString &root = {});

/** Nothing when there is none of this name. */
std::optional<Browser> findBrowser(const QString &name, const QString &root = {});

} // namespace app
