#include "render/card_items.h"

#include <QFont>
#include <QStringList>

#include "render/tools.h"

QString familyName(Family family)
{
    // Not a string literal of Qt's: its font cache keeps the name, and a literal would go when the
    // library is unloaded.
    return QString::fromUtf8(family == Family::BODY ? "华文细黑" : "黑体");
}

void drawLine(QPixmap &canvas, const QString &text, const TextStyle &style, int x, int y)
{
    QFont font;
    font.setFamily(familyName(style.family));
    font.setPixelSize(style.pixelSize);
    if (style.weight != 0)
        font.setWeight(style.weight);
    if (style.spacing != 0.0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, style.spacing);
    Tools::drawStringInPixmap(canvas, text, Qt::black, font, QPointF(x, y));
}

void drawLines(QPixmap &canvas, QString text, const TextStyle &style, int x, int y, int wrapAfter,
               int lineStep)
{
    for (const QString &line : Tools::autoWrap(text, wrapAfter)) {
        drawLine(canvas, line, style, x, y);
        y += lineStep;
    }
}

void drawPhoto(QPixmap &canvas, const unsigned char (&photo)[IDCARD_PHOTO_SIZE],
               const PhotoItem &item)
{
    QPixmap fitted = fittedPhoto(photo, item.background, item.box);
    if (!fitted.isNull())
        Tools::drawSubPixmap(canvas, fitted, item.x, item.y);
}
