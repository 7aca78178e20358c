// Loading templates: the short way must give what Qt's own reader gives, to the last pixel.

#include "render/card_template.h"

#include <cstring>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>
#include <QtEndian>

#include "tests/render/card_sides.h"
#include "tests/render/picture_matchers.h"
#include "tests/render/picture_resource.h"
#include "tests/render/without_templates.h"
#include "tests/support/expected_warning.h"

namespace
{

void expectAsQtReadsIt(const char *path, QSize size)
{
    const QString name = QString::fromLatin1(path);
    const QImage loaded = loadTemplate(name).toImage();
    const QImage read(name);
    EXPECT_EQ(loaded.size(), size) << path;
    EXPECT_EQ(loaded.format(), read.format()) << path;
    EXPECT_EQ(loaded.dotsPerMeterX(), read.dotsPerMeterX()) << path;
    EXPECT_EQ(loaded.dotsPerMeterY(), read.dotsPerMeterY()) << path;
    EXPECT_EQ(loaded.devicePixelRatioF(), read.devicePixelRatioF()) << path;
    EXPECT_EQ(loaded.colorTable(), read.colorTable()) << path;
    EXPECT_EQ(loaded.offset(), read.offset()) << path;
    EXPECT_EQ(loaded.textKeys(), read.textKeys()) << path;
    EXPECT_EQ(loaded, read) << path;
    for (int y = 0; y < read.height(); ++y) // with the byte that holds no colour
        ASSERT_EQ(std::memcmp(loaded.constScanLine(y), read.constScanLine(y),
                              static_cast<std::size_t>(read.width()) * 4),
                  0)
            << path << " row " << y;
}

/** A plain BMP file whose bytes of pixels, with the padding of the rows, count up. */
struct MadeBmp {
    int width = 5;
    int height = 3;
    int bits = 24;
    int infoSize = 40;
    int compression = 0;
    int offset = 54;
    int dotsPerMeterX = 0;
    int dotsPerMeterY = 0;

    QByteArray file() const
    {
        const int bytesPerRow = (width * bits / 8 + 3) / 4 * 4;
        QByteArray bytes(offset, '\0');
        bytes[0] = 'B';
        bytes[1] = 'M';
        put<quint32>(bytes, 2, offset + bytesPerRow * qAbs(height));
        put<quint32>(bytes, 10, offset);
        put<quint32>(bytes, 14, infoSize);
        put<quint32>(bytes, 18, width);
        put<quint32>(bytes, 22, height);
        put<quint16>(bytes, 26, 1);
        put<quint16>(bytes, 28, bits);
        put<quint32>(bytes, 30, compression);
        put<quint32>(bytes, 38, dotsPerMeterX);
        put<quint32>(bytes, 42, dotsPerMeterY);
        for (int i = 0; i < bytesPerRow * qAbs(height); ++i)
            bytes.append(static_cast<char>(i + 1));
        return bytes;
    }

    template <typename Number>
    static void put(QByteArray &bytes, int at, int number)
    {
        qToLittleEndian(static_cast<Number>(number), bytes.data() + at);
    }
};

constexpr int DENSITIES[] = {
    0, 1, 2834, 3937, -1, -2834, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};

/** Holds that a template with these bytes is what Qt makes of them. */
void expectMadeAsQtReadsIt(const QByteArray &bytes, QSize size)
{
    const PictureResource resource(bytes);
    expectAsQtReadsIt(resource.path().toLatin1().constData(), size);
}

} // namespace

TEST(CardTemplate, EveryTemplate_IsAsQtReadsIt)
{
    for (const char *name : {"IDCardFront", "IDCardBack"})
        expectAsQtReadsIt((std::string(":/Pics/") + name + ".bmp").c_str(), QSize(400, 254));
    for (const char *name : {"hmt_front", "hm_back", "tw_back", "f2017_front", "f2017_back",
                             "fnew_front", "fnew_back"})
        expectAsQtReadsIt((std::string(":/Pics/") + name + ".bmp").c_str(), QSize(494, 312));
}

TEST(CardTemplate, PictureOfAnotherFormat_IsLeftToQt)
{
    const QString name = QStringLiteral(":/Pics/card_ornament.png");
    EXPECT_FALSE(loadTemplate(name).isNull());
    EXPECT_EQ(loadTemplate(name).toImage().size(), QImage(name).size());
}

TEST(CardTemplate, MissingPicture_IsNull)
{
    EXPECT_TRUE(loadTemplate(QStringLiteral(":/Pics/none.bmp")).isNull());
    const ExpectedWarning noName("QFSFileEngine::open: No file name specified");
    EXPECT_TRUE(loadTemplate(QString()).isNull());
}

TEST(CardTemplate, RowsOfAnyWidth_AreAsQtReadsThem)
{
    for (const int bits : {24, 32})
        for (int width = 1; width <= 9; ++width) {
            MadeBmp bmp;
            bmp.width = width;
            bmp.bits = bits;
            expectMadeAsQtReadsIt(bmp.file(), QSize(width, 3));
        }
}

TEST(CardTemplate, PictureOfAnyForm_IsAsQtReadsIt)
{
    const auto made = [](auto member, int value, int offset = 54) {
        MadeBmp bmp;
        bmp.*member = value;
        bmp.offset = offset;
        return bmp.file();
    };
    const QSize size(5, 3);
    expectMadeAsQtReadsIt(made(&MadeBmp::offset, 70, 70),
                          size);                             // pixels further behind the headers
    expectMadeAsQtReadsIt(made(&MadeBmp::height, -3), size); // from the top
    expectMadeAsQtReadsIt(made(&MadeBmp::bits, 16), size);
    expectMadeAsQtReadsIt(made(&MadeBmp::infoSize, 108, 122), size);
    for (const int side : {4096, 4097}) {
        MadeBmp bmp;
        bmp.width = side;
        bmp.height = 1;
        expectMadeAsQtReadsIt(bmp.file(), QSize(side, 1));
        std::swap(bmp.width, bmp.height);
        expectMadeAsQtReadsIt(bmp.file(), QSize(1, side));
    }
    MadeBmp bmp;
    bmp.bits = 32;
    bmp.compression = 3; // with bit masks
    bmp.offset = 66;
    QByteArray bytes = bmp.file();
    MadeBmp::put<quint32>(bytes, 54, 0x000000ff); // red comes first
    MadeBmp::put<quint32>(bytes, 58, 0x0000ff00);
    MadeBmp::put<quint32>(bytes, 62, 0x00ff0000);
    expectMadeAsQtReadsIt(bytes, size);
}

TEST(CardTemplate, PictureOfAnyDensity_IsAsQtReadsIt)
{
    for (const int bits : {24, 32})
        for (const int dotsPerMeter : DENSITIES) {
            MadeBmp bmp;
            bmp.bits = bits;
            bmp.dotsPerMeterX = dotsPerMeter;
            bmp.dotsPerMeterY = 4000;
            expectMadeAsQtReadsIt(bmp.file(), QSize(5, 3));
            std::swap(bmp.dotsPerMeterX, bmp.dotsPerMeterY);
            expectMadeAsQtReadsIt(bmp.file(), QSize(5, 3));
        }
}

TEST(CardTemplate, Density_ReachesThePicture)
{
    constexpr int DOTS_PER_METER = 2834;
    const WithoutTemplates none;
    for (const CardSide &side : cardSides()) {
        MadeBmp bmp;
        bmp.dotsPerMeterX = bmp.dotsPerMeterY = DOTS_PER_METER;
        const PictureResource card(bmp.file(), QString::fromLatin1(side.templatePath));
        const QImage picture = decodedPicture(side.make(QByteArray()));
        // A JPEG file has it in whole dots per inch.
        EXPECT_NEAR(picture.dotsPerMeterX(), DOTS_PER_METER, 1) << side.name;
        EXPECT_NEAR(picture.dotsPerMeterY(), DOTS_PER_METER, 1) << side.name;
    }
}

TEST(CardTemplate, AnyOtherPictureInTheBundlesPlace_IsPaintedAsQtPaintsOnIt)
{
    const WithoutTemplates none;
    for (const CardSide &side : cardSides())
        for (const int bits : {16, 24, 32})
            for (const int dotsPerMeter : DENSITIES) {
                MadeBmp bmp;
                bmp.width = 300;
                bmp.height = 200;
                bmp.bits = bits;
                bmp.dotsPerMeterX = dotsPerMeter;
                bmp.dotsPerMeterY = 4000;
                const PictureResource card(bmp.file(), QString::fromLatin1(side.templatePath));
                EXPECT_TRUE(side.make(QByteArray()) == composed(side, textsOf(side), QPixmap()))
                    << side.name << ", " << bits << " bits, " << dotsPerMeter << " dots";
            }
}

TEST(CardTemplate, PictureWithoutAWidthOrAHeight_IsNull)
{
    constexpr int WIDTH_AT = 18;
    constexpr int HEIGHT_AT = 22;
    for (const int at : {WIDTH_AT, HEIGHT_AT}) {
        QByteArray bytes = MadeBmp().file();
        MadeBmp::put<quint32>(bytes, at, 0);
        const PictureResource resource(bytes);
        EXPECT_TRUE(loadTemplate(resource.path()).isNull()) << "number at " << at;
    }
}

TEST(CardTemplate, FileThatEndsEarly_IsWhatQtMakesOfIt)
{
    const QByteArray whole = MadeBmp().file();
    for (int size = 0; size < whole.size(); ++size) {
        const PictureResource resource(whole.left(size));
        const QImage read(resource.path());
        const QImage loaded = loadTemplate(resource.path()).toImage();
        EXPECT_EQ(loaded.isNull(), read.isNull()) << size << " bytes";
        EXPECT_EQ(loaded.size(), read.size()) << size << " bytes";
    }
}

TEST(CardTemplate, PixelsInsideTheHeaders_AreLeftToQt)
{
    QByteArray bytes = MadeBmp().file();
    MadeBmp::put<quint32>(bytes, 10, 53);
    const PictureResource resource(bytes);
    EXPECT_EQ(loadTemplate(resource.path()).toImage(),
              QPixmap::fromImage(QImage(resource.path())).toImage());
}
