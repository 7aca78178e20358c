#include "apps/reading/configuration.h"

#include <algorithm>
#include <cerrno>
#include <optional>

#include <QDir>
#include <QFile>
#include <QTextCodec>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"
#include "common/texts.h"
#include "common/usb_ids.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Configuration)

constexpr const char *FILE_NAME = "idcard-reader.conf";
constexpr qint64 LARGEST_FILE = 16384;
constexpr int LONGEST_QUOTE = 60;
constexpr int LONGEST_READ_IN_SECONDS = 3600;
constexpr int UTF_8_MIB = 106;

struct Mistake {
    QString what;
    QString remedy;
};

QString quoted(const QString &text)
{
    const QString shown =
        text.size() > LONGEST_QUOTE ? text.left(LONGEST_QUOTE) + QStringLiteral("...") : text;
    return tr("\"%1\"").arg(printable(shown));
}

const Option *findSetting(const QString &key)
{
    const std::vector<Option> &all = settings();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const Option &setting) { return setting.name == key; });
    return found == all.end() ? nullptr : &*found;
}

/** "road (library or usb), ..." */
QString acceptedSettings()
{
    QStringList all;
    for (const Option &setting : settings())
        all << filledIn(tr("%1 (%2)"), setting.name, setting.wanted);
    return all.join(tr(", "));
}

Mistake mistakeInLine(const QString &what)
{
    return {what, tr("Correct the line, or put # before it.")};
}

Mistake mistakeInFile(const QString &what)
{
    return {what, tr("Correct the file, or remove it.")};
}

/** A line without its comment. */
QString withoutComment(const QString &line)
{
    return line.section(QLatin1Char('#'), 0, 0).trimmed();
}

/** Nothing for bytes that are not UTF-8. */
std::optional<QString> decoded(const QByteArray &line)
{
    QTextCodec::ConverterState state;
    const QString text =
        QTextCodec::codecForMib(UTF_8_MIB)->toUnicode(line.constData(), line.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return std::nullopt;
    return text;
}

std::optional<Mistake> mistakeOf(const Setting &setting, const QVector<Setting> &before)
{
    const Option *const rule = findSetting(setting.key);
    if (rule == nullptr)
        return mistakeInLine(filledIn(tr("there is no setting %1. There are: %2."),
                                      quoted(setting.key), acceptedSettings()));
    for (const Setting &earlier : before) {
        if (earlier.key == setting.key)
            return mistakeInLine(
                tr("%1 is set in line %2 already.").arg(setting.key).arg(earlier.line));
    }
    if (!rule->accepts(setting.value))
        return mistakeInLine(
            filledIn(tr("%1 takes %2, not %3."), setting.key, rule->wanted, quoted(setting.value)));
    return std::nullopt;
}

/** Takes one line over into the file; returns what is wrong with it. */
std::optional<Mistake> takeLine(const QByteArray &bytes, int number, QVector<Setting> *settings)
{
    const std::optional<QString> text = decoded(bytes);
    if (!text)
        return Mistake{tr("the line is not UTF-8 text."), tr("Save the file as UTF-8.")};
    const QString line = withoutComment(*text);
    if (line.isEmpty())
        return std::nullopt;
    const QChar equals = QLatin1Char('=');
    if (!line.contains(equals))
        return mistakeInLine(
            filledIn(tr("%1 is no setting. A line is \"key = value\", with one of: %2."),
                     quoted(line), acceptedSettings()));
    const Setting setting{line.section(equals, 0, 0).trimmed(), line.section(equals, 1).trimmed(),
                          number};
    std::optional<Mistake> mistake = mistakeOf(setting, *settings);
    if (!mistake)
        settings->append(setting);
    return mistake;
}

/** Opens no device and waits for no pipe. Negative with `errno`. */
int openedForReading(const QString &path)
{
    return ::open(QFile::encodeName(path).constData(),
                  O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
}

struct Content {
    bool isThere = true;
    QByteArray bytes = {};
    std::optional<Mistake> mistake = {};
};

Content failedContent()
{
    if (errno == ENOENT || errno == ENOTDIR)
        return {false};
    const QString reason = systemError(errno);
    return {true, {}, mistakeInFile(tr("it cannot be read: %1.").arg(reason))};
}

Content contentOf(const QString &path)
{
    const int descriptor = openedForReading(path);
    if (descriptor < 0)
        return failedContent();
    QFile file;
    struct stat state = {};
    if (::fstat(descriptor, &state) != 0 || !S_ISREG(state.st_mode)) {
        ::close(descriptor);
        return {true, {}, mistakeInFile(tr("it is not a file of text."))};
    }
    file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    Content content;
    content.bytes = file.read(LARGEST_FILE + 1);
    if (content.bytes.size() > LARGEST_FILE)
        content.mistake = mistakeInFile(tr("it is larger than %1 bytes.").arg(LARGEST_FILE));
    return content;
}

void setMistake(ConfigurationFile *file, const Mistake &mistake, int line)
{
    file->mistake = mistake.what;
    file->remedy = mistake.remedy;
    file->mistakeLine = line;
}

ConfigurationFile readFile(const QString &path)
{
    const Content content = contentOf(path);
    ConfigurationFile file;
    file.path = path;
    file.isThere = content.isThere;
    if (content.mistake) {
        setMistake(&file, *content.mistake, 0);
        return file;
    }
    int number = 0;
    for (const QByteArray &line : content.bytes.split('\n')) {
        const std::optional<Mistake> mistake = takeLine(line, ++number, &file.settings);
        if (mistake) {
            setMistake(&file, *mistake, number);
            break;
        }
    }
    return file;
}

/** $XDG_CONFIG_HOME or ~/.config, as desktops have it: a path that is not absolute does not count.
 */
QString userFolder()
{
    QString named = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (QDir::isAbsolutePath(named))
        return named;
    const QString home = qEnvironmentVariable("HOME");
    return QDir::isAbsolutePath(home) ? home + QStringLiteral("/.config") : QString();
}

} // namespace

const std::vector<Option> &settings()
{
    static const std::vector<Option> all = {
        Option("road", {})
            .value("road", tr("library or usb"),
                   [](const QString &value) { return value == LIBRARY_ROAD || value == USB_ROAD; }),
        Option("device", {})
            .value(
                "VID:PID",
                tr("a vendor and a product id of four hexadecimal digits each, such as 1209:0001"),
                [](const QString &value) { return parseUsbIds(value).has_value(); }),
        Option("timeout", {}).number("seconds", 1, LONGEST_READ_IN_SECONDS),
    };
    return all;
}

Option settingOption(const char *key, const QString &meaning)
{
    Option option = *findSetting(QLatin1String(key));
    option.meaning = meaning;
    return option;
}

QString ConfigurationFile::placedMistake() const
{
    if (mistake.isEmpty())
        return {};
    const QString place = mistakeLine == 0 ? path : tr("%1, line %2").arg(path).arg(mistakeLine);
    return filledIn(tr("%1: %2"), place, mistake);
}

QStringList configurationPaths()
{
    QStringList paths{QStringLiteral(IDCARD_CONFIGURATION_FOLDER "/") + QLatin1String(FILE_NAME)};
    const QString folder = userFolder();
    if (!folder.isEmpty())
        paths << QDir::cleanPath(folder + QLatin1Char('/') + QLatin1String(FILE_NAME));
    return paths;
}

Configuration readConfiguration(const QStringList &paths)
{
    Configuration configuration;
    for (const QString &path : paths)
        configuration << readFile(path);
    return configuration;
}

QString valueIn(const Configuration &configuration, const QString &key)
{
    QString value;
    for (const ConfigurationFile &file : configuration) {
        for (const Setting &setting : file.settings) {
            if (setting.key == key)
                value = setting.value;
        }
    }
    return value;
}

} // namespace app
