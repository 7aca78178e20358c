#include "apps/doctor/checks.h"

#include <algorithm>

#include "apps/process/translation.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

constexpr Group GENERAL = {"general", QT_TR_NOOP("General")};
constexpr Group LIBRARY = {"library", QT_TR_NOOP("Reading through the maker's library")};
constexpr Group USB = {"usb", QT_TR_NOOP("Reading over USB")};
constexpr Group PHOTOS = {"photos", QT_TR_NOOP("Photos, by either road")};
constexpr Group PICTURES = {"pictures", QT_TR_NOOP("Pictures of the card")};
constexpr Group WEB = {"web", QT_TR_NOOP("Web pages")};
constexpr Group SERVICE = {"service", QT_TR_NOOP("Reading through the D-Bus service")};

bool isNeeded(const CheckRow &row, Roads roads)
{
    return roads == Roads::BOTH || (roads == Roads::USB ? row.isForUsb : row.isForLibrary);
}

} // namespace

const std::vector<CheckRow> &checkTable()
{
    static const std::vector<CheckRow> rows = {
        {"library-version", QT_TR_NOOP("Library"), &GENERAL, true, true, checkLibraryVersion},
        {"qt-version", QT_TR_NOOP("Qt"), &GENERAL, true, true, checkQtVersion},
        {"locale", QT_TR_NOOP("Locale"), &GENERAL, true, true, checkLocale},
        {"configuration", QT_TR_NOOP("Configuration"), &GENERAL, true, true, checkConfiguration},
        {"reader-library", QT_TR_NOOP("Maker's library"), &LIBRARY, true, false,
         checkReaderLibrary},
        {"usb-reader", QT_TR_NOOP("Reader"), &USB, false, true, checkReader},
        {"usb-permission", QT_TR_NOOP("Permission"), &USB, false, true, checkPermission},
        {"usb-rule", QT_TR_NOOP("udev rule"), &USB, false, true, checkRule},
        {"usb-group", QT_TR_NOOP("Group"), &USB, false, true, checkGroup},
        {"usb-driver", QT_TR_NOOP("Kernel driver"), &USB, false, true, checkDriver},
        {"usb-holder", QT_TR_NOOP("In use"), &USB, false, true, checkHolder},
        {"photo-decoder", QT_TR_NOOP("Photo decoder"), &PHOTOS, true, true, checkPhotoDecoder},
        {"screen", QT_TR_NOOP("Screen"), &PICTURES, true, false, checkScreen},
        {"resolution", QT_TR_NOOP("Resolution"), &PICTURES, true, false, checkResolution},
        {"jpeg", QT_TR_NOOP("JPEG"), &PICTURES, true, false, checkJpeg},
        {"text-font", QT_TR_NOOP("Font of texts"), &PICTURES, true, false, checkTextFont},
        {"number-font", QT_TR_NOOP("Font of number"), &PICTURES, true, false, checkNumberFont},
        {"web-pages", QT_TR_NOOP("Sites"), &WEB, true, true, checkWebPages},
        {"service", QT_TR_NOOP("Service"), &SERVICE, true, true, checkService},
    };
    return rows;
}

std::vector<CheckedFinding> judge(const Environment &environment)
{
    std::vector<CheckedFinding> all;
    for (const CheckRow &row : checkTable()) {
        if (!isNeeded(row, environment.roads))
            continue;
        for (const Finding &finding : row.judge(environment))
            all.push_back({&row, finding});
    }
    return all;
}

Level worstOf(const std::vector<CheckedFinding> &findings)
{
    Level worst = Level::FINE;
    for (const CheckedFinding &one : findings)
        worst = std::max(worst, one.finding.level);
    return worst;
}

} // namespace app::doctor
