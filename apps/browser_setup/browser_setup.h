#pragma once

// What lets the pages of a site read cards in a browser: the list of the sites, the extension for
// them, the file by which the browser finds the host, and the policy that installs the extension.
// Each is a file of this program's own.

#include <QString>
#include <QStringList>

#include <sys/types.h>

#include "apps/web_sites/browser_files.h"

namespace app
{

struct SetupPlaces {
    QString originList;
    QString shipped;        ///< the folder of the extensions, the key and the hosts' files
    QString root;           ///< below which the browsers' files are; empty but in tests
    QString browserProgram; ///< Chromium, which packs its extension
    /** A browser that runs takes a policy's removal in within this time. */
    unsigned long policyReloadMs = 10000;
};

/** Lets the pages of this site read cards, too. Returns what failed, or an empty text. */
QString allowSite(const QString &origin, const Browser &browser, const SetupPlaces &places);

/**
 * Makes the extension again for the listed sites, in every browser that has it. Returns what
 * failed, a line each, or an empty text.
 */
QString renewExtensions(const SetupPlaces &places);

/** Takes everything back, and all sites. Returns what failed, or an empty text. */
QString removeSites(const SetupPlaces &places);

/** The sites and the files, a line each. The list must belong to `listOwner`. */
QString shownSetup(const SetupPlaces &places, uid_t listOwner);

/** The files of others that set the same policy: of these the browser takes one alone. */
QStringList rivalPolicies(const Browser &browser);

} // namespace app
