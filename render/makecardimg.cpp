// Geometry of the class MakeCardImg; the makers of each kind have a file of their own.

#include "render/makecardimg.h"

#include <QImage>

#include "common/debug_log.h"
#include "render/units.h"

MakeCardImg::MakeCardImg() = default;

QSizeF MakeCardImg::getCardRealPixelSize()
{
    const double pixelsPerMm = units::pixelsPerMm();
    const QSizeF size(pixelsPerMm * CARD_WIDTH_MM, pixelsPerMm * CARD_HEIGHT_MM);
    debugLine("Card pixWidthScreen= %g Card pixHeightScreen= %g", size.width(), size.height());
    return size;
}

QPointF MakeCardImg::getPixelPosFromMMPos(QPointF mm)
{
    return units::pixelPosition(mm);
}

double MakeCardImg::getRealScaleRatio(QString imagePath)
{
    const QImage image(imagePath);
    const int width = image.isNull() ? -1 : image.width();
    const int height = image.isNull() ? -1 : image.height();
    const double pixelsPerMm = units::pixelsPerMm();
    return ((CARD_WIDTH_MM * pixelsPerMm) / width + (CARD_HEIGHT_MM * pixelsPerMm) / height) * 0.5;
}
