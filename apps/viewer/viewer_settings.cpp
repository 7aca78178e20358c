#include "apps/viewer/viewer_settings.h"

#include <algorithm>
#include <array>

#include <QSettings>

namespace viewer
{

namespace
{

template <typename Value>
struct Word {
    Value value;
    const char *word;
};

constexpr std::array<Word<app::ReaderRoad>, 5> ROADS = {{
    {app::ReaderRoad::CONFIGURED, "configured"},
    {app::ReaderRoad::LIBRARY, "library"},
    {app::ReaderRoad::USB, "usb"},
    {app::ReaderRoad::SERVICE, "service"},
    {app::ReaderRoad::SIMULATOR, "simulator"},
}};
constexpr std::array<Word<PreviousCard>, 3> PREVIOUS_CARDS = {{
    {PreviousCard::FADED, "faded"},
    {PreviousCard::FADED_A_WHILE, "faded-a-while"},
    {PreviousCard::CLEARED, "cleared"},
}};
constexpr std::array<Word<FolderNames>, 2> FOLDER_NAMES = {{
    {FolderNames::NUMBERS, "numbers"},
    {FolderNames::HOLDERS, "holders"},
}};

/** In UTF-8, as administrators write it. */
class SettingsFile : public QSettings
{
public:
    SettingsFile() { setIniCodec("UTF-8"); }
};

/** Takes a value over from or into the file, under the key that names it there. */
class Loader
{
public:
    template <typename Value>
    void operator()(const char *key, Value *value)
    {
        *value = m_file.value(QLatin1String(key), *value).template value<Value>();
    }

    template <typename Words, typename Value>
    void operator()(const char *key, Value *value, const Words &words)
    {
        const QString word = m_file.value(QLatin1String(key)).toString();
        const auto *const found = std::find_if(words.begin(), words.end(), [&](const auto &each) {
            return QLatin1String(each.word) == word;
        });
        if (found != words.end())
            *value = found->value;
    }

private:
    SettingsFile m_file;
};

class Storer
{
public:
    template <typename Value>
    void operator()(const char *key, Value *value)
    {
        m_file.setValue(QLatin1String(key), *value);
    }

    template <typename Words, typename Value>
    void operator()(const char *key, Value *value, const Words &words)
    {
        const auto *const found = std::find_if(
            words.begin(), words.end(), [&](const auto &each) { return each.value == *value; });
        m_file.setValue(QLatin1String(key), QLatin1String(found->word));
    }

private:
    SettingsFile m_file;
};

template <typename Visitor>
void visit(ViewerSettings *settings, QString *device, Visitor take)
{
    take("reader/road", &settings->reader.road, ROADS);
    take("reader/device", device);
    take("reader/simulator-photos", &settings->reader.simulatorPhotos);
    take("reading/automatic", &settings->isAutomatic);
    take("reading/sound", &settings->hasSound);
    take("reading/previous-card", &settings->previousCard, PREVIOUS_CARDS);
    take("reading/forget-after-seconds", &settings->forgetAfterSeconds);
    take("saving/folder", &settings->folder);
    take("saving/folder-names", &settings->folderNames, FOLDER_NAMES);
    take("window/language", &settings->language);
    take("window/cover", &settings->isCovered);
    take("window/on-top", &settings->isOnTop);
    take("window/large-type", &settings->hasLargeType);
    take("window/true-size", &settings->isTrueSize);
    take("window/geometry", &settings->geometry);
    take("window/main-splitter", &settings->mainSplitter);
    take("window/side-splitter", &settings->sideSplitter);
    take("window/history-header", &settings->historyHeader);
}

} // namespace

ViewerSettings ViewerSettings::load()
{
    ViewerSettings settings;
    QString device;
    visit(&settings, &device, Loader());
    settings.reader.device = parseUsbIds(device);
    settings.forgetAfterSeconds = qBound(1, settings.forgetAfterSeconds, LONGEST_FORGETTING_S);
    return settings;
}

void ViewerSettings::store() const
{
    ViewerSettings copy = *this;
    QString device = reader.device ? toText(*reader.device) : QString();
    visit(&copy, &device, Storer());
}

} // namespace viewer
