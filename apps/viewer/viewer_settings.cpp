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

template <typename Words, typename Value>
const char *wordOf(Value value, const Words &words)
{
    return std::find_if(words.begin(), words.end(),
                        [&](const auto &each) { return each.value == value; })
        ->word;
}

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
    explicit Loader(QVariantMap *remembered) : m_remembered(remembered) {}

    template <typename Value>
    void operator()(const char *key, Value *value)
    {
        *value = m_file.value(QLatin1String(key), *value).template value<Value>();
        m_remembered->insert(QLatin1String(key), *value);
    }

    template <typename Words, typename Value>
    void operator()(const char *key, Value *value, const Words &words)
    {
        QString word = QLatin1String(wordOf(*value, words));
        (*this)(key, &word);
        const auto *const found = std::find_if(words.begin(), words.end(), [&](const auto &each) {
            return QLatin1String(each.word) == word;
        });
        if (found != words.end())
            *value = found->value;
    }

private:
    SettingsFile m_file;
    QVariantMap *m_remembered;
};

class Storer
{
public:
    explicit Storer(QVariantMap *remembered) : m_remembered(remembered)
    {
        m_file.setFallbacksEnabled(false); // whatever the machine's file has
    }

    template <typename Value>
    void operator()(const char *name, Value *value)
    {
        const QString key = QLatin1String(name);
        if (m_file.contains(key) && m_remembered->value(key) == *value)
            return;
        m_file.setValue(key, *value);
        m_remembered->insert(key, *value);
    }

    template <typename Words, typename Value>
    void operator()(const char *key, Value *value, const Words &words)
    {
        const QString word = QLatin1String(wordOf(*value, words));
        (*this)(key, &word);
    }

private:
    SettingsFile m_file;
    QVariantMap *m_remembered;
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
    visit(&settings, &device, Loader(&settings.m_remembered));
    settings.reader.device = parseUsbIds(device);
    settings.forgetAfterSeconds = qBound(1, settings.forgetAfterSeconds, LONGEST_FORGETTING_S);
    return settings;
}

void ViewerSettings::store()
{
    QString device = reader.device ? toText(*reader.device) : QString();
    visit(this, &device, Storer(&m_remembered));
}

} // namespace viewer
