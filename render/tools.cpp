// Units, text and pictures of the class Tools; its line wrapping is in text_wrapping.cpp.

#include "render/tools.h"

#include <QBuffer>
#include <QByteArray>
#include <QFontMetrics>
#include <QImage>
#include <QImageWriter>
#include <QPainter>

#include "common/country_lookup.h"
#include "render/card_fonts.h"
#include "render/units.h"

namespace
{

constexpr double NUMBER_SPACING = 0.48;

/** A font of `pt` points on the card. */
QFont fontOfPoints(const QString &family, int pt)
{
    return cardFont(family, static_cast<int>(units::pixelHeightOfPoints(pt)));
}

struct JpegFile {
    QByteArray bytes; ///< none when it could not be made
    bool hasFailed;   ///< although there is a plug-in for it
};

JpegFile jpegFile(const QPixmap &pix)
{
    JpegFile file{};
    QBuffer buffer(&file.bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "JPG");
    if (!writer.write(pix.toImage())) {
        file.bytes.clear();
        file.hasFailed = writer.error() != QImageWriter::UnsupportedFormatError;
    }
    return file;
}

/** Throws std::bad_alloc unless there is as much memory as saving the picture can take. */
void demandMemoryFor(const QPixmap &pix)
{
    constexpr QSize LEAST(512, 512); // what the writer takes for the smallest is less
    if (QImage(pix.size().expandedTo(LEAST), QImage::Format_RGB32).isNull())
        qBadAlloc(); // throws
}

} // namespace

Tools::Tools() = default;

double Tools::getmm2Pixel()
{
    return units::pixelsPerMm();
}

double Tools::getPixelHeightFromPoint(int pt)
{
    return units::pixelHeightOfPoints(pt);
}

bool Tools::drawStringInPixmap(QPixmap &pix, QString text, QColor color, QFont font, QPointF pos)
{
    if (pix.isNull())
        return true;
    QPainter painter(&pix);
    painter.setPen(color);
    painter.setFont(font);
    painter.drawText(pos, text);
    return true;
}

bool Tools::drawStringInPixmap(QPixmap &pix, QString text, QColor color, QString family,
                               int pixelSize, int x, int y)
{
    return drawStringInPixmap(pix, text, color, cardFont(family, pixelSize), QPointF(x, y));
}

bool Tools::drawStringInPixmapFromTop(QPixmap &pix, QString text, QColor color, QString family,
                                      int pt, double xmm, double ymm)
{
    const double height = units::pixelHeightOfPoints(pt);
    const QPointF top = units::pixelPosition({xmm, ymm});
    return drawStringInPixmap(pix, text, color, fontOfPoints(family, pt),
                              {top.x(), top.y() + height});
}

bool Tools::drawStringInPixmapFromTop(QPixmap &pix, QString text, QColor color, QString family,
                                      int pt, double xmm, double ymm, double dy)
{
    const double height = units::pixelHeightOfPoints(pt);
    const QPointF top = units::pixelPosition({xmm, ymm});
    return drawStringInPixmap(pix, text, color, fontOfPoints(family, pt),
                              {top.x(), height + top.y() + dy});
}

bool Tools::drawStringInPixmapFromBottom(QPixmap &pix, QString text, QColor color, QString family,
                                         int pt, double xmm, double ymm)
{
    return drawStringInPixmap(pix, text, color, fontOfPoints(family, pt),
                              units::pixelPosition({xmm, ymm}));
}

bool Tools::drawStringInPixmapFromBottomRight(QPixmap &pix, QString text, QColor color,
                                              QString family, int pt, double xmm, double ymm)
{
    const QPointF right = units::pixelPosition({xmm, ymm});
    return drawStringInPixmap(pix, text, color, fontOfPoints(family, pt),
                              {right.x() - getTextPixelWidth(family, pt, text), right.y()});
}

bool Tools::drawIDCodeStringInPixmapFromBottom(QPixmap &pix, QString text, QColor color,
                                               QString family, int pt, double xmm, double ymm)
{
    QFont font = fontOfPoints(family, pt);
    font.setWeight(NUMBER_WEIGHT);
    font.setLetterSpacing(QFont::AbsoluteSpacing, NUMBER_SPACING);
    return drawStringInPixmap(pix, text, color, font, units::pixelPosition({xmm, ymm}));
}

double Tools::getTextPixelWidth(QString family, int pt, QString text)
{
    const int width = QFontMetrics(fontOfPoints(family, pt)).boundingRect(text).width();
    return width + (9 - 0.5 * width);
}

bool Tools::drawSubPixmap(QPixmap &dst, QPixmap &src, double x, double y)
{
    if (dst.isNull())
        return false;
    QPainter painter(&dst);
    painter.drawPixmap(QPointF(x, y), src);
    return false;
}

bool Tools::drawSubPixmapEx(QPixmap &dst, QPixmap &src, double xmm, double ymm)
{
    const QPointF pos = units::pixelPosition({xmm, ymm});
    return drawSubPixmap(dst, src, pos.x(), pos.y());
}

QPixmap Tools::convertHeadImgCNBgToTransparent(const QPixmap &photo)
{
    QImage image = photo.toImage();
    if (image.format() != QImage::Format_ARGB32)
        image = image.convertToFormat(QImage::Format_ARGB32);

    constexpr QRgb KEY = 0xfffefefe;
    constexpr QRgb WHITE = 0xffffffff;
    constexpr QRgb CLEAR = 0x00fefefe;
    const int width = image.width(); // asked once: a call in the loop costs more than the loop
    const int height = image.height();
    for (int y = 0; y < height; ++y) {
        auto *const row = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < width; ++x)
            row[x] = row[x] == KEY || row[x] == WHITE ? CLEAR : row[x];
    }
    return QPixmap::fromImage(image);
}

QString Tools::convertPixmapToBase64ViaJpg(const QPixmap &pix)
{
    if (pix.isNull())
        return {};
    JpegFile file = jpegFile(pix);
    if (file.hasFailed) {
        // Qt's writer does not distinguish a lack of memory from a picture that it cannot take.
        // After the former there is either still too little, or the picture is saved by now.
        demandMemoryFor(pix);
        file = jpegFile(pix);
    }
    return QString::fromLatin1(file.bytes.toBase64());
}

std::string Tools::convertNationCodeToName(std::string code)
{
    return countryName(code);
}
