#include "tests/render/picture_matchers.h"

#include <gtest/gtest.h>

void expectText(const Painted &painted, const ExpectedText &expected)
{
    SCOPED_TRACE(expected.text);
    ASSERT_TRUE(painted.isText);
    EXPECT_EQ(painted.text, expected.text);
    EXPECT_DOUBLE_EQ(painted.point.x(), expected.x);
    EXPECT_DOUBLE_EQ(painted.point.y(), expected.y);
    EXPECT_EQ(painted.font.family().toStdString(), expected.family);
    EXPECT_EQ(painted.font.pixelSize(), expected.pixelSize);
    EXPECT_EQ(painted.font.weight(), expected.weight);
    QFont spaced; // keeps spacings in 64ths of a pixel
    spaced.setLetterSpacing(QFont::AbsoluteSpacing, expected.spacing);
    EXPECT_EQ(painted.font.letterSpacing(), spaced.letterSpacing());
    if (expected.spacing != 0.0) {
        EXPECT_EQ(painted.font.letterSpacingType(), QFont::AbsoluteSpacing);
    }
    EXPECT_FALSE(painted.font.italic());
    EXPECT_EQ(painted.color, QColor(Qt::black));
}

void expectPhoto(const Painted &painted, double x, double y, QSize size)
{
    ASSERT_FALSE(painted.isText) << painted.text;
    EXPECT_DOUBLE_EQ(painted.point.x(), x);
    EXPECT_DOUBLE_EQ(painted.point.y(), y);
    EXPECT_EQ(painted.pixmap, size);
}

QImage decodedPicture(const QString &base64)
{
    const QByteArray bytes = QByteArray::fromBase64(base64.toLatin1());
    EXPECT_TRUE(bytes.startsWith("\xff\xd8")) << "a JPEG file";
    return QImage::fromData(bytes, "JPG");
}
