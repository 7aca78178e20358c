// The templates as the library carries them: their form, and that nothing printed on them is in the
// way of the texts that are drawn on them.

#include <gmock/gmock.h>

#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QtEndian>
#include <vector>

namespace
{

struct Template {
    const char *name;
    QSize pixels;
    int bitsPerPixel;
    int bytes;
};

void PrintTo(const Template &card, std::ostream *stream)
{
    *stream << card.name;
}

const Template templates[] = {
    {"IDCardFront.bmp", {400, 254}, 32, 406454}, {"IDCardBack.bmp", {400, 254}, 32, 406454},
    {"hmt_front.bmp", {494, 312}, 24, 463062},   {"hm_back.bmp", {494, 312}, 24, 463062},
    {"tw_back.bmp", {494, 312}, 24, 463062},     {"f2017_front.bmp", {494, 312}, 24, 463062},
    {"f2017_back.bmp", {494, 312}, 24, 463062},  {"fnew_front.bmp", {494, 312}, 24, 463062},
    {"fnew_back.bmp", {494, 312}, 24, 463062},
};

QByteArray carried(const QString &name)
{
    QFile file(":/Pics/" + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

template <typename T>
T littleEndian(const QByteArray &data, int offset)
{
    return qFromLittleEndian<T>(data.constData() + offset);
}

class CardTemplate : public ::testing::TestWithParam<Template>
{
};

TEST_P(CardTemplate, HasItsSizeInBytes)
{
    EXPECT_EQ(carried(GetParam().name).size(), GetParam().bytes);
}

TEST_P(CardTemplate, IsAPlainBottomUpBmpOfItsPixelsAndDepth)
{
    const QByteArray file = carried(GetParam().name);
    ASSERT_GE(file.size(), 54);
    EXPECT_EQ(file.left(2), "BM");
    EXPECT_EQ(littleEndian<quint32>(file, 2), static_cast<quint32>(file.size()));
    EXPECT_EQ(littleEndian<quint32>(file, 10), 54U) << "where the pixels begin";
    EXPECT_EQ(littleEndian<quint32>(file, 14), 40U) << "size of the second header";
    EXPECT_EQ(littleEndian<qint32>(file, 18), GetParam().pixels.width());
    EXPECT_EQ(littleEndian<qint32>(file, 22), GetParam().pixels.height()) << "negative: top down";
    EXPECT_EQ(littleEndian<quint16>(file, 28), GetParam().bitsPerPixel);
    EXPECT_EQ(littleEndian<quint32>(file, 30), 0U) << "compression";
}

TEST_P(CardTemplate, LoadsAsAnOpaquePicture)
{
    const QImage picture(QString(":/Pics/") + GetParam().name);
    EXPECT_EQ(picture.size(), GetParam().pixels);
    EXPECT_FALSE(picture.hasAlphaChannel());
}

TEST_P(CardTemplate, IsUnlikeEveryOther)
{
    for (const Template &other : templates) {
        if (qstrcmp(other.name, GetParam().name) != 0) {
            EXPECT_NE(carried(other.name), carried(GetParam().name)) << other.name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Every, CardTemplate, ::testing::ValuesIn(templates),
                         [](const ::testing::TestParamInfo<Template> &test) {
                             return QString(test.param.name).remove(".bmp").toStdString();
                         });

TEST(TemplateBundle, HoldsTheTemplatesAndOneOrnament)
{
    std::vector<QString> expected{"card_ornament.png"};
    for (const Template &card : templates) {
        expected.emplace_back(card.name);
    }
    EXPECT_THAT(QDir(":/Pics").entryList(), ::testing::UnorderedElementsAreArray(expected));
}

TEST(TemplateBundle, OrnamentIsAPngOfItsSizeInBytes)
{
    const QByteArray file = carried("card_ornament.png");
    EXPECT_EQ(file.size(), 12797);
    EXPECT_FALSE(QImage::fromData(file, "PNG").isNull());
}

/** Where texts and the photo stand. In pixels of the template. */
struct DrawnOn {
    const char *name;
    std::vector<QRect> areas;
};

void PrintTo(const DrawnOn &card, std::ostream *stream)
{
    *stream << card.name;
}

QRect between(int left, int top, int right, int bottom)
{
    return {QPoint(left, top), QPoint(right, bottom)};
}

/** The same from millimetres, for the templates that are scaled to the size of a card. */
QRect millimetres(double left, double top, double right, double bottom)
{
    constexpr double across = 400 / 86.0;
    constexpr double down = 254 / 54.2;
    return between(qRound(left * across), qRound(top * down), qRound(right * across),
                   qRound(bottom * down));
}

const DrawnOn drawnOn[] = {
    {"IDCardFront.bmp",
     {millimetres(17, 7.3, 53, 11.7), millimetres(17, 14.3, 23, 18), millimetres(34, 14.3, 53, 18),
      millimetres(17, 20.8, 24.3, 24.5), millimetres(29, 20.8, 33.6, 24.5),
      millimetres(37, 20.8, 41.6, 24.5), millimetres(17, 28.2, 53, 43.5),
      millimetres(54, 8, 80, 40), millimetres(30, 44, 80, 49)}},
    {"IDCardBack.bmp", {millimetres(36, 38.5, 84, 42.5), millimetres(36, 45.5, 84, 49.5)}},
    {"hmt_front.bmp",
     {between(98, 48, 300, 68), between(98, 87, 300, 103), between(98, 121, 134, 139),
      between(171, 121, 190, 139), between(212, 121, 232, 139), between(98, 159, 300, 251),
      between(310, 53, 450, 263), between(175, 251, 440, 273)}},
    {"hm_back.bmp",
     {between(223, 211, 440, 228), between(223, 234, 440, 251), between(223, 255, 440, 272)}},
    {"tw_back.bmp",
     {between(223, 210, 440, 227), between(223, 233, 440, 250), between(223, 254, 440, 271)}},
    {"f2017_front.bmp",
     {between(48, 40, 300, 93), between(48, 112, 130, 129), between(154, 112, 300, 129),
      between(48, 153, 300, 170), between(48, 190, 300, 207), between(48, 230, 300, 247),
      between(316, 58, 456, 268), between(154, 250, 440, 269)}},
    {"fnew_front.bmp",
     {between(47, 61, 300, 116), between(47, 139, 130, 156), between(153, 139, 300, 156),
      between(47, 182, 300, 199), between(47, 229, 300, 246), between(315, 58, 455, 268),
      between(153, 256, 440, 275)}},
};

class PrintedTemplate : public ::testing::TestWithParam<DrawnOn>
{
};

TEST_P(PrintedTemplate, LeavesALightGroundWhereTextsAndPhotoAreDrawn)
{
    // Of 255. The ground, its hills and the lattice are lighter than this, print and rules darker.
    constexpr int lightestPrint = 190;

    const QImage picture(QString(":/Pics/") + GetParam().name);
    ASSERT_FALSE(picture.isNull());
    for (const QRect &area : GetParam().areas) {
        ASSERT_TRUE(picture.rect().contains(area));
        int darkest = 255;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                darkest = qMin(darkest, qGray(picture.pixel(x, y)));
            }
        }
        EXPECT_GT(darkest, lightestPrint)
            << "in the area from " << area.left() << ", " << area.top() << " to " << area.right()
            << ", " << area.bottom();
    }
}

INSTANTIATE_TEST_SUITE_P(Every, PrintedTemplate, ::testing::ValuesIn(drawnOn),
                         [](const ::testing::TestParamInfo<DrawnOn> &test) {
                             return QString(test.param.name).remove(".bmp").toStdString();
                         });

} // namespace
