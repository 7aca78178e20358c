#pragma once

// What the pictures of the cards are painted with: Qt's platform and screen, its JPEG plug-in, the
// fonts. Asked in a child process, since Qt ends a process whose display it cannot use.

#include <array>
#include <optional>

#include <QSizeF>

#include "apps/doctor/child.h"
#include "apps/doctor/finding.h"
#include "apps/process/json_object.h"

namespace app::doctor
{

struct ScreenState {
    QSizeF pixels;
    QSizeF millimetres;
    double dpiX = 0;
    double dpiY = 0;
    double devicePixelRatio = 1;
    QSizeF card; ///< pixels that a card has on it
};

struct FontState {
    QString family; ///< as the pictures name it
    QString weight; ///< as they ask for it
    QString got;    ///< the family that Qt takes
    QStringList faces;
    bool isInstalled = false; ///< whether the family itself is
    bool isStandIn = false;   ///< whether it is one that the project chose
    bool hasChinese = false;
    bool isKnown = false;
    QString standIn = {}; ///< one of the project's choice that is installed; empty: none is
};

struct PicturesState {
    QString platform;               ///< of Qt, as asked for; empty: Qt chooses
    bool isOffscreenChosen = false; ///< because there is no display
    bool hasStarted = false;        ///< whether Qt comes up with it
    QString failure;                ///< why not
    QString runningPlatform;
    std::optional<ScreenState> screen;
    QByteArray log; ///< what Qt said
    bool isJpegKnown = false;
    bool canWriteJpeg = false;
    QStringList pluginFolders;
    QString jpegPlugin; ///< its file; empty when there is none
    QString jpegProblem;
    std::array<FontState, 2> fonts;   ///< of the texts and of the number
    bool isFontChoiceInForce = false; ///< whether fontconfig has the project's file
    QString shippedFontChoice; ///< a copy of it that comes with this program; empty: there is none
};

/** May choose a platform for the process. */
PicturesState probePictures();

/**
 * The work "pictures" of a child: for a folder of caches that are thrown away. Reports part after
 * part, so earlier parts are known even if the next crashes.
 */
void describePictures(const QStringList &arguments, const SendValues &send);

// Each part in a file of its own: what the child reports of it, and what the parent takes.

JsonObject describeScreen();
void takeScreen(const QJsonObject &values, PicturesState *pictures);
Findings checkScreen(const Environment &environment);
Findings checkResolution(const Environment &environment);

JsonObject describeJpeg();
void takeJpeg(const QJsonObject &values, PicturesState *pictures);
Findings checkJpeg(const Environment &environment);

/** What is known of the fonts without Qt. */
void nameFonts(PicturesState *pictures);
JsonObject describeFont(std::size_t which);
void takeFont(const QJsonObject &values, FontState *font);
Findings checkTextFont(const Environment &environment);
Findings checkNumberFont(const Environment &environment);

} // namespace app::doctor
