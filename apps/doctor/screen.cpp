// The screen that Qt has, and the resolution that it claims.

#include <cmath>

#include <QGuiApplication>
#include <QJsonArray>
#include <QScreen>

#include "apps/doctor/environment.h"
#include "apps/process/json_object.h"
#include "apps/process/screen_resolution.h"
#include "apps/process/translation.h"
#include "common/texts.h"
#include "render/makecardimg.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

QJsonArray toArray(QSizeF size)
{
    QJsonArray array;
    array << size.width() << size.height();
    return array;
}

QSizeF toSize(const QJsonValue &value)
{
    return {value.toArray().at(0).toDouble(), value.toArray().at(1).toDouble()};
}

QString sizeText(QSizeF size)
{
    return QStringLiteral("%1 x %2").arg(std::lround(size.width())).arg(std::lround(size.height()));
}

QString numberText(double number)
{
    return QString::number(number, 'f', 1).remove(QStringLiteral(".0"));
}

Finding judgedScreen(const PicturesState &pictures)
{
    const QStringList offscreen{QStringLiteral("export QT_QPA_PLATFORM=offscreen")};
    const QString display =
        tr("Run this on the counter, in the session of its desktop, where DISPLAY or "
           "WAYLAND_DISPLAY is set. Without any display, choose Qt's offscreen platform:");
    if (!pictures.hasStarted) {
        const QString platform = pictures.platform.isEmpty()
                                     ? tr("its own choice of platform")
                                     : tr("the platform \"%1\"").arg(pictures.platform);
        return {Level::FAILURE,
                filledIn(tr("Qt does not come up with %1: %2; a program that reads ends there"),
                         platform, pictures.failure),
                display, offscreen};
    }
    if (!pictures.screen) {
        return {Level::FAILURE,
                tr("Qt has no screen on the platform \"%1\": no picture can be painted")
                    .arg(pictures.runningPlatform),
                tr("Connect a screen and switch it on, or let Qt do without:"), offscreen};
    }
    if (pictures.isOffscreenChosen) {
        return {Level::WARNING,
                tr("There is no display. idcard-reader chooses Qt's platform \"offscreen\" by "
                   "itself; a host application does not come up"),
                display, offscreen};
    }
    return {Level::FINE, filledIn(tr("%1 pixels on the platform \"%2\""),
                                  sizeText(pictures.screen->pixels), pictures.runningPlatform)};
}

Finding judgedResolution(const ScreenState &screen)
{
    const QString dpi =
        std::abs(screen.dpiX - screen.dpiY) < 0.05
            ? numberText(screen.dpiX)
            : filledIn(QStringLiteral("%1 x %2"), numberText(screen.dpiX), numberText(screen.dpiY));
    const QString claim =
        filledIn(tr("%1 dpi (%2 x %3 mm)"), dpi, numberText(screen.millimetres.width()),
                 numberText(screen.millimetres.height()));
    const QString card = tr("a resident card is painted with %1 pixels").arg(sizeText(screen.card));
    const QString remedy =
        tr("Virtual machines, projectors and adapters often report a wrong size. Correct it in "
           "their settings or in those of the desktop. What X11 knows about the screen:");
    const QStringList commands{QStringLiteral("xrandr --query")};
    switch (judgedClaim({screen.dpiX, screen.dpiY, 0, screen.devicePixelRatio})) {
    case ResolutionClaim::USUAL:
        break;
    case ResolutionClaim::UNUSUAL:
        return {Level::WARNING,
                filledIn(tr("The screen claims %1, which is unusual; %2"), claim, card), remedy,
                commands};
    case ResolutionClaim::UNEVEN:
        return {Level::WARNING,
                filledIn(tr("The screen claims different resolutions across and down, %1; pictures "
                            "go by the first: %2"),
                         claim, card),
                remedy, commands};
    case ResolutionClaim::IMPOSSIBLE:
        return {Level::FAILURE,
                filledIn(tr("The screen claims %1, which no screen has; %2"), claim, card), remedy,
                commands};
    }
    return {Level::FINE, filledIn(tr("%1; %2"), claim, card)};
}

} // namespace

JsonObject describeScreen()
{
    JsonObject values{{"platform", QGuiApplication::platformName()}};
    const QScreen *const screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return values;
    // JSON has no infinity, which a screen without a size gives; it comes back as 0.
    const QSizeF card = MakeCardImg::getCardRealPixelSize();
    values["screen"] = JsonObject{{"pixels", toArray(screen->size())},
                                  {"millimetres", toArray(screen->physicalSize())},
                                  {"dpiX", screen->physicalDotsPerInchX()},
                                  {"dpiY", screen->physicalDotsPerInchY()},
                                  {"devicePixelRatio", screen->devicePixelRatio()},
                                  {"card", toArray(card)}};
    return values;
}

void takeScreen(const QJsonObject &values, PicturesState *pictures)
{
    pictures->hasStarted = true;
    pictures->runningPlatform = values["platform"].toString();
    if (!values.contains("screen"))
        return;
    const QJsonObject screen = values["screen"].toObject();
    pictures->screen = ScreenState{
        toSize(screen["pixels"]),  toSize(screen["millimetres"]),         screen["dpiX"].toDouble(),
        screen["dpiY"].toDouble(), screen["devicePixelRatio"].toDouble(), toSize(screen["card"])};
}

Findings checkScreen(const Environment &environment)
{
    return {judgedScreen(environment.pictures)};
}

Findings checkResolution(const Environment &environment)
{
    if (!environment.pictures.screen)
        return {};
    return {judgedResolution(*environment.pictures.screen)};
}

} // namespace app::doctor
