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
    QString extension;    ///< the folder of the extension for the sites of this machine
};

/** The folder of the browsers' extensions, which are made for the sites of this machine. */
QString extensionsFolder(const QString &root = {});

/** With their files below the folder `root`: none but in tests. */
QVector<Browser> browsers(const QString &root = {});

/** Nothing when there is none of this name. */
std::optional<Browser> findBrowser(const QString &name, const QString &root = {});

/**
 * What the extension's manifest has for the pages of an origin. Firefox has no patterns with a
 * port: the host tells ports apart.
 */
QString patternOf(QString origin, const Browser &browser);

} // namespace app
