// The pictures of the resident identity card, laid out in millimetres and painted at the size that
// a real card has on the screen.

#include "render/makecardimg.h"

#include <QPixmap>
#include <QStringList>

#include "render/card_fonts.h"
#include "render/card_photo.h"
#include "render/card_template.h"
#include "render/card_texts.h"
#include "render/tools.h"
#include "render/units.h"

using namespace card_texts;

namespace
{

// What the canvas is larger than the card, in pixels. All positions are measured on this canvas.
constexpr double EXTRA_WIDTH = 2.0;
constexpr double EXTRA_HEIGHT = 1.0;

/** A card whose places are millimetres and whose font sizes are points. */
class RealSizeCanvas
{
public:
    /** The template at a resource path, at the size of a real card; null when it cannot be loaded.
     */
    explicit RealSizeCanvas(const QString &templatePath) : m_pixmap(loadTemplate(templatePath))
    {
        const QSizeF size = MakeCardImg::getCardRealPixelSize();
        if (m_pixmap.isNull())
            return;
        m_pixmap = m_pixmap.scaled(static_cast<int>(size.width() + EXTRA_WIDTH),
                                   static_cast<int>(size.height() + EXTRA_HEIGHT),
                                   Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        if (m_pixmap.isNull())
            qBadAlloc(); // throws; it is never empty
    }

    /** Draws a line whose top left corner is at (xmm, ymm). */
    void textFromTop(double xmm, double ymm, int pt, const QString &text)
    {
        Tools::drawStringInPixmapFromTop(m_pixmap, text, Qt::black, bodyFamily(), pt, xmm, ymm);
    }

    /** Draws a line whose baseline begins at (xmm, ymm). */
    void text(double xmm, double ymm, int pt, const QString &text)
    {
        Tools::drawStringInPixmapFromBottom(m_pixmap, text, Qt::black, bodyFamily(), pt, xmm, ymm);
    }

    /** Draws a line whose baseline ends at (xmm, ymm), by the formula of `getTextPixelWidth`. */
    void textToTheLeft(double xmm, double ymm, int pt, const QString &text)
    {
        Tools::drawStringInPixmapFromBottomRight(m_pixmap, text, Qt::black, bodyFamily(), pt, xmm,
                                                 ymm);
    }

    /** Draws the card's number, its baseline beginning at (xmm, ymm). */
    void number(double xmm, double ymm, int pt, const QString &text)
    {
        Tools::drawIDCodeStringInPixmapFromBottom(m_pixmap, text, Qt::black, numberFamily(), pt,
                                                  xmm, ymm);
    }

    /** Draws an address in lines one millimetre apart, the top of the first at (xmm, ymm). */
    void address(double xmm, double ymm, int pt, QString text)
    {
        const double step = units::pixelHeightOfPoints(pt) + units::pixelsPerMm();
        int number = 0;
        for (const QString &line : Tools::autoWrapEx(text)) {
            Tools::drawStringInPixmapFromTop(m_pixmap, line, Qt::black, bodyFamily(), pt, xmm, ymm,
                                             number * step);
            ++number;
        }
    }

    /** Paints a photo, fitted into a box of `widthMm` x `heightMm`; (xmm, ymm): top left corner. */
    void photo(double xmm, double ymm, double widthMm, double heightMm,
               const unsigned char (&photo)[IDCARD_PHOTO_SIZE])
    {
        const double pixelsPerMm = units::pixelsPerMm();
        const QSize box(static_cast<int>(widthMm * pixelsPerMm),
                        static_cast<int>(heightMm * pixelsPerMm));
        QPixmap fitted = fittedPhoto(photo, PhotoBackground::TRANSPARENT, box);
        if (!fitted.isNull())
            Tools::drawSubPixmapEx(m_pixmap, fitted, xmm, ymm);
    }

    QString base64() const { return Tools::convertPixmapToBase64ViaJpg(m_pixmap); }

private:
    QPixmap m_pixmap;
};

/** Point size of an address; a long one, of 31 characters and more, is smaller. */
int addressSize(const QString &address)
{
    return address.length() < 31 ? 9 : 8;
}

} // namespace

QString MakeCardImg::makeIDCardCNFrontBase64(_tagIDCARD_INFO_ALL_CN *info)
{
    RealSizeCanvas card(QLatin1String(":/Pics/IDCardFront.bmp"));
    card.text(17.0, 10.8, 11, spreadName(info->szName));
    card.text(17.0, 17.3, 9, field(info->szSex));
    card.text(34.0, 17.3, 9, field(info->szNation));
    card.text(17.0, 23.8, 9, field(info->szBirthYear));
    card.textToTheLeft(33.0, 23.8, 9, datePart(info->szBirthMonth).text);
    card.textToTheLeft(41.0, 23.8, 9, datePart(info->szBirthDay).text);
    const QString address = field(info->szAddress);
    card.address(17.0, 28.0, addressSize(address), address);
    card.photo(54.0, 8.0, 26.0, 32.0, info->byPhoto);
    card.number(30.0, 48.0, 12, field(info->szID));
    return card.base64();
}

QString MakeCardImg::makeIDCardCNBackBase64(_tagIDCARD_INFO_ALL_CN *info)
{
    RealSizeCanvas card(QLatin1String(":/Pics/IDCardBack.bmp"));
    card.textFromTop(36.0, 38.3, 9, field(info->szDept));
    card.textFromTop(36.0, 45.3, 9, validity(info->szValidStart, info->szValidEnd));
    return card.base64();
}
