// Units and sizes on the screen of this run, and the text pixel sizes that follow from them.

#include "render/makecardimg.h"
#include "render/tools.h"
#include "tests/support/expected_warning.h"
#include "tests/support/gui_environment.h"
#include "tests/support/message_log.h"

#include <gmock/gmock.h>

#include <algorithm>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QtDebug>

TEST(Geometry, Screen_HasTheResolutionOfThisRunFromWhichPixelsFollow)
{
    EXPECT_EQ(QGuiApplication::primaryScreen()->physicalDotsPerInchX(), expectedDpi());
    EXPECT_EQ(Tools::getmm2Pixel(), expectedDpi() / 25.4);
}

TEST(Geometry, EveryConversion_SwitchesHighDpiScalingOn)
{
    for (int i = 0; i < 2; ++i) {
        QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, false);
        Tools::getmm2Pixel();
        EXPECT_TRUE(QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
    }
    EXPECT_EQ(static_cast<int>(Qt::AA_EnableHighDpiScaling), 20);
}

TEST(Geometry, PointHeight_IsTheProductAsComputed)
{
    for (const int pt : {0, 8, 9, 11, 12, 72})
        EXPECT_EQ(Tools::getPixelHeightFromPoint(pt), pt * 0.35277777777777775 * pixelsPerMm());
}

TEST(Geometry, At96Dpi_ValuesAreTheKnownOnes)
{
    if (expectedDpi() != 96.0)
        GTEST_SKIP() << "this run's screen has " << expectedDpi() << " dpi";
    EXPECT_EQ(Tools::getmm2Pixel(), 3.7795275590551185);
    EXPECT_EQ(Tools::getPixelHeightFromPoint(9), 12.0);
    EXPECT_EQ(Tools::getPixelHeightFromPoint(11), 14.666666666666666);
    EXPECT_EQ(Tools::getPixelHeightFromPoint(8), 10.666666666666666);
    EXPECT_EQ(Tools::getPixelHeightFromPoint(12), 15.999999999999998);
    EXPECT_EQ(MakeCardImg::getCardRealPixelSize().width(), 323.5275590551181);
    EXPECT_EQ(MakeCardImg::getCardRealPixelSize().height(), 204.0944881889764);
}

TEST(Geometry, CardSize_IsThatOfARealCardAndIsLogged)
{
    const MessageLog log;
    const QSizeF size = MakeCardImg::getCardRealPixelSize();
    EXPECT_EQ(size.width(), pixelsPerMm() * 85.6);
    EXPECT_EQ(size.height(), pixelsPerMm() * 54.0);
    const QString line = QStringLiteral("Card pixWidthScreen= %1 Card pixHeightScreen= %2")
                             .arg(QString::number(size.width()), QString::number(size.height()));
    const auto texts = log.texts();
    EXPECT_EQ(std::count(texts.begin(), texts.end(), line.toStdString()), 1);
}

TEST(Geometry, Position_IsConvertedCoordinateByCoordinate)
{
    const QPointF position = MakeCardImg::getPixelPosFromMMPos({17.0, 10.8});
    EXPECT_EQ(position.x(), 17.0 * pixelsPerMm());
    EXPECT_EQ(position.y(), 10.8 * pixelsPerMm());
    EXPECT_EQ(MakeCardImg::getPixelPosFromMMPos({0.0, -1.5}).y(), -1.5 * pixelsPerMm());
}

TEST(Geometry, RealScaleRatio_IsTheMeanOfBothDirectionsAndNegativeWithoutAPicture)
{
    const double expected = ((85.6 * pixelsPerMm()) / 400 + (54.0 * pixelsPerMm()) / 254) * 0.5;
    EXPECT_EQ(MakeCardImg::getRealScaleRatio(QStringLiteral(":/Pics/IDCardFront.bmp")), expected);
    EXPECT_LT(MakeCardImg::getRealScaleRatio(QStringLiteral("/no/such/picture.bmp")), 0.0);
    const ExpectedWarning noName("QFSFileEngine::open: No file name specified");
    EXPECT_LT(MakeCardImg::getRealScaleRatio(QString()), 0.0);
}

TEST(Geometry, Classes_CanBeConstructed)
{
    [[maybe_unused]] const Tools tools;
    [[maybe_unused]] const MakeCardImg maker;
    EXPECT_EQ(MakeCardImg::CARD_WIDTH_MM, 85.6);
    EXPECT_EQ(MakeCardImg::CARD_HEIGHT_MM, 54.0);
}
