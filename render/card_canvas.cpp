#include "render/card_canvas.h"

#include <QFont>
#include <QPointF>
#include <QStringList>

#include "render/card_fonts.h"
#include "render/card_template.h"
#include "render/tools.h"

CardCanvas::CardCanvas(const QString &templatePath) : m_pixmap(loadTemplate(templatePath)) {}

void CardCanvas::text(int x, int y, const TextStyle &style, const QString &text)
{
    QFont font = cardFont(style.family(), style.pixelSize);
    if (style.weight != 0)
        font.setWeight(style.weight);
    if (style.spacing != 0.0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, style.spacing);
    Tools::drawStringInPixmap(m_pixmap, text, Qt::black, font, QPointF(x, y));
}

void CardCanvas::lines(int x, int y, const TextStyle &style, QString text, int wrapAfter,
                       int lineStep)
{
    for (const QString &line : Tools::autoWrap(text, wrapAfter)) {
        this->text(x, y, style, line);
        y += lineStep;
    }
}

void CardCanvas::photo(int x, int y, QSize box, PhotoBackground background,
                       const unsigned char (&photo)[IDCARD_PHOTO_SIZE])
{
    QPixmap fitted = fittedPhoto(photo, background, box);
    if (!fitted.isNull())
        Tools::drawSubPixmap(m_pixmap, fitted, x, y);
}

QString CardCanvas::base64() const
{
    return Tools::convertPixmapToBase64ViaJpg(m_pixmap);
}
