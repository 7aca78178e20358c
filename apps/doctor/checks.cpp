#include "apps/doctor/checks.h"

#include <algorithm>

namespace app::doctor
{

const std::vector<CheckRow> &checkTable()
{
    static const std::vector<CheckRow> rows = {
        {"library-version", "Library", Group::General, true, true, checkLibraryVersion},
        {"qt-version", "Qt", Group::General, true, true, checkQtVersion},
        {"locale", "Locale", Group::General, true, true, checkLocale},
        {"reader-library", "Maker's library", Group::Library, true, false, checkReaderLibrary},
        {"usb-reader", "Reader", Group::Usb, false, true, checkReader},
        {"usb-permission", "Permission", Group::Usb, false, true, checkPermission},
        {"usb-rule", "udev rule", Group::Usb, false, true, checkRule},
        {"usb-group", "Group", Group::Usb, false, true, checkGroup},
        {"usb-driver", "Kernel driver", Group::Usb, false, true, checkDriver},
        {"usb-holder", "In use", Group::Usb, false, true, checkHolder},
        {"photo-decoder", "Photo decoder", Group::Photos, true, true, checkPhotoDecoder},
        {"screen", "Screen", Group::Pictures, true, false, checkScreen},
        {"resolution", "Resolution", Group::Pictures, true, false, checkResolution},
        {"jpeg", "JPEG", Group::Pictures, true, false, checkJpeg},
        {"text-font", "Font of texts", Group::Pictures, true, false, checkTextFont},
        {"number-font", "Font of number", Group::Pictures, true, false, checkNumberFont},
    };
    return rows;
}

const std::vector<GroupRow> &groupTable()
{
    static const std::vector<GroupRow> rows = {
        {Group::General, "general", "General"},
        {Group::Library, "library", "Reading through the maker's library"},
        {Group::Usb, "usb", "Reading over USB"},
        {Group::Photos, "photos", "Photos, by either road"},
        {Group::Pictures, "pictures", "Pictures of the card"},
    };
    return rows;
}

bool isNeeded(const CheckRow &row, Roads roads)
{
    return roads == Roads::Both || (roads == Roads::Usb ? row.isForUsb : row.isForLibrary);
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
    Level worst = Level::Fine;
    for (const CheckedFinding &one : findings)
        worst = std::max(worst, one.finding.level);
    return worst;
}

} // namespace app::doctor
