#include "apps/doctor/pictures.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include "apps/process/display.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

/** How much time Qt has to come up and answer. */
constexpr int QT_LIMIT_MS = 20000;

constexpr std::array<const char *, 2> FONT_KEYS = {"textFont", "numberFont"};

/** What Qt and fontconfig would keep goes to `folder`, not to the caches of the user. */
void keepCachesIn(const QString &folder)
{
    QString configuration = qEnvironmentVariable("FONTCONFIG_FILE");
    if (configuration.isEmpty())
        configuration = QStringLiteral("fonts.conf");
    QFile file(folder + QStringLiteral("/fonts.conf"));
    if (file.open(QIODevice::WriteOnly)) {
        // Fontconfig writes to the first folder that it may write to, and reads them all.
        file.write(
            filledIn(QStringLiteral("<fontconfig><cachedir>%1</cachedir><include>%2</include>"
                                    "</fontconfig>"),
                     folder.toHtmlEscaped(), configuration.toHtmlEscaped())
                .toUtf8());
        qputenv("FONTCONFIG_FILE", QFile::encodeName(file.fileName()));
    }
    qputenv("XDG_CACHE_HOME", QFile::encodeName(folder));
}

ChildRun runQt()
{
    const QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/idcard-reader-XXXXXX"));
    const QString caches = folder.isValid() ? folder.path() : QStringLiteral("/dev/null");
    return runInChild({QStringLiteral("pictures"), caches}, QT_LIMIT_MS);
}

/** All but the screen, which differs from platform to platform. */
void takeParts(const QJsonObject &values, PicturesState *state)
{
    if (values.contains("jpeg"))
        takeJpeg(values["jpeg"].toObject(), state);
    for (std::size_t i = 0; i < FONT_KEYS.size(); ++i) {
        if (values.contains(FONT_KEYS.at(i)))
            takeFont(values[FONT_KEYS.at(i)].toObject(), &state->fonts.at(i));
    }
}

/** Why Qt did not come up: what it said first, or how it ended. */
QString failureOf(const ChildRun &run)
{
    if (run.end == ChildRun::End::TIMED_OUT)
        return tr("it hangs");
    QString log = QString::fromLocal8Bit(run.log);
    log.remove(QStringLiteral("idcard-reader: "));
    for (const QString &line : splitAt(QLatin1Char('\n'), log)) {
        if (!line.trimmed().isEmpty())
            return line.trimmed();
    }
    return run.how;
}

} // namespace

void describePictures(const QStringList &arguments, const SendValues &send)
{
    keepCachesIn(arguments.value(0));
    std::array<char, 14> name = {"idcard-reader"};
    std::array<char *, 2> qtArguments = {name.data(), nullptr};
    int count = 1;
    const QGuiApplication application(count, qtArguments.data());
    translateApplication();
    send({{"screen", describeScreen()}});
    send({{"jpeg", describeJpeg()}});
    for (std::size_t i = 0; i < FONT_KEYS.size(); ++i)
        send({{FONT_KEYS.at(i), describeFont(i)}});
}

PicturesState probePictures()
{
    PicturesState state;
    state.isOffscreenChosen = chooseOffscreenWithoutDisplay();
    state.platform = qEnvironmentVariable("QT_QPA_PLATFORM");
    nameFonts(&state);
    const ChildRun run = runQt();
    state.log = run.log;
    takeParts(run.values, &state);
    if (run.values.contains("screen")) {
        takeScreen(run.values["screen"].toObject(), &state);
    } else {
        state.failure = failureOf(run);
        // The plug-in and the fonts are the same on every platform.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        takeParts(runQt().values, &state);
    }
    return state;
}

} // namespace app::doctor
