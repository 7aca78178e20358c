// The drawing primitives: what reaches the painter, the whitening of photos and the encoding.

#include "render/tools.h"
#include "tests/render/card_sides.h"
#include "tests/support/expected_warning.h"

#include <gmock/gmock.h>

#include <QFontMetrics>
#include <QImage>
#include <QPixmap>

namespace
{

const QString TEXT = QStringLiteral("五12");
const QString FAMILY = QStringLiteral("黑体");

class DrawingToolkit : public testing::Test
{
protected:
    DrawingToolkit() { canvas.fill(Qt::white); }

    const Painted &only() const
    {
        EXPECT_EQ(recorder.painted().size(), 1U);
        return recorder.painted().front();
    }

    QPixmap canvas{300, 200};
    QPixmap stamp{10, 20};
    PaintingRecorder recorder;
};

/** A picture of one row with these pixels. */
QPixmap rowOf(const std::vector<QRgb> &pixels, QImage::Format format = QImage::Format_ARGB32)
{
    QImage image(static_cast<int>(pixels.size()), 1, format);
    for (int x = 0; x < image.width(); ++x)
        image.setPixel(x, 0, pixels[static_cast<std::size_t>(x)]);
    return QPixmap::fromImage(image);
}

} // namespace

TEST_F(DrawingToolkit, FontAndPoint_AreUsedAsGiven)
{
    QFont font(FAMILY);
    font.setPixelSize(16);
    font.setWeight(63);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 2.0);
    EXPECT_TRUE(Tools::drawStringInPixmap(canvas, TEXT, Qt::black, font, QPointF(10.5, 20.25)));
    expectText(only(), {"五12", 10.5, 20.25, NUMBER, 16, 63, 2.0});
}

TEST_F(DrawingToolkit, FamilyAndPixelSize_MakeAPlainFont)
{
    EXPECT_TRUE(Tools::drawStringInPixmap(canvas, TEXT, Qt::black, FAMILY, 18, 98, 64));
    expectText(only(), {"五12", 98, 64, NUMBER, 18});
}

TEST_F(DrawingToolkit, Color_ReachesThePen)
{
    Tools::drawStringInPixmap(canvas, TEXT, QColor(1, 2, 3), FAMILY, 18, 98, 64);
    EXPECT_EQ(only().color, QColor(1, 2, 3));
}

TEST_F(DrawingToolkit, FromTop_IsLoweredByTheUnroundedHeight)
{
    EXPECT_TRUE(Tools::drawStringInPixmapFromTop(canvas, TEXT, Qt::black, FAMILY, 11, 3.0, 5.0));
    expectText(only(),
               {"五12", px(3.0), px(5.0) + height(11), NUMBER, static_cast<int>(height(11))});
}

TEST_F(DrawingToolkit, FromTopWithOffset_IsLoweredByItToo)
{
    EXPECT_TRUE(
        Tools::drawStringInPixmapFromTop(canvas, TEXT, Qt::black, FAMILY, 8, 3.0, 5.0, 17.25));
    expectText(only(),
               {"五12", px(3.0), height(8) + px(5.0) + 17.25, NUMBER, static_cast<int>(height(8))});
}

TEST_F(DrawingToolkit, FromBottom_StandsOnTheBaseline)
{
    EXPECT_TRUE(Tools::drawStringInPixmapFromBottom(canvas, TEXT, Qt::black, FAMILY, 9, 3.0, 5.0));
    expectText(only(), {"五12", px(3.0), px(5.0), NUMBER, static_cast<int>(height(9))});
}

TEST_F(DrawingToolkit, IdCode_IsHalfBoldAndSpaced)
{
    EXPECT_TRUE(
        Tools::drawIDCodeStringInPixmapFromBottom(canvas, TEXT, Qt::black, FAMILY, 12, 3.0, 5.0));
    expectText(only(), {"五12", px(3.0), px(5.0), NUMBER, static_cast<int>(height(12)), 63, 0.48});
}

TEST_F(DrawingToolkit, FromBottomRight_IsMovedLeftByTheFixedFormula)
{
    const double width = Tools::getTextPixelWidth(FAMILY, 9, TEXT);
    EXPECT_TRUE(
        Tools::drawStringInPixmapFromBottomRight(canvas, TEXT, Qt::black, FAMILY, 9, 33.0, 5.0));
    expectText(only(), {"五12", px(33.0) - width, px(5.0), NUMBER, static_cast<int>(height(9))});
}

TEST_F(DrawingToolkit, TextWidth_IsHalfTheBoundingWidthPlusNine)
{
    QFont font;
    font.setFamily(FAMILY);
    font.setPixelSize(static_cast<int>(height(9)));
    for (const QString &text : {QStringLiteral("1"), QStringLiteral("12"), TEXT}) {
        const QRect bounds = QFontMetrics(font).boundingRect(text);
        const int width = bounds.right() - bounds.left() + 1;
        EXPECT_GT(width, 0);
        EXPECT_EQ(Tools::getTextPixelWidth(FAMILY, 9, text), width + (9 - 0.5 * width));
    }
}

TEST_F(DrawingToolkit, TextWidthOfNothing_IsNine)
{
    EXPECT_EQ(Tools::getTextPixelWidth(FAMILY, 9, QString()), 9.0);
}

TEST_F(DrawingToolkit, NullPixmap_TakesTextWithoutAWord)
{
    QPixmap null;
    EXPECT_TRUE(Tools::drawStringInPixmap(null, TEXT, Qt::black, FAMILY, 18, 98, 64));
    EXPECT_TRUE(Tools::drawStringInPixmap(null, TEXT, Qt::black, QFont(), QPointF()));
    EXPECT_TRUE(Tools::drawStringInPixmapFromTop(null, TEXT, Qt::black, FAMILY, 9, 1, 1));
    EXPECT_TRUE(Tools::drawStringInPixmapFromTop(null, TEXT, Qt::black, FAMILY, 9, 1, 1, 1));
    EXPECT_TRUE(Tools::drawStringInPixmapFromBottom(null, TEXT, Qt::black, FAMILY, 9, 1, 1));
    EXPECT_TRUE(Tools::drawStringInPixmapFromBottomRight(null, TEXT, Qt::black, FAMILY, 9, 1, 1));
    EXPECT_TRUE(Tools::drawIDCodeStringInPixmapFromBottom(null, TEXT, Qt::black, FAMILY, 9, 1, 1));
    EXPECT_FALSE(Tools::drawSubPixmap(null, stamp, 1, 1));
    EXPECT_TRUE(null.isNull());
    EXPECT_TRUE(recorder.painted().empty());
}

TEST_F(DrawingToolkit, SubPixmap_IsPaintedUnscaledAndReturnsFalse)
{
    EXPECT_FALSE(Tools::drawSubPixmap(canvas, stamp, 3.5, 4.25));
    expectPhoto(only(), 3.5, 4.25, QSize(10, 20));
}

TEST_F(DrawingToolkit, SubPixmapInMillimetres_IsPaintedAtTheConvertedPlace)
{
    EXPECT_FALSE(Tools::drawSubPixmapEx(canvas, stamp, 5.0, 8.0));
    expectPhoto(only(), px(5.0), px(8.0), QSize(10, 20));
}

TEST(PhotoBackground, ExactOpaqueWhites_BecomeTransparentAndEveryOtherPixelStays)
{
    const std::vector<QRgb> pixels = {0xffffffff, 0xfffefefe, 0xfffdfdfd, 0xfffffffe,
                                      0xfffffeff, 0xfffeffff, 0xfffefeff, 0xff000000,
                                      0xffff0000, 0xfffefefd, 0x80ffffff};
    for (const auto format : {QImage::Format_ARGB32, QImage::Format_RGB32}) {
        const bool hasAlpha = format == QImage::Format_ARGB32;
        const QImage result =
            Tools::convertHeadImgCNBgToTransparent(rowOf(pixels, format)).toImage();
        EXPECT_TRUE(result.hasAlphaChannel());
        for (const int white : {0, 1})
            EXPECT_EQ(qAlpha(result.pixel(white, 0)), 0);
        for (int x = 2; x < result.width() - 1; ++x)
            EXPECT_EQ(result.pixel(x, 0), pixels[static_cast<std::size_t>(x)]) << x;
        EXPECT_EQ(qAlpha(result.pixel(result.width() - 1, 0)), hasAlpha ? 0x80 : 0)
            << "translucent";
    }
}

TEST(PhotoBackground, EveryRowAndColumn_IsLookedAt)
{
    QImage image(7, 5, QImage::Format_RGB32);
    image.fill(Qt::white);
    const QImage result =
        Tools::convertHeadImgCNBgToTransparent(QPixmap::fromImage(image)).toImage();
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 7; ++x)
            EXPECT_EQ(qAlpha(result.pixel(x, y)), 0) << x << ' ' << y;
}

TEST(PhotoBackground, NullPhoto_StaysNull)
{
    EXPECT_TRUE(Tools::convertHeadImgCNBgToTransparent(QPixmap()).isNull());
}

TEST(JpegText, Picture_IsBase64OfAJpegFileOfDefaultQuality)
{
    QPixmap pixmap(33, 21);
    pixmap.fill(QColor(10, 200, 30));
    const QString text = Tools::convertPixmapToBase64ViaJpg(pixmap);
    EXPECT_EQ(text.length() % 4, 0);
    EXPECT_FALSE(text.contains(QLatin1Char('\n')));
    const QImage image = decodedPicture(text);
    EXPECT_EQ(image.size(), QSize(33, 21));

    const QByteArray bytes = QByteArray::fromBase64(text.toLatin1());
    EXPECT_EQ(QString::fromLatin1(bytes.toBase64()), text);
}

TEST(JpegText, NullPixmap_GivesEmptyText)
{
    EXPECT_EQ(Tools::convertPixmapToBase64ViaJpg(QPixmap()), QString());
}

TEST(JpegText, PictureOf65500PixelsOnASide_IsTheLargest)
{
    const auto sizeOf = [](QSize size) {
        QPixmap pixmap(size);
        pixmap.fill(Qt::white);
        const QString text = Tools::convertPixmapToBase64ViaJpg(pixmap);
        return text.isEmpty() ? QSize() : decodedPicture(text).size();
    };
    for (const QSize size : {QSize(65500, 1), QSize(1, 65500)})
        EXPECT_EQ(sizeOf(size), size);
    for (const QSize size : {QSize(65501, 1), QSize(1, 65501)}) {
        const ExpectedWarning tooLarge("Maximum supported image dimension is 65500 pixels");
        EXPECT_EQ(sizeOf(size), QSize());
    }
}
