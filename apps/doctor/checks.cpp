#include "apps/doctor/checks.h"

#include <algorithm>

namespace app::doctor
{

namespace
{

constexpr Group GENERAL = {"general", "General"};
constexpr Group LIBRARY = {"library", "Reading through the maker's library"};
constexpr Group USB = {"usb", "Reading over USB"};
constexpr Group PHOTOS = {"photos", "Photos, by either road"};
constexpr Group PICTURES = {"pictures", "Pictures of the card"};

bool isNeeded(const CheckRow &row, Roads roads)
{
    return roads == Roads::BOTH || (roads == Roads::USB ? row.isForUsb : row.isForLibrary);
}

} // namespace

const std::vector<CheckRow> &checkTable()
{
    static const std::vector<CheckRow> rows = {
        {"library-version", "Library", &GENERAL, true, true, checkLibraryVersion},
        {"qt-version", "Qt", &GENERAL, true, true, checkQtVersion},
        {"locale", "Locale", &GENERAL, true, true, checkLocale},
        {"reader-library", "Maker's library", &LIBRARY, true, false, checkReaderLibrary},
        {"usb-reader", "Reader", &USB, false, true, checkReader},
        {"usb-permission", "Permission", &USB, false, true, checkPermission},
        {"usb-rule", "udev rule", &USB, false, true, checkRule},
        {"usb-group", "Group", &USB, false, true, checkGroup},
        {"usb-driver", "Kernel driver", &USB, false, true, checkDriver},
        {"usb-holder", "In use", &USB, false, true, checkHolder},
        {"photo-decoder", "Photo decoder", &PHOTOS, true, true, checkPhotoDecoder},
        {"screen", "Screen", &PICTURES, true, false, checkScreen},
        {"resolution", "Resolution", &PICTURES, true, false, checkResolution},
        {"jpeg", "JPEG", &PICTURES, true, false, checkJpeg},
        {"text-font", "Font of texts", &PICTURES, true, false, checkTextFont},
        {"number-font", "Font of number", &PICTURES, true, false, checkNumberFont},
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
