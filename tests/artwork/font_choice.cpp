#include "font_choice.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QRawFont>
#include <QTextLayout>

namespace
{

QStringList faces(const QFont &font, const QString &text)
{
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    QStringList names;
    const auto runs = layout.glyphRuns();
    for (const QGlyphRun &run : runs) {
        const QRawFont face = run.rawFont();
        const bool complete = !run.glyphIndexes().contains(0);
        names << face.familyName() + ' ' + face.styleName() + (complete ? "" : " without a glyph");
    }
    names.removeDuplicates();
    return names;
}

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
    return faces(fontOf(QStringLiteral("华文细黑"), 14), text);
}

QStringList facesOfNumber(const QString &text)
{
    QFont font = fontOf(QStringLiteral("黑体"), 19);
    font.setWeight(QFont::DemiBold);
    return faces(font, text);
}

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
