// Judges what the pictures of the cards are painted with.

#include "apps/doctor/judgements.h"

#include <cmath>

#include <QJsonArray>

#include "apps/card/screen_resolution.h"

namespace app::doctor
{

namespace
{

QString sizeText(QSizeF size)
{
    return QStringLiteral("%1 x %2").arg(std::lround(size.width())).arg(std::lround(size.height()));
}

QString numberText(double number)
{
    return QString::number(number, 'f', 1).remove(QStringLiteral(".0"));
}

const char *const DISPLAY_REMEDY =
    "Run this on the counter, in the session of its desktop, where DISPLAY or WAYLAND_DISPLAY is "
    "set. Without any display, tell Qt so:";
const char *const OFFSCREEN_COMMAND = "export QT_QPA_PLATFORM=offscreen";

const char *const FONTS_COMMAND = "apt-get install fontconfig fonts-noto-cjk";

/** Qt takes some font: what is missing for the one that was chosen, a font or its being chosen. */
void remedyChoice(const PicturesState &pictures, const FontState &font, Finding *finding)
{
    const bool needsChoice = !pictures.isFontChoiceInForce;
    // Where the choice is in force and does not help, none of its fonts is for this family.
    const bool needsFont = !needsChoice || font.standIn.isEmpty();
    const QString start = needsFont
                              ? QStringLiteral("Install a font for it")
                              : QStringLiteral("A font for it is installed, %1").arg(font.standIn);
    if (needsFont)
        finding->commands << QLatin1String(FONTS_COMMAND);
    QString choice;
    if (needsChoice) {
        choice = QStringLiteral("%1opy the project's fontconfig file 69-idcard-reader.conf to "
                                "/etc/fonts/conf.d")
                     .arg(QLatin1String(needsFont ? " and c" : ". C"));
        if (pictures.shippedFontChoice.isEmpty())
            choice += QStringLiteral("; it is in the project's sources, packaging/fonts");
        else
            finding->commands << QStringLiteral("cp %1 /etc/fonts/conf.d/")
                                     .arg(quoted(pictures.shippedFontChoice));
    }
    finding->remedy =
        QStringLiteral("%1%2 (docs/fonts.md), as root%3")
            .arg(start, choice, QLatin1String(finding->commands.isEmpty() ? "." : ":"));
}

Finding judgedFont(const PicturesState &pictures, const FontState &font)
{
    Finding finding;
    finding.facts = {
        {"family", font.family},           {"weight", font.weight},
        {"got", textOrNull(font.got)},     {"faces", QJsonArray::fromStringList(font.faces)},
        {"isInstalled", font.isInstalled}, {"isStandIn", font.isStandIn},
        {"hasChinese", font.hasChinese}};
    const QString wanted =
        font.weight == QLatin1String("normal") ? font.family : font.family + ' ' + font.weight;
    const QString faces = font.faces.join(QStringLiteral(", "));
    if (!font.isKnown) {
        finding.level = Level::Failure;
        finding.text = QStringLiteral("%1: not known, since Qt does not come up (%2)")
                           .arg(wanted, pictures.failure);
        finding.remedy = QStringLiteral("Do what \"Screen\" says and run this again.");
    } else if (!font.hasChinese) {
        finding.level = Level::Failure;
        finding.text = QStringLiteral("%1: no font here has the Chinese characters; the pictures "
                                      "have empty boxes in their place")
                           .arg(wanted);
        finding.remedy = QStringLiteral("Install a Chinese font (docs/fonts.md), as root:");
        finding.commands = QStringList{QLatin1String(FONTS_COMMAND)};
    } else if (font.isInstalled || font.isStandIn) {
        finding.text = font.isInstalled ? QStringLiteral("%1 is installed").arg(wanted)
                                        : QStringLiteral("%1: its stand-in %2").arg(wanted, faces);
    } else {
        finding.level = Level::Warning;
        const QString taken =
            faces.startsWith(font.got)
                ? faces
                : QStringLiteral("%1, with Chinese characters of %2").arg(font.got, faces);
        finding.text = QStringLiteral("%1: no stand-in is named, and Qt takes %2; characters may "
                                      "have another form or size than on the card")
                           .arg(wanted, taken);
        remedyChoice(pictures, font, &finding);
    }
    return finding;
}

} // namespace

Findings checkScreen(const Environment &environment)
{
    const PicturesState &pictures = environment.pictures;
    Finding finding;
    finding.facts = {
        {"platform", textOrNull(pictures.runningPlatform)},
        {"isOffscreenChosen", pictures.isOffscreenChosen},
        {"name", pictures.screen ? textOrNull(pictures.screen->name) : QJsonValue()},
        {"width", pictures.screen ? QJsonValue(pictures.screen->pixels.width()) : QJsonValue()},
        {"height", pictures.screen ? QJsonValue(pictures.screen->pixels.height()) : QJsonValue()}};
    const QString platform = pictures.platform.isEmpty()
                                 ? QStringLiteral("its own choice of platform")
                                 : QStringLiteral("the platform \"%1\"").arg(pictures.platform);
    if (!pictures.hasStarted) {
        finding.level = Level::Failure;
        finding.text = QStringLiteral("Qt does not come up with %1: %2; a program that reads ends "
                                      "there")
                           .arg(platform, pictures.failure);
        finding.remedy = QLatin1String(DISPLAY_REMEDY);
        finding.commands = QStringList{QLatin1String(OFFSCREEN_COMMAND)};
    } else if (!pictures.screen) {
        finding.level = Level::Failure;
        finding.text = QStringLiteral("Qt has no screen on the platform \"%1\": no picture can be "
                                      "painted")
                           .arg(pictures.runningPlatform);
        finding.remedy = QStringLiteral("Connect a screen and switch it on, or tell Qt to do "
                                        "without:");
        finding.commands = QStringList{QLatin1String(OFFSCREEN_COMMAND)};
    } else if (pictures.isOffscreenChosen) {
        finding.level = Level::Warning;
        finding.text = QStringLiteral("There is no display. idcard-reader chooses Qt's platform "
                                      "\"offscreen\" by itself; a host application does not come "
                                      "up");
        finding.remedy = QLatin1String(DISPLAY_REMEDY);
        finding.commands = QStringList{QLatin1String(OFFSCREEN_COMMAND)};
    } else {
        finding.text = QStringLiteral("%1 pixels on the platform \"%2\"")
                           .arg(sizeText(pictures.screen->pixels), pictures.runningPlatform);
    }
    return {finding};
}

Findings checkResolution(const Environment &environment)
{
    if (!environment.pictures.screen)
        return {};
    const ScreenState &screen = *environment.pictures.screen;
    Finding finding;
    finding.facts = {{"dpiX", screen.dpiX},
                     {"dpiY", screen.dpiY},
                     {"widthMm", screen.millimetres.width()},
                     {"heightMm", screen.millimetres.height()},
                     {"cardWidth", screen.card.width()},
                     {"cardHeight", screen.card.height()}};
    const QString size =
        QStringLiteral("%1 x %2 mm")
            .arg(numberText(screen.millimetres.width()), numberText(screen.millimetres.height()));
    const QString dpi =
        std::abs(screen.dpiX - screen.dpiY) < 0.05
            ? numberText(screen.dpiX)
            : QStringLiteral("%1 x %2").arg(numberText(screen.dpiX), numberText(screen.dpiY));
    const QString card =
        QStringLiteral("a resident card is painted with %1 pixels").arg(sizeText(screen.card));
    switch (judgedClaim({screen.dpiX, screen.dpiY, 0, screen.devicePixelRatio})) {
    case ResolutionClaim::Usual:
        finding.text = QStringLiteral("%1 dpi (%2); %3").arg(dpi, size, card);
        return {finding};
    case ResolutionClaim::Unusual:
        finding.level = Level::Warning;
        finding.text = QStringLiteral("The screen claims %1 dpi (%2), which is unusual; %3")
                           .arg(dpi, size, card);
        break;
    case ResolutionClaim::Uneven:
        finding.level = Level::Warning;
        finding.text = QStringLiteral("The screen claims different resolutions across and down, %1 "
                                      "dpi (%2); pictures go by the first: %3")
                           .arg(dpi, size, card);
        break;
    case ResolutionClaim::Impossible:
        finding.level = Level::Failure;
        finding.text = QStringLiteral("The screen claims %1 dpi (%2), which no screen has; %3")
                           .arg(dpi, size, card);
        break;
    }
    finding.remedy = QStringLiteral("Virtual machines, projectors and adapters often tell no true "
                                    "size. Correct it in their settings or in those of the "
                                    "desktop. What X11 knows of the screen:");
    finding.commands = QStringList{QStringLiteral("xrandr --query")};
    return {finding};
}

Findings checkJpeg(const Environment &environment)
{
    const PicturesState &pictures = environment.pictures;
    Finding finding;
    finding.facts = {{"canWrite", pictures.canWriteJpeg},
                     {"file", textOrNull(pictures.jpegPlugin)},
                     {"pluginFolders", QJsonArray::fromStringList(pictures.pluginFolders)}};
    if (pictures.canWriteJpeg) {
        finding.text =
            pictures.jpegPlugin.isEmpty() ? QStringLiteral("Qt can write it") : pictures.jpegPlugin;
        return {finding};
    }
    finding.level = Level::Failure;
    if (!pictures.isJpegKnown) {
        finding.text =
            QStringLiteral("Not known, since Qt does not come up (%1)").arg(pictures.failure);
        finding.remedy = QStringLiteral("Do what \"Screen\" says and run this again.");
    } else if (pictures.jpegPlugin.isEmpty()) {
        finding.text = QStringLiteral("Qt has no JPEG plug-in, imageformats/libqjpeg.so: all "
                                      "pictures come out empty; looked in %1")
                           .arg(pictures.pluginFolders.join(QStringLiteral(", ")));
        finding.remedy = QStringLiteral("Install it, as root (Debian), or put the plug-in of your "
                                        "Qt in one of these folders:");
        finding.commands = QStringList{QStringLiteral("apt-get install --reinstall libqt5gui5")};
    } else {
        finding.text =
            QStringLiteral("Qt's JPEG plug-in does not work, all pictures come out "
                           "empty: %1")
                .arg(pictures.jpegProblem.isEmpty() ? pictures.jpegPlugin : pictures.jpegProblem);
        finding.remedy = QStringLiteral("Put the plug-in of the Qt that is running in its place, "
                                        "as root (Debian):");
        finding.commands = QStringList{QStringLiteral("apt-get install --reinstall libqt5gui5")};
    }
    return {finding};
}

Findings checkTextFont(const Environment &environment)
{
    return {judgedFont(environment.pictures, environment.pictures.fonts[0])};
}

Findings checkNumberFont(const Environment &environment)
{
    return {judgedFont(environment.pictures, environment.pictures.fonts[1])};
}

} // namespace app::doctor
