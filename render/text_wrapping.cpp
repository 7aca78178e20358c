// The line wrapping of the class Tools.

#include "render/tools.h"

#include <QTextBlock>
#include <QTextDocument>

namespace
{

constexpr double LINE_UNITS = 11.0;
constexpr double NEARLY_FULL = 10.5; // an ideograph does not fit any more

/** Whether `c` is as wide as the line is counted in: the two blocks of CJK ideographs. */
bool isIdeograph(QChar c)
{
    const ushort code = c.unicode();
    return (code >= 0x4e00 && code <= 0x9fff) || (code >= 0x3400 && code <= 0x4dbf);
}

/**
 * Units of line that `rest` needs up to the place where the line ends; sets `length` to the number
 * of characters before it, -1 when the line does not end inside `rest`. `textLength` is the length
 * of the whole address: against it, not against the rest, an early end is weighed.
 */
int lineLength(const QString &rest, int textLength)
{
    double units = 0.0;
    for (int i = 0; i < rest.length(); ++i) {
        units += isIdeograph(rest.at(i)) ? 1.0 : 0.5;
        if ((units == NEARLY_FULL && i + 1 < textLength) || units == LINE_UNITS)
            return i + 1;
    }
    return -1;
}

} // namespace

QStringList Tools::autoWrap(QString &text, int n)
{
    QStringList pieces;
    QString rest = text;
    while (n > 0 && rest.length() > n) {
        pieces.append(rest.left(n));
        rest = rest.mid(n);
    }
    pieces.append(rest);
    return pieces;
}

QStringList Tools::autoWrapEx(QString &text)
{
    QStringList lines;
    QString rest = text;
    for (int end = lineLength(rest, text.length()); end >= 0;
         end = lineLength(rest, text.length())) {
        lines.append(rest.left(end));
        rest = rest.mid(end);
    }
    lines.append(rest);
    return lines;
}

QStringList Tools::autoWrap(QString &html, QString family, int pixelSize, int width)
{
    Q_UNUSED(width)
    QFont font;
    font.setPixelSize(pixelSize);
    font.setFamily(family);
    QTextDocument document;
    document.setDefaultFont(font);
    document.setHtml(html);
    QStringList paragraphs;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        paragraphs.append(block.text());
    return paragraphs;
}
