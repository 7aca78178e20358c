#include "tests/support/font_faces.h"

#include <QGlyphRun>
#include <QRawFont>
#include <QTextLayout>

QStringList facesOf(const QFont &font, const QString &text)
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
