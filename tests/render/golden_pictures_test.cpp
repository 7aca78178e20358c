// Every card of the simulator, read through readIDCard: on Debian 12 against pictures that somebody
// has looked at, the same bytes at every run, in every locale, on every processor and platform of
// equal resolution; everywhere against what Qt makes of the same template, photo and texts. The
// texts' pixels are the work of FreeType and the fonts, and the file is libjpeg's, so that they are
// others with other versions.
//
// With IDCARD_WRITE_GOLDEN_PICTURES set, as by scripts/make/golden-pictures, the pictures in the
// tree are written instead of compared.

#include "api/idcard_reader_api.h"
#include "simulator/card/card_library.h"
#include "simulator/simulator.h"
#include "tests/render/card_sides.h"
#include "tests/render/painting_recorder.h"
#include "tests/support/files.h"
#include "tests/support/font_faces.h"
#include "tests/support/gui_environment.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <clocale>

#include <QDir>
#include <QImage>
#include <QSysInfo>

namespace
{

const QString GOLDEN_FOLDER = QStringLiteral(IDCARD_SOURCE_DIR "/tests/render/golden");

/** Whose run writes the pictures that do not depend on the screen. */
constexpr int WRITTEN_DPI = 100;

struct Pictures {
    unsigned int kind = 99;
    QByteArray front;
    QByteArray back;
    QPixmap photo;
    bool isTaiwans = false;
    std::vector<Painted> painted;
};

template <typename Record>
QPixmap photoIn(const Record &record)
{
    QPixmap photo;
    photo.loadFromData(record.byPhoto, sizeof(record.byPhoto));
    return photo;
}

Pictures read(const QString &card)
{
    char message[512] = "";
    EXPECT_EQ(idcard_simulator_put_card(card.toUtf8().constData(), message, sizeof(message)), 0)
        << message;
    static _tagIDCARD_INFO_ALL_CN cn;
    static _tagIDCARD_INFO_ALL_FOREIGN_2017 f2017;
    static _tagIDCARD_INFO_ALL_FOREIGN_NEW fNew;
    static _tagIDCARD_INFO_ALL_HMT hmt;
    Pictures pictures;
    std::string front;
    std::string back;
    const PaintingRecorder recorder;
    EXPECT_EQ(readIDCard(&pictures.kind, &cn, &f2017, &fNew, &hmt, &front, &back), 0);
    pictures.painted = recorder.painted();
    switch (pictures.kind) {
    case IDCARD_KIND_CN:
        pictures.photo = photoIn(cn);
        break;
    case IDCARD_KIND_FOREIGN_2017:
        pictures.photo = photoIn(f2017);
        break;
    case IDCARD_KIND_FOREIGN_NEW:
        pictures.photo = photoIn(fNew);
        break;
    default:
        pictures.photo = photoIn(hmt);
        break;
    }
    pictures.isTaiwans = hmt.szID.compare(0, 2, "83") == 0;
    pictures.front = QByteArray::fromBase64(QByteArray::fromStdString(front));
    pictures.back = QByteArray::fromBase64(QByteArray::fromStdString(back));
    return pictures;
}

/** Only the resident card depends on the screen. */
QString goldenName(const QString &card, unsigned int kind, const char *side)
{
    const QString size =
        kind == IDCARD_KIND_CN ? QStringLiteral("-%1dpi").arg(expectedDpi()) : QString();
    return card + size + '-' + QLatin1String(side) + QStringLiteral(".jpg");
}

/**
 * The picture in the tree as it must be on this run's screen. The head of a JPEG file has the
 * screen's resolution; nothing else of the kinds that are laid out in pixels depends on it.
 */
QByteArray onThisScreen(QByteArray golden, unsigned int kind)
{
    constexpr int DENSITIES = 14; // two numbers of two bytes, the high one first
    if (kind != IDCARD_KIND_CN) {
        const auto dpi = static_cast<int>(expectedDpi());
        for (const int at : {DENSITIES, DENSITIES + 2}) {
            golden[at] = static_cast<char>(dpi / 256);
            golden[at + 1] = static_cast<char>(dpi % 256);
        }
    }
    return golden;
}

/** Writes the picture that came and where it differs (white) into the folder of this run. */
void keepDifference(const QString &name, const QByteArray &came, const QByteArray &golden)
{
    writeFile(name, came);
    const QImage is = QImage::fromData(came).convertToFormat(QImage::Format_RGB32);
    const QImage wanted = QImage::fromData(golden).convertToFormat(QImage::Format_RGB32);
    QImage difference(is.size().expandedTo(wanted.size()), QImage::Format_RGB32);
    difference.fill(Qt::red); // where only one of them has a pixel
    for (int y = 0; y < std::min(is.height(), wanted.height()); ++y)
        for (int x = 0; x < std::min(is.width(), wanted.width()); ++x)
            difference.setPixel(x, y,
                                is.pixel(x, y) == wanted.pixel(x, y) ? 0xff000000 : 0xffffffff);
    difference.save(name + QStringLiteral(".difference.png"));
}

void expectGolden(const QString &card, unsigned int kind, const char *side,
                  const QByteArray &picture)
{
    const QString name = goldenName(card, kind, side);
    const QString path = GOLDEN_FOLDER + '/' + name;
    if (qEnvironmentVariableIsSet("IDCARD_WRITE_GOLDEN_PICTURES")) {
        if (kind != IDCARD_KIND_CN && qRound(expectedDpi()) != WRITTEN_DPI)
            return;
        writeFile(path, picture);
        return;
    }
    const QByteArray golden = onThisScreen(readFile(path), kind);
    if (picture == golden)
        return;
    keepDifference(name, picture, golden);
    ADD_FAILURE() << name.toStdString() << " differs: see it and its .difference.png in "
                  << QDir::currentPath().toStdString();
}

/** The names of a card's sides in cardSides(), and how many texts the back has. */
struct Sides {
    const char *front;
    const char *back;
    int textsOnBack;
};

Sides sidesOf(const Pictures &pictures)
{
    switch (pictures.kind) {
    case IDCARD_KIND_CN:
        return {"resident front", "resident back", 2};
    case IDCARD_KIND_FOREIGN_2017:
        return {"2017 front", "2017 back", 0};
    case IDCARD_KIND_FOREIGN_NEW:
        return {"new front", "new back", 0};
    default:
        return {"permit front", pictures.isTaiwans ? "Taiwan back" : "Hong Kong back", 3};
    }
}

const CardSide &sideNamed(const std::string &name)
{
    return *std::find_if(cardSides().begin(), cardSides().end(),
                         [&name](const CardSide &side) { return side.name == name; });
}

/** What Qt makes of a side with these texts. */
QByteArray composedPicture(const char *side, const std::vector<Painted> &texts,
                           const QPixmap &photo)
{
    return QByteArray::fromBase64(composed(sideNamed(side), texts, photo).toLatin1());
}

} // namespace

TEST(GoldenPictures, EveryCardOfTheSimulator_IsWhatQtMakesOfTemplatePhotoAndTexts)
{
    for (const QString &card : simulator::builtInCardNames()) {
        SCOPED_TRACE(card.toStdString());
        const Pictures pictures = read(card);
        const Sides sides = sidesOf(pictures);
        std::vector<Painted> texts = pictures.painted;
        texts.erase(std::remove_if(texts.begin(), texts.end(),
                                   [](const Painted &painted) { return !painted.isText; }),
                    texts.end());
        const auto firstOnBack = texts.end() - (pictures.back.isEmpty() ? 0 : sides.textsOnBack);

        EXPECT_TRUE(pictures.front ==
                    composedPicture(sides.front, {texts.begin(), firstOnBack}, pictures.photo));
        if (!pictures.back.isEmpty()) {
            EXPECT_TRUE(pictures.back ==
                        composedPicture(sides.back, {firstOnBack, texts.end()}, QPixmap()));
        }
    }
}

TEST(GoldenPictures, EveryCardOfTheSimulator_LooksAsItDid)
{
    const QString system = QSysInfo::productType() + ' ' + QSysInfo::productVersion();
    if (system != QStringLiteral("debian 12"))
        GTEST_SKIP()
            << "Left out: the kept pictures are compared on debian 12 alone, whose FreeType, "
               "fonts and libjpeg painted them, and this is "
            << system.toStdString();
    const QStringList cards = simulator::builtInCardNames();
    ASSERT_GE(cards.size(), 16);
    for (const QString &card : cards) {
        const Pictures pictures = read(card);
        expectGolden(card, pictures.kind, "front", pictures.front);
        if (card == QLatin1String("hmt-unknown-region")) {
            EXPECT_TRUE(pictures.back.isEmpty()) << "it has no back";
        } else {
            expectGolden(card, pictures.kind, "back", pictures.back);
        }
    }
}

TEST(GoldenPictures, EveryGlyph_ComesFromAFaceThatWasChosen)
{
    for (const QString &card : simulator::builtInCardNames()) {
        for (const Painted &painted : read(card).painted) {
            if (!painted.isText || painted.text.empty())
                continue;
            const bool number = painted.font.family() == QStringLiteral("黑体");
            EXPECT_EQ(facesOf(painted.font, QString::fromStdString(painted.text)),
                      QStringList(number ? QStringLiteral("Noto Sans Mono CJK SC Bold")
                                         : QStringLiteral("Noto Sans Mono CJK SC Regular")))
                << card.toStdString() << ": " << painted.text;
        }
    }
}

TEST(GoldenPictures, Locale_IsTheOneOfThisRun)
{
    read(QStringLiteral("resident"));
    EXPECT_EQ(std::string(std::setlocale(LC_ALL, nullptr)),
              qEnvironmentVariable("LC_ALL").toStdString());
}
