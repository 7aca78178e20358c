#include "tests/card/picture_files.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QImageReader>

#include "tests/support/files.h"

namespace
{

QSize expectedSize(const QString &kind)
{
    // A resident card is as large as a real one on the screen, and the offscreen one has 100 dpi.
    return kind == QLatin1String("resident") ? QSize(339, 213) : QSize(494, 312);
}

} // namespace

void expectCardPicture(const QString &path, const QString &kind)
{
    QImageReader reader(path);
    EXPECT_EQ(reader.format().toStdString(), "jpeg") << path.toStdString();
    const QImage picture = reader.read();
    EXPECT_FALSE(picture.isNull())
        << path.toStdString() << ": " << reader.errorString().toStdString();
    EXPECT_EQ(picture.width(), expectedSize(kind).width()) << path.toStdString();
    EXPECT_EQ(picture.height(), expectedSize(kind).height()) << path.toStdString();
    EXPECT_TRUE(readFile(path).endsWith("\xFF\xD9")) << path.toStdString() << " is cut short";
    EXPECT_EQ(modeOf(path), 0600) << path.toStdString();
}
