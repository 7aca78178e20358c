// The fonts of the pictures: whether they, or the substitutes that the project chose, are
// installed.

#include <array>

#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGlyphRun>
#include <QJsonArray>
#include <QRawFont>
#include <QTextLayout>

#include "apps/doctor/environment.h"
#include "apps/doctor/shipped_files.h"
#include "apps/doctor/stand_ins.h"
#include "apps/process/translation.h"
#include "common/texts.h"
#include "render/card_fonts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

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

QStringList chosenFamilies()
{
    return splitAt(QLatin1Char('\n'), QString::fromUtf8(CHOSEN_FAMILIES));
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

const char *const FONTS_COMMAND = "apt-get install fontconfig fonts-noto-cjk";

/** Qt takes some font: what is missing for the one that was chosen, a font or its being chosen. */
Finding judgedSubstitute(const PicturesState &pictures, const FontState &font, const QString &text)
{
    const bool needsChoice = !pictures.isFontChoiceInForce;
    // Where the choice is in force and does not help, none of its fonts is for this family.
    const bool needsFont = !needsChoice || font.standIn.isEmpty();
    Finding finding{Level::WARNING, text};
    QString what = tr("Install a font for it");
    if (needsFont)
        finding.commands << QLatin1String(FONTS_COMMAND);
    if (needsFont && needsChoice)
        what = tr("Install a font for it and copy the project's fontconfig file "
                  "69-idcard-reader.conf to /etc/fonts/conf.d");
    else if (needsChoice)
        what = tr("A font for it is installed, %1. Copy the project's fontconfig file "
                  "69-idcard-reader.conf to /etc/fonts/conf.d")
                   .arg(font.standIn);
    if (needsChoice && pictures.shippedFontChoice.isEmpty())
        what = tr("%1; it is in the project's sources, packaging/fonts").arg(what);
    else if (needsChoice)
        finding.commands
            << QStringLiteral("cp %1 /etc/fonts/conf.d/").arg(quoted(pictures.shippedFontChoice));
    const QString remedy = finding.commands.isEmpty() ? tr("%1 (docs/fonts.md), as root.")
                                                      : tr("%1 (docs/fonts.md), as root:");
    finding.remedy = remedy.arg(what);
    return finding;
}

Finding judgedFont(const PicturesState &pictures, const FontState &font)
{
    const QString wanted =
        font.weight == QLatin1String("normal") ? font.family : font.family + ' ' + font.weight;
    const QString faces = font.faces.join(tr(", "));
    if (!font.isKnown) {
        return {
            Level::FAILURE,
            filledIn(tr("%1: not known, since Qt does not come up (%2)"), wanted, pictures.failure),
            tr("Do what \"Screen\" says and run this again.")};
    }
    if (!font.hasChinese && pictures.runningPlatform == QLatin1String("minimal")) {
        return {Level::FAILURE,
                tr("%1: Qt's platform \"minimal\" knows no fonts, installed or not; the pictures "
                   "have empty boxes in place of the characters")
                    .arg(wanted),
                tr("Choose Qt's offscreen platform in its place:"),
                {QStringLiteral("export QT_QPA_PLATFORM=offscreen")}};
    }
    if (!font.hasChinese) {
        return {Level::FAILURE,
                tr("%1: no font here has the Chinese characters; the pictures have empty boxes in "
                   "their place")
                    .arg(wanted),
                tr("Install a Chinese font (docs/fonts.md), as root:"),
                {QLatin1String(FONTS_COMMAND)}};
    }
    if (font.isInstalled)
        return {Level::FINE, tr("%1 is installed").arg(wanted)};
    if (font.isStandIn)
        return {Level::FINE, filledIn(tr("%1: its stand-in %2"), wanted, faces)};
    const QString taken = faces.startsWith(font.got)
                              ? faces
                              : filledIn(tr("%1, with Chinese characters of %2"), font.got, faces);
    return judgedSubstitute(pictures, font,
                            filledIn(tr("%1: no stand-in is named, and Qt takes %2; characters may "
                                        "have another form or size than on the card"),
                                     wanted, taken));
}

} // namespace

void nameFonts(PicturesState *pictures)
{
    for (std::size_t i = 0; i < FONTS.size(); ++i) {
        pictures->fonts.at(i).family = QString::fromUtf8(FONTS.at(i).family);
        pictures->fonts.at(i).weight = QLatin1String(FONTS.at(i).weightName);
    }
    pictures->isFontChoiceInForce =
        QFile::exists(QStringLiteral("/etc/fonts/conf.d/69-idcard-reader.conf"));
    pictures->shippedFontChoice = shippedFontChoice();
}

JsonObject describeFont(std::size_t which)
{
    const FontRow &row = FONTS.at(which);
    QFont font = cardFont(QString::fromUtf8(row.family), FONT_PIXELS);
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
            faces
                << filledIn(QStringLiteral("%1 %2"), face.familyName(), face.styleName()).trimmed();
    }
    faces.removeDuplicates();
    return {{"got", QFontInfo(font).family()},
            {"isInstalled", QFontDatabase().families().contains(QString::fromUtf8(row.family))},
            {"faces", QJsonArray::fromStringList(faces)},
            {"standIn", installedStandIn()},
            {"hasChinese", hasAll && !runs.isEmpty()}};
}

void takeFont(const QJsonObject &values, FontState *font)
{
    font->isKnown = true;
    font->got = values["got"].toString();
    font->faces = texts(values["faces"]);
    font->standIn = values["standIn"].toString();
    font->isInstalled = values["isInstalled"].toBool();
    font->isStandIn = chosenFamilies().contains(font->got);
    font->hasChinese = values["hasChinese"].toBool();
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
