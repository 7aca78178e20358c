#include "apps/doctor/pictures_probe.h"

#include <array>

#include <QBuffer>
#include <QDir>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPluginLoader>
#include <QRawFont>
#include <QScreen>
#include <QTextLayout>

#include "apps/doctor/child.h"
#include "apps/doctor/shipped_files.h"
#include "apps/doctor/stand_ins.h"
#include "apps/process/display.h"
#include "render/makecardimg.h"

namespace app::doctor
{

namespace
{

struct FontRow {
    const char *family;
    QFont::Weight weight;
    const char *weightName;
};

// As the pictures ask for them.
constexpr std::array<FontRow, 2> FONTS = {{
    {"华文细黑", QFont::Normal, "normal"},
    {"黑体", QFont::DemiBold, "demi-bold"},
}};

constexpr int FONT_PIXELS = 20;
constexpr const char *CHINESE_SAMPLE =
    "姓名性别民族出生住址公民身份号码签发机关有效期限中华人民共和国";

QJsonArray toArray(QSizeF size)
{
    return {size.width(), size.height()};
}

QSizeF toSize(const QJsonValue &value)
{
    return {value.toArray().at(0).toDouble(), value.toArray().at(1).toDouble()};
}

QJsonObject describeScreen()
{
    QJsonObject told{{"platform", QGuiApplication::platformName()}};
    const QScreen *const screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return told;
    // JSON has no infinity, which a screen without a size gives; it comes back as 0.
    const QSizeF card = MakeCardImg::getCardRealPixelSize();
    told["screen"] = QJsonObject{{"name", screen->name()},
                                 {"pixels", toArray(screen->size())},
                                 {"millimetres", toArray(screen->physicalSize())},
                                 {"dpiX", screen->physicalDotsPerInchX()},
                                 {"dpiY", screen->physicalDotsPerInchY()},
                                 {"devicePixelRatio", screen->devicePixelRatio()},
                                 {"card", toArray(card)}};
    return told;
}

/** Qt's JPEG plug-in, wherever Qt looks for plug-ins; why it cannot be loaded. */
void describePlugin(QJsonObject *told)
{
    const QStringList folders = QCoreApplication::libraryPaths();
    told->insert("folders", QJsonArray::fromStringList(folders));
    for (const QString &folder : folders) {
        const QDir plugins(folder + QStringLiteral("/imageformats"));
        for (const QString &name : plugins.entryList({QStringLiteral("*jpeg*.so")})) {
            QPluginLoader loader(plugins.filePath(name));
            told->insert("file",
                         loader.fileName().isEmpty() ? plugins.filePath(name) : loader.fileName());
            if (!loader.load())
                told->insert("problem", loader.errorString());
            return;
        }
    }
}

QJsonObject describeJpeg()
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    const bool isWritten = image.save(&buffer, "JPG", -1);
    QJsonObject told{{"canWrite", isWritten && bytes.startsWith("\xff\xd8\xff")}};
    describePlugin(&told);
    return told;
}

QStringList chosenFamilies()
{
    return QString::fromUtf8(CHOSEN_FAMILIES).split(QLatin1Char('\n'));
}

/** The first of the families that the project chose that is installed. */
QString installedStandIn()
{
    const QStringList installed = QFontDatabase().families();
    for (const QString &family : chosenFamilies()) {
        if (installed.contains(family))
            return family;
    }
    return {};
}

QJsonObject describeFont(const FontRow &row)
{
    QFont font;
    font.setFamily(QString::fromUtf8(row.family));
    font.setPixelSize(FONT_PIXELS);
    font.setWeight(row.weight);
    QTextLayout layout(QString::fromUtf8(CHINESE_SAMPLE), font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    QStringList faces;
    bool hasAll = true;
    const auto runs = layout.glyphRuns();
    for (const QGlyphRun &run : runs) {
        const QRawFont face = run.rawFont();
        // Without any font Qt draws boxes from a face that has no name.
        hasAll = hasAll && !run.glyphIndexes().contains(0) && !face.familyName().isEmpty();
        if (!face.familyName().isEmpty())
            faces << QStringLiteral("%1 %2").arg(face.familyName(), face.styleName()).trimmed();
    }
    faces.removeDuplicates();
    return {{"got", QFontInfo(font).family()},
            {"isInstalled", QFontDatabase().families().contains(QString::fromUtf8(row.family))},
            {"faces", QJsonArray::fromStringList(faces)},
            {"standIn", installedStandIn()},
            {"hasChinese", hasAll && !runs.isEmpty()}};
}

/** In the child: tells part after part, so that what was told is known even if the next crashes. */
void describe(const Telling &tell)
{
    const auto tellObject = [&tell](const char *part, const QJsonObject &object) {
        tell(QJsonDocument(QJsonObject{{QLatin1String(part), object}})
                 .toJson(QJsonDocument::Compact));
    };
    std::array<char, 14> name = {"idcard-reader"};
    std::array<char *, 2> arguments = {name.data(), nullptr};
    int count = 1;
    const QGuiApplication application(count, arguments.data());
    tellObject("screen", describeScreen());
    tellObject("jpeg", describeJpeg());
    for (std::size_t i = 0; i < FONTS.size(); ++i)
        tellObject(i == 0 ? "textFont" : "numberFont", describeFont(FONTS.at(i)));
}

void takeScreen(const QJsonObject &told, PicturesState *state)
{
    state->hasStarted = true;
    state->runningPlatform = told["platform"].toString();
    if (!told.contains("screen"))
        return;
    const QJsonObject screen = told["screen"].toObject();
    state->screen = ScreenState{
        screen["name"].toString(), toSize(screen["pixels"]),  toSize(screen["millimetres"]),
        screen["dpiX"].toDouble(), screen["dpiY"].toDouble(), screen["devicePixelRatio"].toDouble(),
        toSize(screen["card"])};
}

void takeJpeg(const QJsonObject &told, PicturesState *state)
{
    state->isJpegKnown = true;
    state->canWriteJpeg = told["canWrite"].toBool();
    for (const auto &folder : told["folders"].toArray())
        state->pluginFolders << folder.toString();
    state->jpegPlugin = told["file"].toString();
    state->jpegProblem = told["problem"].toString();
}

void takeFont(const QJsonObject &told, FontState *font)
{
    font->isKnown = true;
    font->got = told["got"].toString();
    for (const auto &face : told["faces"].toArray())
        font->faces << face.toString();
    font->standIn = told["standIn"].toString();
    font->isInstalled = told["isInstalled"].toBool();
    font->isStandIn = chosenFamilies().contains(font->got);
    font->hasChinese = told["hasChinese"].toBool();
}

void takeAll(const ChildRun &run, bool withScreen, PicturesState *state)
{
    auto &[textFont, numberFont] = state->fonts;
    for (const QByteArray &line : run.output.split('\n')) {
        const QJsonObject told = QJsonDocument::fromJson(line).object();
        if (withScreen && told.contains("screen"))
            takeScreen(told["screen"].toObject(), state);
        if (told.contains("jpeg"))
            takeJpeg(told["jpeg"].toObject(), state);
        if (told.contains("textFont"))
            takeFont(told["textFont"].toObject(), &textFont);
        if (told.contains("numberFont"))
            takeFont(told["numberFont"].toObject(), &numberFont);
    }
}

/** Why Qt did not come up: what it said first, or how it ended. */
QString failureOf(const ChildRun &run)
{
    if (run.end == ChildRun::End::TimedOut)
        return QStringLiteral("it hangs");
    QString log = QString::fromLocal8Bit(run.log);
    log.remove(QStringLiteral("idcard-reader: "));
    for (const QString &line : log.split(QLatin1Char('\n'))) {
        if (!line.trimmed().isEmpty())
            return line.trimmed();
    }
    return run.how;
}

} // namespace

PicturesState probePictures()
{
    PicturesState state;
    state.isOffscreenChosen = chooseOffscreenWithoutDisplay();
    state.platform = qEnvironmentVariable("QT_QPA_PLATFORM");
    for (std::size_t i = 0; i < FONTS.size(); ++i) {
        state.fonts.at(i).family = QString::fromUtf8(FONTS.at(i).family);
        state.fonts.at(i).weight = QLatin1String(FONTS.at(i).weightName);
    }
    state.isFontChoiceInForce =
        QFile::exists(QStringLiteral("/etc/fonts/conf.d/69-idcard-reader.conf"));
    state.shippedFontChoice = shippedFontChoice();
    const ChildRun run = runInChild(describe, QT_LIMIT_MS, FileWriting::Forbidden);
    state.log = run.log;
    takeAll(run, true, &state);
    if (!state.hasStarted) {
        state.failure = failureOf(run);
        // The plug-in and the fonts are the same on every platform.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        takeAll(runInChild(describe, QT_LIMIT_MS, FileWriting::Forbidden), false, &state);
    }
    return state;
}

} // namespace app::doctor
