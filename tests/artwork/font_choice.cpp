#include "font_choice.h"

#include "tests/support/font_faces.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QGuiApplication>

namespace
{

QFont fontOf(const QString &family, int pixelSize)
{
    QFont font;
    font.setFamily(family);
    font.setPixelSize(pixelSize);
    return font;
}

} // namespace

QStringList facesOfTexts(const QString &text)
{
    return facesOf(fontOf(QStringLiteral("华文细黑"), 14), text);
}

QStringList facesOfNumber(const QString &text)
{
    QFont font = fontOf(QStringLiteral("黑体"), 19);
    font.setWeight(QFont::DemiBold);
    return facesOf(font, text);
}

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
