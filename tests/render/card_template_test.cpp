// Loading templates: the short way must give what Qt's own reader gives, to the last pixel.

#include "render/card_template.h"

#include <cstring>

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>

namespace
{

constexpr const char *RESIDENT_TEMPLATES[] = {":/Pics/IDCardFront.bmp", ":/Pics/IDCardBack.bmp"};
constexpr const char *OTHER_TEMPLATES[] = {":/Pics/hmt_front.bmp",  ":/Pics/hm_back.bmp",
                                           ":/Pics/tw_back.bmp",    ":/Pics/f2017_front.bmp",
                                           ":/Pics/f2017_back.bmp", ":/Pics/fnew_front.bmp",
                                           ":/Pics/fnew_back.bmp"};

void expectAsQtReadsIt(const char *path, QSize size)
{
    const QString name = QString::fromLatin1(path);
    const QImage loaded = loadTemplate(name).toImage();
    const QImage read(name);
    EXPECT_EQ(loaded.size(), size) << path;
    EXPECT_EQ(loaded.format(), read.format()) << path;
    EXPECT_EQ(loaded, read) << path;
    for (int y = 0; y < read.height(); ++y) // with the byte that holds no colour
        ASSERT_EQ(std::memcmp(loaded.constScanLine(y), read.constScanLine(y),
                              static_cast<std::size_t>(read.width()) * 4),
                  0)
            << path << " row " << y;
}

} // namespace

TEST(CardTemplate, EveryResidentTemplate_IsAsQtReadsIt)
{
    for (const char *path : RESIDENT_TEMPLATES)
        expectAsQtReadsIt(path, QSize(400, 254));
}

TEST(CardTemplate, EveryOtherTemplate_IsAsQtReadsIt)
{
    for (const char *path : OTHER_TEMPLATES)
        expectAsQtReadsIt(path, QSize(494, 312));
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
    EXPECT_TRUE(loadTemplate(QString()).isNull());
}
